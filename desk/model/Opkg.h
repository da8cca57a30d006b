#pragma once

#include <string>
#include <vector>

#include "desk/model/Jobs.h"
#include "desk/model/Observer.h"
#include "host/plain/Host.h"

namespace desk {

/// Starts `opkg` with `arguments`; its output goes to the receiver's own log, its end to `on_end`.
void startOpkg(Jobs& jobs, Observer& observer, const std::vector<std::string>& arguments,
               Jobs::OnEnd on_end);

/// From now on the package manager's components of the host start `opkg`. A command that is still
/// running when its component goes is left to its end, which is then reported to nobody.
void bindPackageManager(plain::Host& host, Jobs& jobs, Observer& observer);

}  // namespace desk
