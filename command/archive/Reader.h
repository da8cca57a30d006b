#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "command/archive/GzipFile.h"
#include "command/archive/Member.h"
#include "command/archive/Stream.h"

namespace tarball {

/// The most that an archive may unpack to, in bytes: no receiver has room for more.
inline constexpr std::uint64_t kMostUnpacked = std::uint64_t{1} << 30;

/// The most members that an archive may have.
inline constexpr std::uint64_t kMostMembers = 100000;

/// The most bytes that the paths of all members may take, with where links point.
inline constexpr std::uint64_t kMostOfPaths = std::uint64_t{16} << 20;

/// Reads the members of a tar archive compressed by gzip, one after another, whoever has made it:
/// it takes little memory and an end whatever the archive holds. What it reads, every tar program
/// reads alike: it takes the plain headers that the programs themselves write (Header) and no
/// others. A reader that has raised an error is of no more use.
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
  /// at its end. Raises as next().
  std::string_view read();

  /// Returns how many bytes have been unpacked.
  std::uint64_t unpacked() const { return unpacked_; }

 private:
  std::optional<Member> readMember();
  std::string takeBlock();
  std::string_view take(std::uint64_t most);
  std::string_view moreBytes();
  void beginContent(std::uint64_t size);
  void skipContent();
  void count(const Member& member);
  void readToEnd();
  std::uint64_t position() const { return unpacked_ - pending_.size(); }
  [[noreturn]] void fail(Damage damage, std::uint64_t at, const std::string& detail = "");

  std::unique_ptr<Stream> stream_;
  std::string_view pending_;    // unpacked, and not taken yet
  std::uint64_t unpacked_ = 0;  // bytes read from the stream
  std::uint64_t content_ = 0;   // bytes left of the current content
  std::uint64_t padding_ = 0;   // bytes behind it, up to a whole block
  std::uint64_t header_ = 0;    // where the last header begins
  std::uint64_t paths_ = 0;     // bytes
  std::uint64_t members_ = 0;
  std::string member_;  // path of the current member
  bool has_header_ = false;
  bool ended_ = false;
};

}  // namespace tarball
