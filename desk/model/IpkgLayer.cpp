#include "desk/model/IpkgLayer.h"

#include "base/Escape.h"
#include "base/SystemError.h"
#include "desk/model/Opkg.h"

namespace desk {

IpkgLayer::IpkgLayer(const Ipkg& ipkg, Jobs& jobs, Observer& observer)
    : Layer("Ipkg"), jobs_(jobs), observer_(observer) {
  for (const std::string& package : ipkg.packages) {
    packages_.push_back({package, Package::State::waiting});
  }
  runNext();
}

void IpkgLayer::runNext() {
  while (next_ < packages_.size()) {
    Package& package = packages_[next_++];
    package.state = Package::State::running;
    try {
      startOpkg(jobs_, observer_, {"install", package.name}, [this, &package](int exit_status) {
        package.state = exit_status == 0 ? Package::State::done : Package::State::failed;
        runNext();
      });
      return;
    } catch (const base::SystemError&) {
      package.state = Package::State::failed;
    }
  }
  running_ = false;
}

void IpkgLayer::handleKey(const std::string& key) {
  if (!running_ && (key == "ok" || key == "exit")) close({});
}

Content IpkgLayer::content() const {
  PackagesContent content{.packages = packages_, .is_running = running_};
  for (Package& package : content.packages) package.name = base::escapeInvalidUtf8(package.name);
  return content;
}

}  // namespace desk
