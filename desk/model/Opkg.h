#pragma once

#include <memory>
#include <string>
#include <vector>

#include "desk/model/Jobs.h"
#include "desk/model/Observer.h"
#include "host/include/IpkgComponent.h"

namespace desk {

/// Starts `opkg` with `arguments`; its output goes to the receiver's own log, its end to `on_end`.
void startOpkg(Jobs& jobs, Observer& observer, const std::vector<std::string>& arguments,
               Jobs::OnEnd on_end);

/// The package-manager component. A command that is still running when the component goes is left
/// to its end, which is then reported to nobody.
class IpkgComponent : public host::IpkgComponent {
 public:
  IpkgComponent(Jobs& jobs, Observer& observer) : jobs_(jobs), observer_(observer) {}

  void addCallback(const host::IpkgCallback& callback) override;
  void startCmd(host::IpkgCommand command) override;

 private:
  using Callbacks = std::vector<host::IpkgCallback>;

  Jobs& jobs_;
  Observer& observer_;
  std::shared_ptr<Callbacks> callbacks_ = std::make_shared<Callbacks>();
};

}  // namespace desk
