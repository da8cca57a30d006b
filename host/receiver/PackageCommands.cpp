#include "host/receiver/PackageCommands.h"

namespace receiver {

Reference packageCommands(const Names& names, const std::vector<host::PackageCommand>& commands) {
  return toList(commands, [&](const host::PackageCommand& command) {
    const Reference options = checked(PyDict_New());
    checked(PyDict_SetItem(options.get(), named<"package">(), toObject(command.package).get()));
    return checked(PyTuple_Pack(2, ipkgCommand(names, command.command).get(), options.get()));
  });
}

namespace {

[[noreturn]] void raiseTypeError() {
  PyErr_SetString(PyExc_TypeError, "a package command is required: (command, {\"package\": name})");
  raisePending();
}

host::IpkgCommand commandOf(const Names& names, PyObject* command) {
  for (const auto known : {host::IpkgCommand::CMD_INSTALL, host::IpkgCommand::CMD_UPDATE}) {
    if (equal(command, ipkgCommand(names, known).get())) return known;
  }
  raiseTypeError();
}

}  // namespace

std::vector<host::PackageCommand> packageCommandsOf(const Names& names, PyObject* list) {
  const Reference items = checked(PySequence_Tuple(list));
  std::vector<host::PackageCommand> commands;
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(items.get()); ++i) {
    PyObject* const pair = PyTuple_GET_ITEM(items.get(), i);
    if (!PyTuple_Check(pair) || PyTuple_GET_SIZE(pair) != 2) raiseTypeError();
    PyObject* const options = PyTuple_GET_ITEM(pair, 1);
    if (!PyDict_Check(options) || PyDict_Size(options) != 1) raiseTypeError();
    const Reference package = checked(PyObject_GetItem(options, named<"package">()));
    commands.push_back({commandOf(names, PyTuple_GET_ITEM(pair, 0)), textOf(package.get())});
  }
  return commands;
}

}  // namespace receiver
