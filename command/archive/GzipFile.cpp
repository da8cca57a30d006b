#include "command/archive/GzipFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string_view>
#include <utility>

#include "base/SystemError.h"

namespace tarball {
namespace {

constexpr std::size_t kInputSize = 64 * 1024;
constexpr std::size_t kOutputSize = 128 * 1024;
constexpr int kGzipOnly = 16 + MAX_WBITS;
constexpr unsigned char kFirstMagic = 0x1f;
constexpr std::uint64_t kMagicSize = 2;

/// Opens a file, without waiting for a writer when it is a FIFO.
base::Descriptor openFile(const std::string& path) {
  base::Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  if (!file) throw base::SystemError(errno, path);
  return file;
}

/// Returns the size of an open file in bytes.
std::uint64_t sizeOf(const base::Descriptor& file, const std::string& name) {
  struct stat status {};
  if (fstat(file.number(), &status) != 0) throw base::SystemError(errno, name);
  return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace

GzipFile::GzipFile(const std::string& path, const BeginProgress& begin)
    : GzipFile(openFile(path), path, begin) {}

GzipFile::GzipFile(base::Descriptor file, std::string name, const BeginProgress& begin)
    : file_(std::move(file)),
      name_(std::move(name)),
      progress_(begin ? begin(name_, sizeOf(file_, name_)) : Progress()),
      input_(kInputSize),
      output_(kOutputSize) {
  if (inflateInit2(&zlib_, kGzipOnly) != Z_OK) throw std::bad_alloc();
}

GzipFile::~GzipFile() {
  inflateEnd(&zlib_);
}

std::string_view GzipFile::read() {
  zlib_.next_out = output_.data();
  zlib_.avail_out = static_cast<uInt>(output_.size());
  while (zlib_.avail_out > 0 && !damage_ && unpackSome()) {
  }
  if (damage_ && produced() == 0) throw *damage_;
  unpacked_ += produced();
  return {reinterpret_cast<const char*>(output_.data()), produced()};
}

/// Returns false when there is no more to unpack.
bool GzipFile::unpackSome() {
  if (!in_member_ && !beginMember()) return false;
  if (!hasInput()) return fail(Damage::kCutOff);
  const int result = inflate(&zlib_, Z_NO_FLUSH);
  if (header_.extra_len > 0) return fail(Damage::kExtraField);
  switch (result) {
    case Z_OK:
    case Z_BUF_ERROR:
      return true;
    case Z_STREAM_END:
      in_member_ = false;
      return true;
    case Z_MEM_ERROR:
      throw std::bad_alloc();
    default:
      return fail(refusal());
  }
}

/// Returns false when no member follows.
bool GzipFile::beginMember() {
  const bool zeros = members_ > 0 && skipZeros();
  if (!hasInput()) return members_ == 0 && fail(Damage::kEmptyFile);
  if (zeros || *zlib_.next_in != kFirstMagic) return fail(noMember());
  inflateReset(&zlib_);
  header_ = {};
  inflateGetHeader(&zlib_, &header_);
  ++members_;
  in_member_ = true;
  return true;
}

/// Returns whether there was any.
bool GzipFile::skipZeros() {
  bool any = false;
  while (hasInput() && *zlib_.next_in == 0) {
    any = true;
    ++zlib_.next_in;
    --zlib_.avail_in;
  }
  return any;
}

/// Returns whether there is a byte to unpack, and reads more of the file when it has to.
bool GzipFile::hasInput() {
  if (zlib_.avail_in > 0) return true;
  ssize_t count = 0;
  do {
    count = ::read(file_.number(), input_.data(), input_.size());
  } while (count < 0 && errno == EINTR);
  if (count < 0) throw base::SystemError(errno, name_);
  zlib_.next_in = input_.data();
  zlib_.avail_in = static_cast<uInt>(count);
  file_bytes_ += static_cast<std::uint64_t>(count);
  if (progress_ && count > 0) progress_(file_bytes_);
  return count > 0;
}

/// Returns how many bytes this read has unpacked so far.
std::size_t GzipFile::produced() const {
  return output_.size() - zlib_.avail_out;
}

/// Returns what it means that zlib refuses the data.
Damage GzipFile::refusal() const {
  const std::string_view message = zlib_.msg ? zlib_.msg : "";
  if (message == "incorrect header check") return noMember();
  if (message == "incorrect data check") return Damage::kWrongChecksum;
  if (message == "incorrect length check") return Damage::kWrongLength;
  return Damage::kWrongData;
}

/// Returns what it means that bytes are no gzip member.
Damage GzipFile::noMember() const {
  return compressed() <= kMagicSize ? Damage::kNotGzip : Damage::kTrailingBytes;
}

/// Takes note of the damage, which is raised once what comes before it is handed out. Returns
/// false.
bool GzipFile::fail(Damage damage) {
  damage_ = Damaged(damage, {compressed(), unpacked_ + produced(), ""});
  return false;
}

}  // namespace tarball
