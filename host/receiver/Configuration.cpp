#include "host/receiver/Configuration.h"

namespace receiver {
namespace {

/// Returns the part of the tree at a path of names with dots between.
Reference at(const Names& names, std::string_view path) {
  Reference found = names.get<"config">();
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('.'), path.size());
    found = attribute(found.get(), path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return found;
}

}  // namespace

void Configuration::attachSubsection(const std::string& path) {
  const Reference fresh = call(subsection_.names.get<"ConfigSubsection">());
  const std::size_t dot = path.rfind('.');
  const Reference parent = at(subsection_.names, path.substr(0, dot));
  setAttribute(parent.get(), path.substr(dot + 1), fresh);
}

host::ConfigSubsection& Configuration::subsection(const std::string& path) {
  subsection_.path = path;
  return subsection_;
}

void Configuration::save() {
  invoke<"save">(subsection_.names.get<"config">());
}

void Configuration::Subsection::attachText(const std::string& key,
                                           const host::ConfigText::Options& options) {
  const Reference text = Arguments()
                             .add<"default">(options.default_value)
                             .add<"visible_width">(options.visible_width)
                             .add<"fixed_size">(options.fixed_size)
                             .passTo(names.get<"ConfigText">());
  setAttribute(at(names, path).get(), key, text);
}

host::ConfigText& Configuration::Subsection::text(const std::string& key) {
  text_.path = path + "." + key;
  return text_;
}

void Configuration::Subsection::save() {
  invoke<"save">(at(names, path));
}

std::string Configuration::Text::value() {
  return textOf(attribute<"value">(at(names_, path)).get());
}

void Configuration::Text::setValue(const std::string& value) {
  setAttribute<"value">(at(names_, path).get(), toObject(value));
}

void Configuration::Text::save() {
  invoke<"save">(at(names_, path));
}

}  // namespace receiver
