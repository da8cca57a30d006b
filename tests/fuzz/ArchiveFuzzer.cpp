#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "command/archive/Verify.h"

namespace {

/// The input, as a tar archive that nobody has compressed.
class Input : public tarball::Stream {
 public:
  explicit Input(std::string_view bytes) : bytes_(bytes) {}
  std::string_view read() override { return std::exchange(bytes_, {}); }
  std::uint64_t compressed() const override { return 0; }

 private:
  std::string_view bytes_;
};

base::Descriptor fileOf(std::string_view bytes) {
  base::Descriptor file(memfd_create("input", MFD_CLOEXEC));
  if (pwrite(file.number(), bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    std::abort();
  }
  return file;
}

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

}  // namespace

/// Reads the input as a compressed file, and as the tar archive itself, so that nobody has to guess
/// checksums to get that far.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  tarball::Reader compressed(fileOf(bytes), "input");
  verdictOf(compressed);
  tarball::Reader skipping(std::make_unique<Input>(bytes));
  tarball::Reader reading(std::make_unique<Input>(bytes));
  const tarball::Verdict verdict = verdictOf(skipping);
  const std::uint64_t members = membersOf(reading);
  require(!verdict.sound() || verdict.members == members);
  return 0;
}
