#include "PackageCommands.h"

namespace receiver {

Reference packageCommands(const Names& names, const std::vector<host::PackageCommand>& commands) {
  return toList(commands, [&](const host::PackageCommand& command) {
    const Reference options = checked(PyDict_New());
    checked(PyDict_SetItem(options.get(), named<"package">(), toObject(command.package).get()));
    return checked(PyTuple_Pack(2, ipkgCommand(names, command.command).get(), options.get()));
  });
}

namespace {

host::IpkgCommand commandOf(const Names& names, PyObject* command) {
  for (const auto known : {host::IpkgCommand::CMD_INSTALL, host::IpkgCommand::CMD_UPDATE}) {
    if (equal(command, ipkgCommand(names, known).get())) return known;
  }
  PyErr_SetString(PyExc_TypeError, "a command of the package manager is required");
  raisePending();
}

}  // namespace

std::vector<host::PackageCommand> packageCommandsOf(const Names& names, PyObject* list) {
  const Reference items = checked(PySequence_Fast(list, "a list of package commands is required"));
  std::vector<host::PackageCommand> commands;
  for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(items.get()); ++i) {
    const Reference pair = checked(PySequence_Tuple(PySequence_Fast_GET_ITEM(items.get(), i)));
    PyObject* options = nullptr;
    PyObject* command = nullptr;
    if (!PyArg_ParseTuple(pair.get(), "OO", &command, &options)) raisePending();
    const Reference package = checked(PyObject_GetItem(options, named<"package">()));
    commands.push_back({commandOf(names, command), textOf(package.get())});
  }
  return commands;
}

}  // namespace receiver
