#pragma once

#include <sys/types.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "command/archive/GzipFile.h"
#include "command/archive/Member.h"
#include "command/archive/Stream.h"

struct archive;

namespace tarball {

/// The most that an archive may unpack to, in bytes: no receiver has room for more.
inline constexpr std::uint64_t kMostUnpacked = std::uint64_t{1} << 30;

/// The most members that an archive may have.
inline constexpr std::uint64_t kMostMembers = 100000;

/// The most bytes that the paths of all members may take, with where links point.
inline constexpr std::uint64_t kMostOfPaths = std::uint64_t{16} << 20;

/// The most bytes that one member's header may take, with long names and extended attributes. Some
/// of them take a time to read that grows with their number squared.
inline constexpr std::size_t kHeaderRoom = 64 * 1024;

/// A header longer than this is unusual, and all such headers of an archive may take so many bytes.
inline constexpr std::uint64_t kLongHeader = 2 * 1024;
inline constexpr std::uint64_t kLongHeadersRoom = 1024 * 1024;

/// Reads the members of a tar archive compressed by gzip, one after another, whoever has made it:
/// it takes little memory and an end whatever the archive holds. A reader that has raised an error
/// is of no more use.
class Reader {
 public:
  /// Reads the archive `path`. `begin` may be given to hear how far the file has been read. Raises
  /// base::SystemError.
  explicit Reader(const std::string& path, const BeginProgress& begin = {});

  /// Reads an archive from an open file, from where it stands. `name` names it in an error. Raises
  /// base::SystemError.
  Reader(base::Descriptor file, std::string name, const BeginProgress& begin = {});

  /// Reads a tar archive out of any stream.
  explicit Reader(std::unique_ptr<Stream> stream);

  /// Goes on to the next member, past what has not been read of the one before. None at the end:
  /// then everything up to the end of the file has been read and found right. Raises Damaged, and
  /// base::SystemError.
  std::optional<Member> next();

  /// Returns the next bytes of the current member's content, which stay until the next call; none
  /// at its end. Of a sparse file they are those that it stores. Raises as next().
  std::string_view read();

  /// Returns how many bytes have been unpacked.
  std::uint64_t unpacked() const { return unpacked_; }

 private:
  struct Free {
    void operator()(::archive* handle) const;
  };

  static ssize_t handOver(::archive* handle, void* reader, const void** bytes);
  std::string_view slice();
  std::string_view moreBytes();
  void open();
  void require(int result);
  void count(std::uint64_t header);
  void readToEnd();
  std::uint64_t position() const;
  [[noreturn]] void fail(std::uint64_t at);
  [[noreturn]] void fail(Damage damage, std::uint64_t at);

  std::unique_ptr<Stream> stream_;
  std::unique_ptr<::archive, Free> handle_;
  std::exception_ptr failure_;       // raised while libarchive asked for more
  std::string_view pending_;         // unpacked, and not handed to libarchive yet
  std::string_view handed_;          // handed to libarchive last
  std::optional<std::size_t> room_;  // left for a header, while one is being read
  std::uint64_t unpacked_ = 0;       // read from the stream
  std::uint64_t long_headers_ = 0;   // bytes
  std::uint64_t paths_ = 0;          // bytes
  std::uint64_t members_ = 0;
  std::string member_;      // path of the current member
  bool exhausted_ = false;  // libarchive has asked for more than there is
  bool opened_ = false;
  bool in_member_ = false;
  bool ended_ = false;
};

}  // namespace tarball
