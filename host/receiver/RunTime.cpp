/// In place of parts of the C++ run time that the module never needs and that, linked in
/// statically, would make it larger by a quarter. None of it is seen outside the module.

#include <cstdlib>
#include <exception>
#include <new>

#include "host/receiver/Reference.h"

namespace __cxxabiv1 {

/// An exception never leaves the module. The run time's own handler would print it.
__attribute__((visibility("hidden"))) extern std::terminate_handler __terminate_handler;
std::terminate_handler __terminate_handler = std::abort;

}  // namespace __cxxabiv1

namespace std {

// What the library's own checks raise. Its definitions bring along every class of exception there
// is, with their texts and translations; here a failed check raises the interpreter's RuntimeError.

namespace {

[[noreturn]] void raise(const char* what) {
  PyErr_SetString(PyExc_RuntimeError, what);
  receiver::raisePending();
}

}  // namespace

void __throw_bad_alloc() {
  throw bad_alloc();
}

void __throw_bad_array_new_length() {
  throw bad_alloc();
}

void __throw_length_error(const char* what) {
  raise(what);
}

void __throw_logic_error(const char* what) {
  raise(what);
}

void __throw_out_of_range_fmt(const char* what, ...) {
  raise(what);
}

}  // namespace std
