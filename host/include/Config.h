#pragma once

#include <string>

namespace host {

/// A text setting of the configuration tree.
class ConfigText {
 public:
  /// What a text setting is made with: its default value, the width of its editor in characters and
  /// whether its length is fixed.
  struct Options {
    std::string default_value;
    int visible_width;
    bool fixed_size;
  };

  virtual ~ConfigText() = default;

  virtual std::string value() = 0;
  virtual void setValue(const std::string& value) = 0;

  /// Marks the value as the one to keep; Config::save() writes it.
  virtual void save() = 0;
};

/// A branch of the configuration tree that holds settings by name.
class ConfigSubsection {
 public:
  virtual ~ConfigSubsection() = default;

  /// Attaches a new text setting under `key`, with its stored value where there is one, in place of
  /// any former.
  virtual void attachText(const std::string& key, const ConfigText::Options& options) = 0;

  /// Returns the text setting `key`; the reference is good until the next call.
  virtual ConfigText& text(const std::string& key) = 0;

  virtual void save() = 0;
};

/// The configuration tree of the GUI. Branches are named by their path, such as
/// "plugins.qorpanel.stowline". Any operation raises Error ("AttributeError") for a branch that is
/// not there.
class Config {
 public:
  virtual ~Config() = default;

  /// Attaches a new, empty branch at `path`, in place of any former one; its parent must exist.
  virtual void attachSubsection(const std::string& path) = 0;

  /// Returns the branch at `path`; the reference is good until the next call.
  virtual ConfigSubsection& subsection(const std::string& path) = 0;

  /// Writes every saved setting of the tree to the settings file.
  virtual void save() = 0;
};

}  // namespace host
