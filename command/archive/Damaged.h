#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tarball {

/// What may be wrong with an archive.
enum class Damage {
  kEmptyFile,       // the file has no byte
  kNotGzip,         // the file does not begin as gzip data do
  kExtraField,      // the gzip data begin with an extra field, which one program cannot skip
  kCutOff,          // the file ends within its gzip data
  kWrongData,       // the gzip data cannot be unpacked
  kWrongChecksum,   // they unpack to other bytes than were packed
  kWrongLength,     // they unpack to more or fewer bytes than were packed
  kTrailingBytes,   // other bytes than zeros follow the gzip data
  kTooLarge,        // there is more to unpack than any receiver has room for
  kNoTar,           // what is unpacked is no tar archive
  kWrongHeader,     // the header of a member is damaged
  kNotPlain,        // two programs may read the header of a member differently
  kTooManyMembers,  // there are more members than any receiver has files
  kPathsTooLong,    // their paths are longer in all than any receiver's
  kTarCutOff,       // the tar archive ends before its end mark
  kDataAfterEnd,    // other bytes than zeros follow the tar archive's end mark
};

/// Where something is wrong.
struct Position {
  std::uint64_t compressed = 0;  ///< bytes of the file that had been unpacked
  std::uint64_t unpacked = 0;    ///< the byte of the tar archive
  std::string member;            ///< the path of the last member before it, as the archive has it
};

/// Raised when an archive is damaged, or is nothing that can be read within our limits.
class Damaged : public std::runtime_error {
 public:
  /// `detail`: what more there is to say of it in words, "" for nothing.
  Damaged(Damage damage, Position position, const std::string& detail = "");

  Damage damage() const { return damage_; }
  const Position& position() const { return position_; }

 private:
  Damage damage_;
  Position position_;
};

/// Returns what is wrong in words, such as "the checksum is wrong".
const char* described(Damage damage);

}  // namespace tarball
