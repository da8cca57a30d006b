#pragma once

#include <string>
#include <vector>

namespace command_test {

/// The command under test, as the program of run() or as an argument of a program that starts it.
inline constexpr const char* kStowline = "/proc/self/fd/9";

/// How a process ended (as a shell gives it), and what it printed.
struct Outcome {
  int status;
  std::string output;
  std::string errors;
};

/// Runs a program, found along PATH, as the account that the test program acts as, and waits for
/// it.
Outcome run(const std::vector<std::string>& argv);

/// Returns the program and arguments that run what is appended to `wrapper` without the sanitizer's
/// check for leaks, which needs /proc: a command that moves to where there is none can only do
/// without.
std::vector<std::string> withoutLeakCheck(const std::vector<std::string>& wrapper);

/// Cuts a text into its lines, without their newlines.
std::vector<std::string> linesOf(const std::string& text);

}  // namespace command_test
