#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/receiver/Module.h"
#include "host/receiver/PackageCommands.h"
#include "plugin/src/BackupJobs.h"

namespace receiver {

/// The jobs of any object of the interpreter that has the three of them.
class JobsProxy : public stowline::BackupJobs, public Proxy {
 public:
  using Proxy::Proxy;
  host::Value createSettingFile() override { return run<"createSettingFile">(); }
  host::Value createConfigFile() override { return run<"createConfigFile">(); }
  host::Value createPluginList() override { return run<"createPluginList">(); }

 private:
  template <Literal job>
  host::Value run() {
    return valueOf(invoke<job>(object()).get());
  }
};

/// Returns an argument as the operation takes it. Raises TypeError when it is of another type.
template <class T>
T fromArgument(const Module& module, PyObject* argument);

template <>
inline host::Value fromArgument(const Module& /*module*/, PyObject* argument) {
  return valueOf(argument);
}

template <>
inline std::string fromArgument(const Module& /*module*/, PyObject* argument) {
  return textOf(argument);
}

template <>
inline std::vector<std::string> fromArgument(const Module& /*module*/, PyObject* argument) {
  return textsOf(argument);
}

/// Compares the event with the framework's own, the error first.
template <>
host::IpkgEvent fromArgument(const Module& module, PyObject* argument);

/// Return a data member as the interpreter sees it: a list is a copy. What may hold several objects
/// is copied here too: other code may change the member while the interpreter's objects are made.
template <class T>
Reference fromMember(const Module& /*module*/, const T& member) {
  return toObject(member);
}

// NOLINTBEGIN(performance-unnecessary-value-param)
template <class T>
Reference fromMember(const Module& /*module*/, std::vector<T> member) {
  return toObject(member);
}

inline Reference fromMember(const Module& /*module*/, host::Value member) {
  return toObject(member);
}

inline Reference fromMember(const Module& module, std::vector<host::PackageCommand> member) {
  return packageCommands(module.host.names(), member);
}
// NOLINTEND(performance-unnecessary-value-param)

template <class Interface>
Reference fromProxy(const Interface* proxy) {
  const auto* held = dynamic_cast<const Proxy*>(proxy);
  return held ? held->object() : Reference::borrow(Py_None);
}

inline Reference fromMember(const Module& /*module*/,
                            const std::shared_ptr<host::ComConsole>& member) {
  return fromProxy(member.get());
}

inline Reference fromMember(const Module& /*module*/,
                            const std::shared_ptr<host::IpkgComponent>& member) {
  return fromProxy(member.get());
}

inline Reference fromMember(const Module& /*module*/,
                            const std::shared_ptr<stowline::BackupJobs>& member) {
  return fromProxy(member.get());
}

/// Stores an object in a data member. Raises TypeError when it is of another type. What the member
/// held goes only when the new value is in place: an object that goes may look.
void toMember(const Module& module, std::string& member, PyObject* value);
void toMember(const Module& module, bool& member, PyObject* value);
void toMember(const Module& module, std::optional<std::string>& member, PyObject* value);
void toMember(const Module& module, std::vector<std::string>& member, PyObject* value);
void toMember(const Module& module, host::Value& member, PyObject* value);
void toMember(const Module& module, host::Value::List& member, PyObject* value);
void toMember(const Module& module, std::vector<host::PackageCommand>& member, PyObject* value);
void toMember(const Module& module, std::shared_ptr<host::ComConsole>& member, PyObject* value);
void toMember(const Module& module, std::shared_ptr<host::IpkgComponent>& member, PyObject* value);
void toMember(const Module& module, std::shared_ptr<stowline::BackupJobs>& member, PyObject* value);

/// Calls `visit` for the objects that a data member alone holds, as tp_traverse has to.
template <class T>
int traverseMember(const T& /*member*/, visitproc /*visit*/, void* /*arg*/) {
  return 0;
}

inline int traverseMember(const host::Value& member, visitproc visit, void* arg) {
  return traverse(member, visit, arg);
}

inline int traverseMember(const host::Value::List& member, visitproc visit, void* arg) {
  for (const host::Value& value : member) {
    if (const int result = traverse(value, visit, arg)) return result;
  }
  return 0;
}

template <class Interface>
int traverseProxy(const Interface* proxy, visitproc visit, void* arg) {
  if (const auto* held = dynamic_cast<const Proxy*>(proxy)) Py_VISIT(held->object().get());
  return 0;
}

/// What somebody else holds too is not the member's alone to give up.
template <class Interface>
int traverseMember(const std::shared_ptr<Interface>& member, visitproc visit, void* arg) {
  return member.use_count() == 1 ? traverseProxy(member.get(), visit, arg) : 0;
}

}  // namespace receiver
