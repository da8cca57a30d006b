#include "desk/model/Channels.h"

#include <algorithm>
#include <iostream>
#include <vector>

namespace desk {
namespace {

constexpr const char* kChannelDirectory = "/etc/enigma2";

/// Returns how many services the lines of a service database hold: between "services" and "end",
/// each takes three.
std::size_t countServices(const std::vector<std::string>& lamedb) {
  const auto first = std::ranges::find(lamedb, "services\n");
  const auto last = std::find(first, lamedb.end(), "end\n");
  return first == lamedb.end() ? 0 : static_cast<std::size_t>(last - first - 1) / 3;
}

void readTransponders(plain::System& system) {
  const std::size_t lines = system.open("/etc/tuxbox/satellites.xml").size();
  std::cout << "[NimManager] satellites.xml: " << lines << " lines" << std::endl;
}

void reloadServicelist(plain::System& system) {
  const std::string lamedb = std::string(kChannelDirectory) + "/lamedb";
  const std::size_t services = system.exists(lamedb) ? countServices(system.open(lamedb)) : 0;
  std::cout << "[eDVBDB] " << services << " services" << std::endl;
}

void reloadBouquets(plain::System& system) {
  const auto isBouquet = [](const std::string& name) {
    return name.ends_with(".tv") || name.ends_with(".radio");
  };
  std::cout << "[eDVBDB] " << std::ranges::count_if(system.listdir(kChannelDirectory), isBouquet)
            << " bouquet files" << std::endl;
}

/// The list of the channels, with a root and a selection by their references.
struct ServiceList : plain::Node {
  std::string className() const override { return "ServiceList"; }
  host::Object invoke(std::string_view name, host::Arguments arguments) override {
    if (name == "getRoot") return root;
    if (name == "getCurrentSelection") return selection;
    if (name == "setRoot") {
      root = plain::argument(arguments, 0);
    } else if (name == "setCurrentSelection") {
      selection = plain::argument(arguments, 0);
    } else {
      return Node::invoke(name, arguments);
    }
    return {};
  }

  host::Object root = std::string_view("bouquets.tv");
  host::Object selection = std::string_view("1:0:1:1:1:1:C00000:0:0:0:");
};

/// Returns a function that does `step` with the receiver's files.
host::Object function(plain::System& system, void (*step)(plain::System& system)) {
  return plain::function([&system, step](host::Arguments) { return step(system), host::Object(); });
}

}  // namespace

void bindChannels(plain::Host& host) {
  plain::System& system = host.system();
  host.bind(
      "nimmanager",
      plain::instance("NimManager", {{"readTransponders", function(system, &readTransponders)}}));
  host::Object database =
      plain::instance("eDVBDB", {{"reloadServicelist", function(system, &reloadServicelist)},
                                 {"reloadBouquets", function(system, &reloadBouquets)}});
  const auto getInstance = [database](host::Arguments) { return database; };
  host.bind("eDVBDB", plain::instance("type", {{"getInstance", plain::function(getInstance)}}));
  const host::Object info_bar =
      plain::instance("InfoBar", {{"servicelist", plain::make<ServiceList>()}});
  host.bind("InfoBar", plain::instance("type", {{"instance", info_bar}}));
}

}  // namespace desk
