#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "command/preview/JsonReport.h"
#include "command/preview/Preview.h"

namespace {

namespace fs = std::filesystem;

void write(const fs::path& path, const std::string& content) {
  fs::create_directories(path.parent_path());
  if (!(std::ofstream(path, std::ios::binary) << content << std::flush)) std::abort();
}

/// A receiver with a few files, for as long as the fuzzer runs.
class Receiver {
 public:
  Receiver() {
    std::string path = fs::temp_directory_path() / "stowline-fuzz-XXXXXX";
    if (!mkdtemp(path.data())) std::abort();
    dir_ = path;
    write(dir_ / "proc/stb/info/model", "solo2\n");
    write(dir_ / "etc/enigma2/lamedb", "eDVB services /4/\n");
    write(dir_ / "etc/enigma2/settings", "config.osd.language=en_EN\n");
    write(dir_ / "etc/hostname", "box\n");
    fs::create_symlink("/etc/hostname", dir_ / "etc/link");
  }
  ~Receiver() {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;

  const fs::path& dir() const { return dir_; }
  fs::path archive(const std::string& kind) const {
    return dir_ / "media/hdd/qor-stowline" / (kind + "_20240305_07-04_solo2.tar.gz");
  }

 private:
  fs::path dir_;
};

/// Returns the bytes as gzip stores them, without trying to make them fewer.
std::string stored(const std::string& bytes) {
  constexpr int kGzip = 16 + MAX_WBITS;
  z_stream zlib{};
  if (deflateInit2(&zlib, Z_NO_COMPRESSION, Z_DEFLATED, kGzip, 9, Z_DEFAULT_STRATEGY) != Z_OK) {
    std::abort();
  }
  constexpr std::size_t kRoom = 64;  // deflateBound is too short for no bytes at all
  std::string packed(deflateBound(&zlib, bytes.size()) + kRoom, '\0');
  zlib.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  zlib.avail_in = static_cast<uInt>(bytes.size());
  zlib.next_out = reinterpret_cast<Bytef*>(packed.data());
  zlib.avail_out = static_cast<uInt>(packed.size());
  if (deflate(&zlib, Z_FINISH) != Z_STREAM_END) std::abort();
  packed.resize(zlib.total_out);
  deflateEnd(&zlib);
  return packed;
}

}  // namespace

/// Shows the input as an archive of either kind against a receiver, as it is and as the tar archive
/// within one. Zeros make it large enough to be restored.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Receiver receiver;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  for (const std::string& archive : {bytes, stored(bytes)}) {
    for (const char* kind : {"settings", "configuration_ver_b"}) {
      const fs::path file = receiver.archive(kind);
      write(file, archive + std::string(10000, '\0'));
      try {
        std::ostringstream out;
        preview::JsonReport report(file, out);
        preview::Preview preview =
            preview::look({file, receiver.dir(), true},
                          [&report](const tarball::Member& member) { report.add(member); });
        report.finish(preview);
      } catch (const std::exception&) {
        // What cannot be shown is refused.
      }
      fs::remove(file);
    }
  }
  return 0;
}
