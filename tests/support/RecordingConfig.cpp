#include "tests/support/RecordingConfig.h"

namespace support {
namespace {

host::Error noSuchAttribute(const std::string& path) {
  return {"AttributeError", "no attribute '" + path.substr(path.rfind('.') + 1) + "'"};
}

class RecordingText : public host::ConfigText {
 public:
  RecordingText(Journal& journal, std::string path, std::string& value)
      : journal_(journal), path_(std::move(path)), value_(value) {}

  std::string value() override {
    journal_.note(path_ + ".value");
    return value_;
  }

  void setValue(const std::string& value) override {
    journal_.note(path_ + ".value = " + quoted(value));
    value_ = value;
  }

  void save() override { journal_.note(path_ + ".save()"); }

 private:
  Journal& journal_;
  std::string path_;
  std::string& value_;
};

class RecordingSubsection : public host::ConfigSubsection {
 public:
  RecordingSubsection(Journal& journal, std::string path,
                      std::map<std::string, std::string>& values)
      : journal_(journal), path_(std::move(path)), values_(values) {}

  void attachText(const std::string& key, const host::ConfigText::Options& options) override {
    journal_.note("config." + path_ + "." + key +
                  " = ConfigText(default=" + quoted(options.default_value) +
                  ", visible_width=" + std::to_string(options.visible_width) +
                  ", fixed_size=" + (options.fixed_size ? "True" : "False") + ")");
    values_.try_emplace(path_ + "." + key, options.default_value);
  }

  host::ConfigText& text(const std::string& key) override {
    const auto value = values_.find(path_ + "." + key);
    if (value == values_.end()) throw noSuchAttribute(key);
    text_ = std::make_unique<RecordingText>(journal_, "config." + value->first, value->second);
    return *text_;
  }

  void save() override { journal_.note("config." + path_ + ".save()"); }

 private:
  Journal& journal_;
  std::string path_;
  std::map<std::string, std::string>& values_;
  std::unique_ptr<RecordingText> text_;
};

}  // namespace

void RecordingConfig::attachSubsection(const std::string& path) {
  journal_.note("config." + path + " = ConfigSubsection()");
  require(path.substr(0, path.rfind('.')));
  branches.insert(path);
}

host::ConfigSubsection& RecordingConfig::subsection(const std::string& path) {
  require(path);
  subsection_ = std::make_unique<RecordingSubsection>(journal_, path, values);
  return *subsection_;
}

void RecordingConfig::save() {
  journal_.note("config.save()");
}

void RecordingConfig::require(const std::string& path) const {
  if (!branches.contains(path)) throw noSuchAttribute(path);
}

}  // namespace support
