#include "command/archive/Damaged.h"

#include <utility>

#include "command/archive/Paths.h"

namespace tarball {
namespace {

std::string described(const Position& position) {
  std::string text = "byte " + std::to_string(position.compressed) + " of the file, byte " +
                     std::to_string(position.unpacked) + " unpacked";
  if (!position.member.empty()) text += ", last member " + shownPath(position.member);
  return text;
}

}  // namespace

const char* described(Damage damage) {
  switch (damage) {
    case Damage::kEmptyFile:
      return "the file is empty";
    case Damage::kNotGzip:
      return "the file is not compressed by gzip";
    case Damage::kExtraField:
      return "the gzip header has an extra field";
    case Damage::kCutOff:
      return "the file is cut off";
    case Damage::kWrongData:
      return "the compressed data are damaged";
    case Damage::kWrongChecksum:
      return "the checksum is wrong";
    case Damage::kWrongLength:
      return "the length is wrong";
    case Damage::kTrailingBytes:
      return "other data follow the compressed data";
    case Damage::kTooLarge:
      return "the archive unpacks to more than 1 GiB";
    case Damage::kNoTar:
      return "there is no tar archive in the file";
    case Damage::kWrongHeader:
      return "the header of a member is damaged";
    case Damage::kNotPlain:
      return "programs may read the header of a member differently";
    case Damage::kTooManyMembers:
      return "the archive has more than 100000 members";
    case Damage::kPathsTooLong:
      return "the members' paths take more than 16 MiB";
    case Damage::kTarCutOff:
      return "the tar archive is cut off";
    case Damage::kDataAfterEnd:
      return "other data follow the end of the tar archive";
  }
  return "the archive is damaged";
}

Damaged::Damaged(Damage damage, Position position, const std::string& detail)
    : std::runtime_error(described(damage) + (detail.empty() ? "" : ": " + detail) + " (" +
                         described(position) + ")"),
      damage_(damage),
      position_(std::move(position)) {}

}  // namespace tarball
