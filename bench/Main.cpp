// Prints how long whole processes take on a receiver tree of its own: the desk's first frame, and a
// configuration backup against the same tar commands without us. Build it in release, or the
// figures mean little.

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/Processes.h"

int main() {
  try {
    bench::measureProcesses();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "stowline_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
