#include "PackageCommands.h"

namespace receiver {

Reference packageCommands(const Names& names, const std::vector<host::PackageCommand>& commands) {
  return toList(commands, [&](const host::PackageCommand& command) {
    const Reference options = checked(PyDict_New());
    checked(PyDict_SetItemString(options.get(), "package", toObject(command.package).get()));
    return checked(PyTuple_Pack(2, ipkgCommand(names, command.command).get(), options.get()));
  });
}

std::vector<host::PackageCommand> packageCommandsOf(PyObject* list) {
  const Reference items = checked(PySequence_Fast(list, "a list of package commands is required"));
  std::vector<host::PackageCommand> commands;
  for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(items.get()); ++i) {
    const Reference pair = checked(PySequence_Tuple(PySequence_Fast_GET_ITEM(items.get(), i)));
    PyObject* options = nullptr;
    PyObject* command = nullptr;
    if (!PyArg_ParseTuple(pair.get(), "OO", &command, &options)) raisePending();
    const Reference package = checked(PyObject_GetItem(options, toObject("package").get()));
    commands.push_back({host::IpkgCommand::CMD_INSTALL, textOf(package.get())});
  }
  return commands;
}

}  // namespace receiver
