#include "host/plain/Config.h"

namespace plain {
namespace {

/// The tree itself.
struct Config : ConfigSection {
  explicit Config(Settings& settings_) : ConfigSection(settings_) { path = "config"; }
  Object invoke(std::string_view name, Arguments arguments) override {
    if (name != "save") return Instance::invoke(name, arguments);
    std::map<std::string, std::optional<std::string>> values;
    addTo(values);
    settings.store(values);
    return {};
  }
};

}  // namespace

Object ConfigText::get(std::string_view name) {
  return name == "value" ? value : Node::get(name);
}

void ConfigText::set(std::string_view name, const Object& new_value) {
  if (name != "value") return Node::set(name, new_value);
  value = new_value;
}

Object ConfigText::invoke(std::string_view name, Arguments arguments) {
  if (name != "save") return Node::invoke(name, arguments);
  saved = value == default_value ? std::nullopt : std::optional(textOf(value));
  return {};
}

void ConfigSection::set(std::string_view name, const Object& value) {
  const std::string place = path + "." + std::string(name);
  if (auto* const section = as<ConfigSection>(value)) {
    section->path = place;
  } else if (auto* const text = as<ConfigText>(value)) {
    text->path = place;
    text->saved = settings.stored(place);
    if (text->saved) text->value = *text->saved;
  }
  Instance::set(name, value);
}

Object ConfigSection::invoke(std::string_view name, Arguments arguments) {
  if (name != "save") return Instance::invoke(name, arguments);
  save();
  return {};
}

void ConfigSection::save() {
  for (const auto& [name, value] : attributes) nodeOf(value).invoke("save", {});
}

void ConfigSection::addTo(std::map<std::string, std::optional<std::string>>& values) const {
  for (const auto& [name, value] : attributes) {
    if (const auto* const section = as<ConfigSection>(value)) section->addTo(values);
    if (const auto* const text = as<ConfigText>(value)) values[text->path] = text->saved;
  }
}

Object newConfig(Settings& settings) {
  Object config = make<Config>(settings);
  const Object plugins = make<ConfigSection>(settings);
  nodeOf(config).set("plugins", plugins);
  nodeOf(plugins).set("qorpanel", make<ConfigSection>(settings));
  return config;
}

}  // namespace plain
