#include "ReceiverHost.h"

namespace receiver {
namespace {

/// Returns `line` in what every stream takes: what is no valid text as escapes.
Reference escaped(const Reference& line) {
  const Reference bytes =
      checked(PyUnicode_AsEncodedString(line.get(), "ascii", "backslashreplace"));
  return checked(PyUnicode_DecodeASCII(PyBytes_AS_STRING(bytes.get()),
                                       PyBytes_GET_SIZE(bytes.get()), nullptr));
}

}  // namespace

std::string ReceiverHost::translate(const std::string& text) {
  return textOf(call(builtin<"_">(), text).get());
}

/// A name that the log's encoding has no character for shall not stop what is being logged.
void ReceiverHost::print(const std::string& line) {
  PyObject* const output = PySys_GetObject(const_cast<char*>("stdout"));
  if (!output || output == Py_None) return;
  const Reference stream = Reference::borrow(output);
  const Reference text = toObject(line + "\n");
  try {
    invoke<"write">(stream, text);
  } catch (const host::Error& error) {
    if (error.type() != "UnicodeEncodeError") throw;
    invoke<"write">(stream, escaped(text));
  }
}

bool ReceiverHost::fileExists(const std::string& path) {
  return truthOf(call(names_.get<"fileExists">(), path).get());
}

std::string ReceiverHost::resolveFilename(host::Scope /*scope*/, const std::string& relative) {
  const Reference resolve = names_.get<"resolveFilename">();
  const Reference scope = names_.get<"SCOPE_PLUGINS">();
  const Reference path = relative.empty() ? call(resolve, scope) : call(resolve, scope, relative);
  return textOf(path.get());
}

std::string ReceiverHost::deviceName() {
  return textOf(invoke<"get_device_name">(call(names_.get<"HardwareInfoVu">())).get());
}

void ReceiverHost::clearPluginList() {
  invoke<"clearPluginList">(names_.get<"plugins">());
}

void ReceiverHost::readPluginList(const std::string& directory) {
  invoke<"readPluginList">(names_.get<"plugins">(), directory);
}

}  // namespace receiver
