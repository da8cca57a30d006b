#include "host/plain/Host.h"

#include <initializer_list>
#include <iostream>
#include <utility>

#include "host/plain/Model.h"
#include "host/plain/Screen.h"

namespace plain {
namespace {

Object number(long long value) {
  return make<Number>(value, false);
}

const std::string& text(Arguments arguments, std::size_t place = 0) {
  return textOf(argument(arguments, place));
}

/// A file object or a pipe, whose lines have been read.
Object file(const std::vector<std::string>& lines) {
  return instance("file",
                  {{"readlines", function([lines = listOf(lines)](Arguments) { return lines; })},
                   {"close", function(&nothing)}});
}

std::string joined(const std::string& directory, const std::string& name) {
  if (name.starts_with('/')) return name;
  if (directory.empty() || directory.ends_with('/')) return directory + name;
  return directory + "/" + name;
}

Object timeOf(const LocalTime& time) {
  return instance("struct_time", {{"tm_year", time.tm_year},
                                  {"tm_mon", time.tm_mon},
                                  {"tm_mday", time.tm_mday},
                                  {"tm_hour", time.tm_hour},
                                  {"tm_min", time.tm_min}});
}

/// A class of the framework: what its call makes, and its constants, each of which is its own name.
Object type(const char* name, Function::Run make_one,
            std::initializer_list<const char*> constants = {}) {
  Object made = make<Type>(name, std::move(make_one));
  for (const char* constant : constants) nodeOf(made).set(constant, make<Constant>(constant));
  return made;
}

void bindModel(Host& host, const Function::Run& model) {
  host.bind("HardwareInfoVu", [model](Arguments) {
    return instance("HardwareInfoVu", {{"get_device_name", function(model)}});
  });
}

void bindSystem(Host& host, System& system) {
  host.bind("system", [&](Arguments given) { return number(system.system(text(given))); });
  host.bind("popen", [&](Arguments given) { return file(system.popen(text(given))); });
  host.bind("open", [&](Arguments given) { return file(system.open(text(given))); });
  host.bind("listdir", [&](Arguments given) { return listOf(system.listdir(text(given))); });
  host.bind("os_stat", [&](Arguments given) {
    return instance("stat_result", {{"st_size", number(system.fileSize(text(given)))}});
  });
  host.bind("makedirs", [&](Arguments given) { return system.makedirs(text(given)), Object(); });
  host.bind("remove", [&](Arguments given) { return system.remove(text(given)), Object(); });
  host.bind("chmod", [&](Arguments given) {
    const auto* mode = as<Number>(argument(given, 1));
    if (!mode) throw Error("TypeError", "a mode is a number");
    return system.chmod(text(given), static_cast<int>(mode->number)), Object();
  });
  host.bind("localtime", [&](Arguments) { return timeOf(system.localtime()); });
  bindModel(host, [&](Arguments) { return Object(readModel(system)); });
  const auto exists = [&](Arguments given) { return Object(system.exists(text(given))); };
  host.bind("fileExists", exists);
  host.bind("os_path", instance("module", {{"exists", function(exists)},
                                           {"join", function([](Arguments given) {
                                              return Object(joined(text(given), text(given, 1)));
                                            })}}));
}

void bindFramework(Host& host, Settings& settings) {
  host.bind("config", newConfig(settings));
  host.bind("ConfigSubsection", [&](Arguments) { return make<ConfigSection>(settings); });
  host.bind("ConfigText",
            [](Arguments given) { return make<ConfigText>(argument(given, 3, "default")); });
  host.bind("_", [](Arguments given) { return argument(given, 0); });
  host.bind("print",
            [](Arguments given) { return std::cout << text(given) << std::endl, Object(); });
  host.bind("SCOPE_PLUGINS", make<Constant>("SCOPE_PLUGINS"));
  host.bind("resolveFilename", [](Arguments given) {
    const Object relative = argument(given, 1);
    return Object("/usr/lib/enigma2/python/Plugins/" + (relative.isNone() ? "" : textOf(relative)));
  });
  host.bind("plugins", instance("PluginComponent", {{"clearPluginList", function(&nothing)},
                                                    {"readPluginList", function(&nothing)}}));
}

void bindWidgets(Host& host) {
  const auto makeText = [](Arguments given) { return make<TextWidget>(argument(given, 0)); };
  const auto makeList = [](Arguments given) { return make<ListWidget>(argument(given, 0)); };
  const auto makeMap = [](Arguments given) { return make<ActionMap>(given); };
  host.bind("StaticText", makeText);
  host.bind("Label", makeText);
  host.bind("List", makeList);
  host.bind("MenuList", makeList);
  host.bind("ActionMap", makeMap);
  host.bind("NumberActionMap", makeMap);
  host.bind("ComConsole", [](Arguments) { return instance("Console", {}); });
  host.bind("LoadPixmap", function(&nothing));
}

void bindScreens(Host& host) {
  const Object screen = type("Screen", [](Arguments given) { return make<Screen>(text(given)); });
  nodeOf(screen).set("__init__", function(&nothing));
  host.bind("Screen", screen);
  host.bind("MessageBox", type("MessageBox", &nothing, {"TYPE_YESNO", "TYPE_INFO", "TYPE_ERROR"}));
  for (const char* name : {"ChoiceBox", "Console", "Ipkg"}) host.bind(name, type(name, &nothing));
  host.setPackageManager([](IpkgComponent&, const Object&) {});
}

void bindChannels(Host& host) {
  host.bind("nimmanager", instance("NimManager", {{"readTransponders", function(&nothing)}}));
  Object database = instance("eDVBDB", {{"reloadServicelist", function(&nothing)},
                                        {"reloadBouquets", function(&nothing)}});
  host.bind(
      "eDVBDB",
      instance("type", {{"getInstance", function([database](Arguments) { return database; })}}));
  host.bind("InfoBar", instance("type", {{"instance", {}}}));
}

}  // namespace

Host::Host(System& system, Settings& settings) : Host(system, settings, make<Names>()) {}

Host::Host(System& system, Settings& settings, Object names)
    : system_(system), names_(std::move(names)), module_(names_) {
  bindSystem(*this, system_);
  bindFramework(*this, settings);
  bindWidgets(*this);
  bindScreens(*this);
  bindChannels(*this);
}

void Host::bind(std::string_view name, const Object& object) {
  nodeOf(names_).set(name, object);
}

void Host::bind(std::string_view name, Function::Run function) {
  bind(name, make<Function>(std::move(function)));
}

void Host::setModel(const std::string& model) {
  bindModel(*this, [model](Arguments) { return Object(model); });
}

void Host::setPackageManager(const IpkgComponent::Start& start) {
  bind("IpkgComponent",
       type("IpkgComponent", [start](Arguments) { return make<IpkgComponent>(start); },
            {"CMD_INSTALL", "CMD_UPDATE", "EVENT_DONE", "EVENT_ERROR"}));
}

std::string Host::model() const {
  using host::operator""_t;
  return textOf(module_["HardwareInfoVu"_t]()["get_device_name"_t]());
}

}  // namespace plain
