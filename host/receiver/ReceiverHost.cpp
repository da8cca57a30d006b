#include "host/receiver/ReceiverHost.h"

namespace receiver {
namespace {

/// Returns `line` in what every stream takes: bytes that are no ASCII as "\xNN".
std::string escaped(const std::string& line) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string result;
  for (const char character : line) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      result += character;
    } else {
      result += std::string("\\x") + kDigits[byte >> 4U] + kDigits[byte & 0x0FU];
    }
  }
  return result;
}

}  // namespace

std::string ReceiverHost::translate(std::string_view text) {
  return textOf(call(names_.builtin<"_">(), text).get());
}

/// A name that the log's encoding has no character for shall not stop what is being logged.
void ReceiverHost::print(const std::string& line) {
  PyObject* const output = PySys_GetObject(const_cast<char*>("stdout"));
  if (!output || output == Py_None) return;
  const Reference stream = Reference::borrow(output);
  try {
    invoke<"write">(stream, line + "\n");
  } catch (const host::Error& error) {
    if (!isA(error, PyExc_UnicodeError)) throw;
    invoke<"write">(stream, escaped(line + "\n"));
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
