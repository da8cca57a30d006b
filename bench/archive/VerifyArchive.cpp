#include <iostream>
#include <string>
#include <vector>

#include "command/archive/Verify.h"

/// Reads and verifies the archive that the argument names, by the longest list of places there is.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "verify_archive ARCHIVE\n";
    return 2;
  }
  std::vector<std::string> patterns;
  patterns.reserve(41);
  for (int number = 0; number < 40; ++number) {
    patterns.push_back("/etc/place" + std::to_string(number) + "/*.cfg");
  }
  patterns.emplace_back("/etc/enigma2/*");
  const tarball::Places places(patterns, {"etc/enigma2/*.tv", "etc/enigma2/*.radio",
                                          "etc/enigma2/*.pem", "etc/enigma2/profile"});
  tarball::Reader reader{std::string(argv[1])};
  return tarball::verify(reader, {.places = places}).sound() ? 0 : 1;
}
