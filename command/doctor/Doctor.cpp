#include "command/doctor/Doctor.h"

#include <exception>
#include <utility>

#include "command/doctor/Backups.h"
#include "command/doctor/Tools.h"
#include "command/doctor/Trial.h"
#include "command/scheduled/Preconditions.h"
#include "host/native/SettingsFile.h"
#include "host/plain/Error.h"
#include "plugin/src/Setup.h"

namespace doctor {

const char* wordOf(State state) {
  switch (state) {
    case State::ok:
      return "ok";
    case State::warning:
      return "warning";
    case State::failed:
      break;
  }
  return "failed";
}

namespace {

Check checkPrecondition(const scheduled::Precondition& precondition, scheduled::Start& start) {
  try {
    return {precondition.name, State::ok, precondition.require(start)};
  } catch (const std::exception& error) {
    return {precondition.name, precondition.is_for_all ? State::failed : State::warning,
            plain::reasonOf(error)};
  }
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
  scheduled::System os;
  native::SettingsFile settings;
  plain::Host host(os, settings);
  stowline::load(host.module());
  scheduled::Start start{.system = os, .host = host};
  std::vector<Check> checks;
  for (const scheduled::Precondition& precondition : scheduled::kPreconditions) {
    checks.push_back(checkPrecondition(precondition, start));
    if (checks.back().detail.empty()) checks.pop_back();
  }
  start.lock.reset();  // a run may begin meanwhile
  checks.push_back(guarded("tools", [&] { return checkTools(os); }));
  checks.push_back(guarded("tar", [&] { return checkArchiving(os); }));
  checks.push_back(guarded("package manager", [&] { return checkPackageManager(os); }));
  if (start.directory.empty()) return checks;
  for (Check& check : checkBackups(start, begin)) checks.push_back(std::move(check));
  return checks;
}

}  // namespace doctor
