#include "System.h"

namespace receiver {
namespace {

/// Returns the lines that are left in a file object, and closes it whatever happens.
std::vector<std::string> linesOf(const Reference& file) {
  struct Closing {
    const Reference& file;
    ~Closing() {
      PyObject* type = nullptr;
      PyObject* value = nullptr;
      PyObject* traceback = nullptr;
      PyErr_Fetch(&type, &value, &traceback);
      const auto close = Reference::steal(PyObject_GetAttrString(file.get(), "close"));
      if (close) Py_XDECREF(PyObject_CallObject(close.get(), nullptr));
      PyErr_Restore(type, value, traceback);
    }
  };
  const Closing closing{file};
  return textsOf(invoke(file, "readlines").get());
}

int fieldOf(const Reference& time, const char* name) {
  return static_cast<int>(integerOf(attribute(time, name).get()));
}

}  // namespace

/// The status may be anything that the bound function returns: nobody looks at it.
int System::system(const std::string& command) {
  const Reference status = call(names_.get("system"), command);
  return isInteger(status.get()) ? static_cast<int>(integerOf(status.get())) : 0;
}

std::vector<std::string> System::popen(const std::string& command) {
  return linesOf(call(names_.get("popen"), command));
}

std::vector<std::string> System::open(const std::string& path) {
  return linesOf(call(names_.get("open"), path));
}

std::vector<std::string> System::listdir(const std::string& path) {
  return textsOf(call(names_.get("listdir"), path).get());
}

bool System::exists(const std::string& path) {
  return truthOf(invoke(names_.get("os_path"), "exists", path).get());
}

std::string System::join(const std::string& directory, const std::string& name) {
  return textOf(invoke(names_.get("os_path"), "join", directory, name).get());
}

long long System::fileSize(const std::string& path) {
  return integerOf(attribute(call(names_.get("os_stat"), path), "st_size").get());
}

void System::makedirs(const std::string& path) {
  call(names_.get("makedirs"), path);
}

void System::remove(const std::string& path) {
  call(names_.get("remove"), path);
}

void System::chmod(const std::string& path, int mode) {
  call(names_.get("chmod"), path, mode);
}

host::LocalTime System::localtime() {
  const Reference time = call(names_.get("localtime"));
  return {.tm_year = fieldOf(time, "tm_year"),
          .tm_mon = fieldOf(time, "tm_mon"),
          .tm_mday = fieldOf(time, "tm_mday"),
          .tm_hour = fieldOf(time, "tm_hour"),
          .tm_min = fieldOf(time, "tm_min")};
}

}  // namespace receiver
