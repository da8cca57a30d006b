#include "desk/model/Channels.h"

#include <algorithm>
#include <iostream>
#include <utility>
#include <vector>

namespace desk {
namespace {

constexpr const char* kChannelDirectory = "/etc/enigma2";

/// A channel or bouquet, by its reference.
class Reference : public host::Object {
 public:
  explicit Reference(std::string text) : text_(std::move(text)) {}
  std::string str() const override { return text_; }

 private:
  std::string text_;
};

/// Returns how many services the lines of a service database hold: between "services" and "end",
/// each takes three.
std::size_t countServices(const std::vector<std::string>& lamedb) {
  const auto first = std::ranges::find(lamedb, "services\n");
  const auto last = std::find(first, lamedb.end(), "end\n");
  return first == lamedb.end() ? 0 : static_cast<std::size_t>(last - first - 1) / 3;
}

}  // namespace

class Channels::Selection : public host::ServiceList {
 public:
  host::ObjectRef getRoot() override { return root_; }
  host::ObjectRef getCurrentSelection() override { return current_; }
  void setRoot(const host::ObjectRef& root) override { root_ = root; }
  void setCurrentSelection(const host::ObjectRef& service) override { current_ = service; }

 private:
  host::ObjectRef root_ = std::make_shared<Reference>("bouquets.tv");
  host::ObjectRef current_ = std::make_shared<Reference>("1:0:1:1:1:1:C00000:0:0:0:");
};

Channels::Channels(host::OperatingSystem& os)
    : os_(os), selection_(std::make_unique<Selection>()) {}

Channels::~Channels() = default;

void Channels::readTransponders() {
  const std::size_t lines = os_.open("/etc/tuxbox/satellites.xml").size();
  std::cout << "[NimManager] satellites.xml: " << lines << " lines" << std::endl;
}

void Channels::reloadServicelist() {
  const std::string lamedb = std::string(kChannelDirectory) + "/lamedb";
  const std::size_t services = os_.exists(lamedb) ? countServices(os_.open(lamedb)) : 0;
  std::cout << "[eDVBDB] " << services << " services" << std::endl;
}

void Channels::reloadBouquets() {
  const auto isBouquet = [](const std::string& name) {
    return name.ends_with(".tv") || name.ends_with(".radio");
  };
  std::cout << "[eDVBDB] " << std::ranges::count_if(os_.listdir(kChannelDirectory), isBouquet)
            << " bouquet files" << std::endl;
}

std::shared_ptr<host::ServiceList> Channels::infoBarServicelist() {
  return selection_;
}

}  // namespace desk
