#include "command/archive/Header.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
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
constexpr Field kRest = {"unused rest", 500, 12};

constexpr std::string_view kUstar("ustar\00000", 8);
constexpr std::string_view kGnu("ustar  \0", 8);

/// The name of a header that has a long name of the member that follows.
constexpr std::string_view kLongLink = "././@LongLink";

constexpr char kLongPathType = 'L';
constexpr char kLongTargetType = 'K';
constexpr char kTimesType = 'x';

constexpr unsigned kMostOfMode = 07777;
constexpr std::int64_t kMostOfId = UINT32_MAX - std::int64_t{1};  // the one above means "none"
constexpr std::size_t kMostOfTimes = 512;

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

/// Returns a number that may also be written as GNU tar writes what has too many octal digits: in
/// base 256, with the first bit set.
std::int64_t wideNumber(std::string_view block, const Field& field) {
  constexpr std::size_t kDigits = 5;
  const std::string_view bytes = field.of(block);
  if (bytes.front() != '\x80') return static_cast<std::int64_t>(octal(block, field));
  if (!isZero(bytes.substr(1, bytes.size() - kDigits - 1))) refuse(field);
  std::int64_t number = 0;
  for (const char byte : bytes.substr(bytes.size() - kDigits)) {
    number = number * 256 + static_cast<unsigned char>(byte);
  }
  return number;
}

std::int64_t idOf(std::string_view block, const Field& field) {
  const std::int64_t id = wideNumber(block, field);
  if (id > kMostOfId) refuse(field);
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

/// Raises NotPlain unless the block is of one of the two formats, in all that says nothing of a
/// member.
void requireFormat(std::string_view block) {
  const std::string_view magic = kMagic.of(block);
  if (magic != kUstar && magic != kGnu) refuse(kMagic);
  if (magic == kGnu && !isZero(kPrefix.of(block))) refuse(kPrefix);
  if (octal(block, kMode) > kMostOfMode) refuse(kMode);
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

/// Takes the next record off those of an extended header (pax(1), "pax Extended Header") and
/// returns its key and value, both empty when it is not written as it should be.
std::pair<std::string_view, std::string_view> takeRecord(std::string_view& records) {
  std::size_t length = 0;
  const char* const end = records.data() + records.size();
  const char* const digits_end = std::from_chars(records.data(), end, length).ptr;
  const auto digits = static_cast<std::size_t>(digits_end - records.data());
  if (records.front() == '0' || length > records.size() || length < digits + 2) return {};
  const std::string_view record = records.substr(0, length);
  const std::size_t equals = record.find('=');
  if (record[digits] != ' ' || !record.ends_with('\n') || equals == std::string_view::npos) {
    return {};
  }
  records.remove_prefix(length);
  return {record.substr(digits + 1, equals - digits - 1),
          record.substr(equals + 1, length - equals - 2)};
}

/// Raises NotPlain unless the records of an extended header say times and nothing else, each once,
/// and the same time of modification in seconds as the member's own header.
void requireTimes(std::string_view records, std::int64_t modified) {
  std::vector<std::string_view> left = {"mtime", "atime", "ctime"};
  while (!records.empty()) {
    const auto [key, value] = takeRecord(records);
    const bool is_number =
        !value.empty() && value.find_first_not_of("0123456789.") == std::string_view::npos;
    if (std::erase(left, key) == 0 || !is_number)
      throw NotPlain("more than times in an extended header");
    if (key == "mtime" && value.substr(0, value.find('.')) != std::to_string(modified)) {
      throw NotPlain("two times of modification");
    }
  }
}

}  // namespace

bool hasRightChecksum(std::string_view block) {
  const auto add = [](std::uint64_t sum, char byte) {
    return sum + static_cast<unsigned char>(byte);
  };
  const std::string_view behind = block.substr(kChecksum.at + kChecksum.size);
  const std::uint64_t before =
      std::accumulate(block.begin(), block.begin() + kChecksum.at, kChecksum.size * ' ', add);
  return octalOf(kChecksum.of(block)) == std::accumulate(behind.begin(), behind.end(), before, add);
}

Header::Header(std::string_view block) : type_(block[kType.at]) {
  requireFormat(block);
  const std::string prefix = text(block, kPrefix);
  const std::string name = text(block, kName);
  if (name.empty()) refuse(kName);
  has_prefix_ = !prefix.empty();
  member_ = {.path = has_prefix_ ? prefix + "/" + name : name,
             .size = octal(block, kSize),
             .mode = static_cast<unsigned>(octal(block, kMode)),
             .modified = wideNumber(block, kTime),
             .uid = idOf(block, kUid),
             .gid = idOf(block, kGid),
             .link = text(block, kLink)};
  if (isExtension()) {
    requireExtension();
  } else {
    member_.type = typeOf(type_);
    if (size() > 0 && member_.type != Type::kFile) refuse(kSize);
  }
}

/// Raises NotPlain where an extension has what only a member has, or too much of its own.
void Header::requireExtension() const {
  const bool is_name = type_ != kTimesType;
  if (is_name && member_.path != kLongLink) refuse(kName);
  if (!member_.link.empty()) refuse(kLink);
  if (size() == 0 || size() > (is_name ? PATH_MAX : kMostOfTimes)) refuse(kSize);
}

bool Header::isExtension() const {
  return type_ == kLongPathType || type_ == kLongTargetType || type_ == kTimesType;
}

void Header::addTo(Extensions& extensions, std::string content) const {
  std::optional<std::string>& said = type_ == kLongPathType     ? extensions.path
                                     : type_ == kLongTargetType ? extensions.link
                                                                : extensions.times;
  if (said) throw NotPlain("the same extension twice");
  if (type_ != kTimesType) {
    if (content.size() < 2 || content.find('\0') != content.size() - 1) {
      throw NotPlain("unusual long name");
    }
    content.pop_back();
  }
  said = std::move(content);
}

Member Header::member(const Extensions& extensions) const {
  const bool has_long_names = extensions.path || extensions.link;
  if (extensions.times && has_long_names) throw NotPlain("extensions of two formats");
  if (extensions.path && has_prefix_) refuse(kPrefix);
  Member member = member_;
  lengthen(member.path, extensions.path);
  lengthen(member.link, extensions.link);
  if (extensions.times) requireTimes(*extensions.times, member.modified);
  const bool is_link = member.type == Type::kHardLink || member.type == Type::kSymbolicLink;
  if (is_link == member.link.empty()) refuse(kLink);
  if (member.type != Type::kDirectory && member.path.ends_with('/')) refuse(kName);
  return member;
}

}  // namespace tarball
