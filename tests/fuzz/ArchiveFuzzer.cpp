#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "command/archive/Header.h"
#include "command/archive/Verify.h"
#include "tests/support/archive/Archives.h"
#include "tests/support/archive/TarWriter.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

tarball::Verdict verdictOf(tarball::Reader& reader) {
  static const tarball::Places places({"/etc/enigma2/*", "/etc/CC*", "/usr/keys/*", "/etc/fstab"},
                                      {"etc/enigma2/*.tv", "etc/enigma2/profile"});
  const tarball::Verdict verdict = tarball::verify(reader, {.places = places});
  require(verdict.findings.size() <= tarball::kMostFindings);
  require(verdict.notes.size() <= tarball::kMostFindings);
  require(verdict.found >= verdict.findings.size() && verdict.noted >= verdict.notes.size());
  require(verdict.members <= tarball::kMostMembers);
  return verdict;
}

/// Returns how many members there are when their contents are read too, up to any damage.
std::uint64_t membersOf(tarball::Reader& reader) {
  std::uint64_t members = 0;
  try {
    for (; reader.next(); ++members) {
      while (!reader.read().empty()) {
      }
    }
  } catch (const tarball::Damaged&) {
    return members;
  }
  return members;
}

/// Returns the archive with the checksum of every header put right.
std::string withChecksums(std::string tar) {
  constexpr std::size_t kMagic = 257;
  for (std::size_t at = 0; at + tarball::kBlock <= tar.size(); at += tarball::kBlock) {
    if (tar.compare(at + kMagic, 5, "ustar") != 0) continue;
    tar.replace(at, tarball::kBlock,
                archive_test::changed(tar.substr(at, tarball::kBlock), kMagic, ""));
  }
  return tar;
}

/// Skipping contents and reading them gives the same members.
void readBothWays(const std::string& tar) {
  tarball::Reader skipping(std::make_unique<archive_test::Bytes>(tar));
  tarball::Reader reading(std::make_unique<archive_test::Bytes>(tar, 7));
  const tarball::Verdict verdict = verdictOf(skipping);
  const std::uint64_t members = membersOf(reading);
  require(!verdict.sound() || verdict.members == members);
}

}  // namespace

/// Reads the input as a compressed file, and as the tar archive itself, also with right checksums,
/// so that the fuzzer need not guess them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const archive_test::ArchiveFile file{std::string(bytes)};
  tarball::Reader compressed(file.path());
  verdictOf(compressed);
  readBothWays(std::string(bytes));
  readBothWays(withChecksums(std::string(bytes)));
  return 0;
}
