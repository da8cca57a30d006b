#include "Doctor.h"

#include "Backups.h"
#include "Setup.h"
#include "Tools.h"
#include "native/Host.h"
#include "native/NativeSystem.h"

namespace doctor {

const char* wordOf(State state) {
  switch (state) {
    case State::ok:
      return "ok";
    case State::warning:
      return "warning";
    default:
      return "failed";
  }
}

std::vector<Check> examine() {
  native::NativeSystem os;
  native::Host host(os);
  stowline::load(host);
  std::vector<Check> checks = {{"model", State::ok, host.deviceName()},
                               checkTools(os),
                               checkExclusions(os),
                               checkPackageManager(os)};
  for (Check& check : checkBackups(host)) checks.push_back(std::move(check));
  return checks;
}

}  // namespace doctor
