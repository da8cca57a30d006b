#include "host/receiver/Members.h"

#include <utility>

namespace receiver {
namespace {

[[noreturn]] void raiseTypeError(const char* required, PyObject* value) {
  PyErr_Format(PyExc_TypeError, "%s is required, not %.200s", required, Py_TYPE(value)->tp_name);
  raisePending();
}

}  // namespace

template <>
host::IpkgEvent fromArgument(const Module& module, PyObject* argument) {
  const Reference component = module.host.names().get<"IpkgComponent">();
  if (equal(argument, attribute<"EVENT_ERROR">(component).get()))
    return host::IpkgEvent::EVENT_ERROR;
  if (equal(argument, attribute<"EVENT_DONE">(component).get())) return host::IpkgEvent::EVENT_DONE;
  return host::IpkgEvent::EVENT_OTHER;
}

void toMember(const Module& /*module*/, std::string& member, PyObject* value) {
  member = textOf(value);
}

void toMember(const Module& /*module*/, bool& member, PyObject* value) {
  if (!PyBool_Check(value)) raiseTypeError("a truth value", value);
  member = value == Py_True;
}

void toMember(const Module& /*module*/, std::optional<std::string>& member, PyObject* value) {
  member = value == Py_None ? std::nullopt : std::optional(textOf(value));
}

void toMember(const Module& /*module*/, std::vector<std::string>& member, PyObject* value) {
  member = textsOf(value);
}

void toMember(const Module& /*module*/, host::Value& member, PyObject* value) {
  member = rowOf(value);
}

void toMember(const Module& /*module*/, host::Value::List& member, PyObject* value) {
  const host::Value list = rowOf(value);
  if (!list.list()) raiseTypeError("a list", value);
  const host::Value::List former = std::exchange(member, *list.list());
}

void toMember(const Module& module, std::vector<host::PackageCommand>& member, PyObject* value) {
  member = packageCommandsOf(module.host.names(), value);
}

void toMember(const Module& /*module*/, std::shared_ptr<host::ComConsole>& member,
              PyObject* value) {
  const auto former =
      std::exchange(member, std::make_shared<ComConsoleProxy>(Reference::borrow(value)));
}

void toMember(const Module& module, std::shared_ptr<host::IpkgComponent>& member, PyObject* value) {
  const auto former = std::exchange(
      member, std::make_shared<IpkgComponentProxy>(module.host.names(), Reference::borrow(value)));
}

void toMember(const Module& /*module*/, std::shared_ptr<stowline::BackupJobs>& member,
              PyObject* value) {
  const auto former = std::exchange(member, std::make_shared<JobsProxy>(Reference::borrow(value)));
}

}  // namespace receiver
