#pragma once

#include <string>

#include "host/include/Config.h"
#include "host/receiver/Names.h"

namespace receiver {

/// The framework's configuration tree. Every operation walks down to its branch afresh.
class Configuration : public host::Config {
 public:
  explicit Configuration(const Names& names) : subsection_(names) {}

  void attachSubsection(const std::string& path) override;
  host::ConfigSubsection& subsection(const std::string& path) override;
  void save() override;

 private:
  class Text : public host::ConfigText {
   public:
    explicit Text(const Names& names) : names_(names) {}
    std::string value() override;
    void setValue(const std::string& value) override;
    void save() override;

    std::string path;

   private:
    const Names& names_;
  };

  class Subsection : public host::ConfigSubsection {
   public:
    explicit Subsection(const Names& names) : names(names), text_(names) {}
    void attachText(const std::string& key, const host::ConfigText::Options& options) override;
    host::ConfigText& text(const std::string& key) override;
    void save() override;

    const Names& names;
    std::string path;

   private:
    Text text_;
  };

  Subsection subsection_;
};

}  // namespace receiver
