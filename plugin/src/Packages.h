#pragma once

#include "plugin/src/Framework.h"
#include "plugin/src/Set.h"

namespace stowline {

/// Prints the names of the installed plugin packages, one a line. The filter is a substring test on
/// opkg's whole line, version included.
inline constexpr Text kInstalledPlugins =
    "opkg list-installed | grep enigma2-plugin | cut -d \" \" -f 1"_t;

/// Sets the attributes `cmdList`, empty, `Console` and `ipkg`, whose events go to the operation
/// `ipkgCallback`.
void addPackageManager(const Call& call);

/// Sets the attributes `pluginsinstalled` and `pluginsinstalledclean`: the installed packages, as
/// lines and without their newlines.
void listInstalledPlugins(const Call& call);

/// Returns whether `package` is among the installed ones, and logs it if so.
bool reportInstalled(const Call& call, const Set& installed, const Object& package);

/// Queues the installation of `package` in the attribute `cmdList`.
void queueInstallation(const Call& call, const Object& package);

/// Carries out `install` when the feed update that was started for `restoretype` is done:
/// "ipkgCallback" of a screen. An error of the update goes to the screen's `setStatus`, which no
/// screen of ours defines: the host reports that.
void continueInstallation(const Call& call, Text restoretype, Text install);

}  // namespace stowline
