#pragma once

#include <zlib.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Descriptor.h"
#include "command/archive/Damaged.h"
#include "command/archive/Stream.h"

namespace tarball {

/// Takes the number of bytes of the file that have been read so far.
using Progress = std::function<void(std::uint64_t)>;

/// Takes the name and the size in bytes of a file that is about to be read. Returns what hears how
/// far it has been read, empty for nothing.
using BeginProgress = std::function<Progress(const std::string& name, std::uint64_t size)>;

/// What a file compressed by gzip unpacks to. Several gzip members one after another are one
/// stream, and zeros may follow them, as gzip(1) has it. Checksums and lengths are checked.
class GzipFile : public Stream {
 public:
  /// Opens `path`. Raises base::SystemError.
  explicit GzipFile(const std::string& path, const BeginProgress& begin = {});

  /// Reads an open file from where it stands. `name` names it in an error. Raises
  /// base::SystemError.
  GzipFile(base::Descriptor file, std::string name, const BeginProgress& begin = {});

  ~GzipFile() override;
  GzipFile(const GzipFile&) = delete;
  GzipFile& operator=(const GzipFile&) = delete;

  std::string_view read() override;
  std::uint64_t compressed() const override { return file_bytes_ - zlib_.avail_in; }

 private:
  bool unpackSome();
  bool beginMember();
  bool skipZeros();
  bool hasInput();
  std::size_t produced() const;
  Damage refusal() const;
  Damage noMember() const;
  bool fail(Damage damage);

  base::Descriptor file_;
  std::string name_;
  Progress progress_;
  std::vector<unsigned char> input_;
  std::vector<unsigned char> output_;
  z_stream zlib_{};
  gz_header header_{};            // of the gzip member
  std::uint64_t file_bytes_ = 0;  // read from the file
  std::uint64_t unpacked_ = 0;    // handed out by the calls before this one
  std::uint64_t members_ = 0;     // begun
  bool in_member_ = false;
  std::optional<Damaged> damage_;  // found behind the bytes that are handed out
};

}  // namespace tarball
