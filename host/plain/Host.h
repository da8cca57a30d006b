#pragma once

#include <string>
#include <string_view>

#include "host/plain/Config.h"
#include "host/plain/System.h"
#include "host/plain/Widgets.h"

namespace plain {

/// A receiver without an interpreter and without a display: an operating system, the settings, and
/// a framework whose widgets keep what they are given. What it lacks, or does otherwise elsewhere,
/// is bound to other objects.
class Host {
 public:
  /// Both outlive the host, and neither is used before the module is loaded.
  Host(System& system, Settings& settings);
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Bind a name of the framework to another object than the plain one.
  void bind(std::string_view name, const Object& object);
  void bind(std::string_view name, Function::Run function);

  /// From now on the receiver is of this model, whatever its files say.
  void setModel(const std::string& model);

  /// From now on the package manager's components start their commands by `start`.
  void setPackageManager(const IpkgComponent::Start& start);

  /// The module, which is to be loaded before anything else is done with it.
  const host::Module& module() const { return module_; }

  /// Returns what a name is bound to. Raises Error ("AttributeError") when there is none.
  Object named(std::string_view name) const { return nodeOf(names_).get(name); }

  System& system() const { return system_; }

  /// Returns the receiver's model, as the module is told it.
  std::string model() const;

 protected:
  /// For a host that binds names in another way.
  Host(System& system, Settings& settings, Object names);

 private:
  System& system_;
  Object names_;
  host::Module module_;
};

}  // namespace plain
