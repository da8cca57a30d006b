#include "command/doctor/Doctor.h"

#include <exception>
#include <utility>

#include "command/doctor/Backups.h"
#include "command/doctor/Tools.h"
#include "host/native/NativeSystem.h"
#include "host/native/SettingsFile.h"
#include "host/plain/Error.h"
#include "host/plain/Model.h"
#include "plugin/src/Setup.h"

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

namespace {

Check checkModel(plain::System& os) {
  const std::string model = plain::readModel(os);
  if (plain::isModel(model)) return {"model", State::ok, model};
  return {"model", State::failed, "'" + model + "' cannot be the model of a receiver"};
}

}  // namespace

Check guarded(const char* name, const std::function<Check()>& check) {
  try {
    return check();
  } catch (const std::exception& error) {
    return {name, State::failed, plain::reasonOf(error)};
  }
}

std::vector<Check> examine(const tarball::BeginProgress& begin) {
  native::NativeSystem os;
  native::SettingsFile settings;
  plain::Host host(os, settings);
  stowline::load(host.module());
  std::vector<Check> checks = {
      guarded("model", [&] { return checkModel(os); }),
      guarded("tools", [&] { return checkTools(os); }),
      guarded("tar's exclusions", [&] { return checkExclusions(os); }),
      guarded("package manager", [&] { return checkPackageManager(os); }),
  };
  for (Check& check : checkBackups(host, begin)) checks.push_back(std::move(check));
  return checks;
}

}  // namespace doctor
