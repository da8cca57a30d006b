#include "command/archive/Header.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstdio>
#include <iterator>
#include <numeric>
#include <utility>

namespace tarball {
namespace {

/// A field of a header: what it is called, where it begins, and its size in bytes.
struct Field {
  const char* name;
  std::size_t at;
  std::size_t size;

  std::string_view of(std::string_view block) const { return block.substr(at, size); }
};

constexpr Field kName = {"name", 0, 100};
constexpr Field kMode = {"mode", 100, 8};
constexpr Field kUid = {"user ID", 108, 8};
constexpr Field kGid = {"group ID", 116, 8};
constexpr Field kSize = {"size", 124, 12};
constexpr Field kTime = {"time", 136, 12};
constexpr Field kChecksum = {"checksum", 148, 8};
constexpr Field kType = {"type", 156, 1};
constexpr Field kLink = {"link target", 157, 100};
constexpr Field kMagic = {"format", 257, 8};
constexpr Field kMajor = {"device number", 329, 8};
constexpr Field kMinor = {"device number", 337, 8};
constexpr Field kPrefix = {"name prefix", 345, 155};
constexpr Field kRest = {"last bytes", 500, 12};

constexpr std::string_view kUstar("ustar\00000", 8);
constexpr std::string_view kGnu("ustar  \0", 8);

/// The name of a header that has a long name of the member that follows.
constexpr std::string_view kLongLink = "././@LongLink";

constexpr char kLongPathType = 'L';
constexpr char kLongTargetType = 'K';

constexpr unsigned kMostOfMode = 07777;
constexpr std::int64_t kMostOfId = UINT32_MAX - std::int64_t{1};  // the one above means "none"

/// The members' types by their letters.
constexpr struct {
  char letter;
  Type type;
} kTypes[] = {
    {'0', Type::kFile},   {'1', Type::kHardLink},  {'2', Type::kSymbolicLink}, {'3', Type::kDevice},
    {'4', Type::kDevice}, {'5', Type::kDirectory}, {'6', Type::kFifo},
};

[[noreturn]] void refuse(const Field& field) {
  throw NotPlain(std::string("unusual ") + field.name);
}

bool isZero(std::string_view bytes) {
  return bytes.find_first_not_of('\0') == std::string_view::npos;
}

/// Returns an octal number, behind which the field has spaces or zeros, at least one; nothing when
/// the field has something else.
std::optional<std::uint64_t> octalOf(std::string_view field) {
  std::uint64_t number = 0;
  const char* const end = field.data() + field.size();
  const auto [rest, error] = std::from_chars(field.data(), end, number, 8);
  const std::string_view padding(rest, end);
  if (error != std::errc() || padding.empty() || *field.data() == '-') return std::nullopt;
  if (padding.find_first_not_of(std::string_view(" \0", 2)) != std::string_view::npos) {
    return std::nullopt;
  }
  return number;
}

std::uint64_t octal(std::string_view block, const Field& field) {
  const auto number = octalOf(field.of(block));
  if (!number) refuse(field);
  return *number;
}

/// Returns a number that may also be written as GNU tar writes what is negative or has too many
/// octal digits: in base 256, with the first bit set.
std::int64_t wideNumber(std::string_view block, const Field& field) {
  constexpr std::size_t kDigits = 5;
  const std::string_view bytes = field.of(block);
  const bool is_negative = bytes.front() == '\xff';
  if (!is_negative && bytes.front() != '\x80') {
    return static_cast<std::int64_t>(octal(block, field));
  }
  const std::string_view sign = bytes.substr(1, bytes.size() - kDigits - 1);
  if (sign.find_first_not_of(is_negative ? '\xff' : '\0') != std::string_view::npos) refuse(field);
  std::int64_t number = is_negative ? -1 : 0;
  for (const char byte : bytes.substr(bytes.size() - kDigits)) {
    number = number * 256 + static_cast<unsigned char>(byte);
  }
  return number;
}

unsigned modeOf(std::string_view block) {
  const std::uint64_t mode = octal(block, kMode);
  if (mode > kMostOfMode) refuse(kMode);
  return static_cast<unsigned>(mode);
}

std::int64_t idOf(std::string_view block, const Field& field) {
  const std::int64_t id = wideNumber(block, field);
  if (id < 0 || id > kMostOfId) refuse(field);
  return id;
}

/// Returns a text, behind which the field has nothing but zeros.
std::string text(std::string_view block, const Field& field) {
  const std::string_view bytes = field.of(block);
  const std::size_t end = std::min(bytes.find('\0'), bytes.size());
  if (!isZero(bytes.substr(end))) refuse(field);
  return std::string(bytes.substr(0, end));
}

/// Puts a long name in the place of one that a header has cut off.
void lengthen(std::string& name, const std::optional<std::string>& long_name) {
  if (!long_name) return;
  if (name.empty() || !long_name->starts_with(name)) throw NotPlain("long name of something else");
  name = *long_name;
}

/// Raises NotPlain for another format than the two, or odd bytes in fields that say nothing of a
/// file or link.
void requireFormat(std::string_view block) {
  const std::string_view magic = kMagic.of(block);
  if (magic != kUstar && magic != kGnu) refuse(kMagic);
  if (magic == kGnu && !isZero(kPrefix.of(block))) refuse(kPrefix);
  for (const Field& field : {kMajor, kMinor}) {
    if (!isZero(field.of(block))) octal(block, field);
  }
  if (!isZero(kRest.of(block))) refuse(kRest);
}

Type typeOf(char letter) {
  const auto* known = std::ranges::find(kTypes, letter, [](const auto& row) { return row.letter; });
  if (known == std::end(kTypes)) refuse(kType);
  return known->type;
}

/// Whether all programs take a path for the same: each of its names once, without "." but at its
/// beginning. A directory's may end with "/".
bool isPlainPath(std::string_view path, bool is_directory) {
  if (path.starts_with("./")) path.remove_prefix(2);
  if (is_directory && path.ends_with('/')) path.remove_suffix(1);
  const std::string all = "/" + std::string(path) + "/";
  return !path.empty() && all.find("//", 1) == std::string::npos &&
         all.find("/./") == std::string::npos;
}

}  // namespace

bool hasRightChecksum(std::string_view block) {
  const auto add = [](std::uint64_t sum, char byte) {
    return sum + static_cast<unsigned char>(byte);
  };
  const std::string_view behind = block.substr(kChecksum.at + kChecksum.size);
  const std::uint64_t before =
      std::accumulate(block.begin(), block.begin() + kChecksum.at, kChecksum.size * ' ', add);
  const std::uint64_t sum = std::accumulate(behind.begin(), behind.end(), before, add);
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%06llo%c ", static_cast<unsigned long long>(sum), '\0');
  const std::string_view written = kChecksum.of(block);
  return written == std::string_view(text.data(), kChecksum.size) ||
         written == "0" + std::string(text.data(), kChecksum.size - 1);
}

Header::Header(std::string_view block) : type_(block[kType.at]) {
  requireFormat(block);
  const std::string prefix = text(block, kPrefix);
  const std::string name = text(block, kName);
  if (name.empty()) refuse(kName);
  has_prefix_ = !prefix.empty();
  member_ = {.path = has_prefix_ ? prefix + "/" + name : name,
             .size = octal(block, kSize),
             .mode = modeOf(block),
             .modified = wideNumber(block, kTime),
             .uid = idOf(block, kUid),
             .gid = idOf(block, kGid),
             .link = text(block, kLink)};
  if (isLongName()) {
    requireLongName();
  } else {
    member_.type = typeOf(type_);
    if (size() > 0 && member_.type != Type::kFile) refuse(kSize);
  }
}

/// Raises NotPlain where the header of a long name has what only a member has, or too long a name.
void Header::requireLongName() const {
  if (member_.path != kLongLink) refuse(kName);
  if (!member_.link.empty()) refuse(kLink);
  if (size() >= PATH_MAX) refuse(kSize);
}

bool Header::isLongName() const {
  return type_ == kLongPathType || type_ == kLongTargetType;
}

void Header::addTo(LongNames& names, std::string content) const {
  std::optional<std::string>& name = type_ == kLongPathType ? names.path : names.link;
  if (name) throw NotPlain("two long names");
  if (content.size() < 2 || content.find('\0') != content.size() - 1) {
    throw NotPlain("unusual long name");
  }
  content.pop_back();
  name = std::move(content);
}

Member Header::member(const LongNames& names) const {
  if (names.path && has_prefix_) refuse(kPrefix);
  Member member = member_;
  lengthen(member.path, names.path);
  lengthen(member.link, names.link);
  const bool is_hard = member.type == Type::kHardLink;
  const bool is_link = is_hard || member.type == Type::kSymbolicLink;
  if (is_link == member.link.empty()) refuse(kLink);
  if (is_hard && !isPlainPath(member.link, false)) refuse(kLink);
  if (!isPlainPath(member.path, member.type == Type::kDirectory)) refuse(kName);
  return member;
}

}  // namespace tarball
