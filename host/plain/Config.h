#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "host/plain/Node.h"

namespace plain {

/// Where the configuration tree keeps its values.
class Settings {
 public:
  virtual ~Settings() = default;

  /// Returns what is stored for the setting `path` ("config.plugins.name.key"), nothing when it is
  /// at its default.
  virtual std::optional<std::string> stored(const std::string& path) = 0;

  /// Stores all settings of the tree by their paths; nothing for the default.
  virtual void store(const std::map<std::string, std::optional<std::string>>& values) = 0;
};

/// A text setting. It reads its stored value when it is attached to the tree.
struct ConfigText : Node {
  explicit ConfigText(Object default_value_)
      : default_value(std::move(default_value_)), value(default_value) {}
  std::string className() const override { return "ConfigText"; }
  Object get(std::string_view name) override;
  void set(std::string_view name, const Object& new_value) override;
  Object invoke(std::string_view name, Arguments arguments) override;

  const Object default_value;
  Object value;
  std::optional<std::string> saved;  ///< what is to be stored; nothing for the default
  std::string path;                  ///< "" until it is attached
};

/// A branch of the configuration tree; its attributes are what is attached to it.
struct ConfigSection : Instance {
  explicit ConfigSection(Settings& settings_) : Instance("ConfigSubsection"), settings(settings_) {}
  void set(std::string_view name, const Object& value) override;
  Object invoke(std::string_view name, Arguments arguments) override;

  /// Takes over the values of the settings below it.
  void save();

  /// Adds what is to be stored of them.
  void addTo(std::map<std::string, std::optional<std::string>>& values) const;

  Settings& settings;
  std::string path;  ///< "" until it is attached
};

/// Makes a tree with the branches "plugins" and "plugins.qorpanel". Its operation "save" stores
/// what is saved. `settings` outlives it.
Object newConfig(Settings& settings);

}  // namespace plain
