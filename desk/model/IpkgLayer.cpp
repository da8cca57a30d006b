#include "desk/model/IpkgLayer.h"

#include <nlohmann/json.hpp>

#include "desk/model/Opkg.h"
#include "host/native/ShownText.h"
#include "host/plain/Error.h"

namespace desk {

IpkgLayer::IpkgLayer(const Ipkg& ipkg, Jobs& jobs, Observer& observer)
    : Layer("Ipkg"), jobs_(jobs), observer_(observer) {
  for (const std::string& package : ipkg.packages) packages_.push_back({package, "waiting"});
  runNext();
}

void IpkgLayer::runNext() {
  while (next_ < packages_.size()) {
    Package& package = packages_[next_++];
    package.state = "running";
    try {
      startOpkg(jobs_, observer_, {"install", package.name}, [this, &package](int exit_status) {
        package.state = exit_status == 0 ? "done" : "failed";
        runNext();
      });
      return;
    } catch (const plain::Error&) {
      package.state = "failed";
    }
  }
  running_ = false;
}

void IpkgLayer::handleKey(const std::string& key) {
  if (!running_ && (key == "ok" || key == "exit")) close({});
}

void IpkgLayer::addTo(Json& frame) const {
  frame["packages"] = Json::array();
  for (const Package& package : packages_) {
    frame["packages"].push_back(
        {{"name", native::shownText(package.name)}, {"state", package.state}});
  }
  frame["running"] = running_;
}

}  // namespace desk
