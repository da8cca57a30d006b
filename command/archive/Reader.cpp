#include "command/archive/Reader.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <new>
#include <utility>

#include "command/archive/ByteLocale.h"

namespace tarball {
namespace {

/// How much is handed to libarchive at a time: what it has of a header that is being read is at
/// most this more than the header's room.
constexpr std::size_t kSlice = 16 * 1024;

struct FileType {
  unsigned type;
  Type meaning;
};

constexpr FileType kFileTypes[] = {
    {AE_IFREG, Type::kFile},   {AE_IFDIR, Type::kDirectory}, {AE_IFLNK, Type::kSymbolicLink},
    {AE_IFCHR, Type::kDevice}, {AE_IFBLK, Type::kDevice},    {AE_IFIFO, Type::kFifo},
};

Type typeOf(archive_entry* entry) {
  if (archive_entry_hardlink(entry)) return Type::kHardLink;
  if (archive_entry_sparse_count(entry) > 0) return Type::kSparseFile;
  const unsigned type = archive_entry_filetype(entry);
  const auto* known = std::ranges::find(kFileTypes, type, &FileType::type);
  return known == std::end(kFileTypes) ? Type::kOther : known->meaning;
}

std::string textOf(const char* text) {
  return text ? text : "";
}

Member memberOf(archive_entry* entry) {
  const Type type = typeOf(entry);
  return {.path = textOf(archive_entry_pathname(entry)),
          .type = type,
          .size = static_cast<std::uint64_t>(std::max<la_int64_t>(archive_entry_size(entry), 0)),
          .mode = archive_entry_perm(entry),
          .modified = archive_entry_mtime(entry),
          .uid = archive_entry_uid(entry),
          .gid = archive_entry_gid(entry),
          .link = textOf(type == Type::kHardLink ? archive_entry_hardlink(entry)
                                                 : archive_entry_symlink(entry))};
}

/// Whether libarchive has found a header right. It says of every extended header whose names are
/// not ASCII that it could not convert them, and gives their bytes as they are.
bool isSound(archive* handle, int result) {
  if (result == ARCHIVE_OK) return true;
  return result == ARCHIVE_WARN &&
         textOf(archive_error_string(handle)).find("can't be converted") != std::string::npos;
}

}  // namespace

void Reader::Free::operator()(::archive* handle) const {
  archive_read_free(handle);
}

Reader::Reader(const std::string& path, const BeginProgress& begin)
    : Reader(std::make_unique<GzipFile>(path, begin)) {}

Reader::Reader(base::Descriptor file, std::string name, const BeginProgress& begin)
    : Reader(std::make_unique<GzipFile>(std::move(file), std::move(name), begin)) {}

Reader::Reader(std::unique_ptr<Stream> stream)
    : stream_(std::move(stream)), handle_(archive_read_new()) {
  if (!handle_ || archive_read_support_format_tar(handle_.get()) != ARCHIVE_OK) {
    throw std::bad_alloc();
  }
}

std::optional<Member> Reader::next() {
  if (ended_) return std::nullopt;
  const ByteLocale bytes;
  if (!std::exchange(opened_, true)) open();
  if (std::exchange(in_member_, false)) require(archive_read_data_skip(handle_.get()));
  const std::uint64_t start = position();
  archive_entry* entry = nullptr;
  room_ = kHeaderRoom;
  const int result = archive_read_next_header(handle_.get(), &entry);
  room_.reset();
  if (failure_) std::rethrow_exception(failure_);
  if (result == ARCHIVE_EOF) {
    readToEnd();
    return std::nullopt;
  }
  if (!isSound(handle_.get(), result)) fail(start);
  Member member = memberOf(entry);
  paths_ += member.path.size() + member.link.size();
  count(position() - start);
  member_ = member.path;
  in_member_ = true;
  return member;
}

std::string_view Reader::read() {
  const void* bytes = nullptr;
  std::size_t size = 0;
  la_int64_t offset = 0;
  while (in_member_ && size == 0) {
    const int result = archive_read_data_block(handle_.get(), &bytes, &size, &offset);
    require(result);
    if (result == ARCHIVE_EOF) return {};
  }
  return {static_cast<const char*>(bytes), size};
}

void Reader::open() {
  room_ = kHeaderRoom;
  require(archive_read_open(handle_.get(), this, nullptr, handOver, nullptr));
}

/// Gives libarchive the next bytes. What is raised meanwhile must not pass through it.
ssize_t Reader::handOver(::archive* /*handle*/, void* reader, const void** bytes) {
  auto& self = *static_cast<Reader*>(reader);
  try {
    const std::string_view slice = self.slice();
    *bytes = slice.data();
    return static_cast<ssize_t>(slice.size());
  } catch (...) {
    self.failure_ = std::current_exception();
    return ARCHIVE_FATAL;
  }
}

/// Returns the next bytes for libarchive. Raises Damaged when a header takes more than its room.
std::string_view Reader::slice() {
  const std::string_view bytes = moreBytes();
  handed_ = bytes.substr(0, kSlice);
  pending_ = bytes.substr(handed_.size());
  exhausted_ = handed_.empty();
  if (room_ && handed_.size() > *room_) {
    throw Damaged(Damage::kHeaderTooLarge, {stream_->compressed(), position(), member_});
  }
  if (room_) *room_ -= handed_.size();
  return handed_;
}

/// Returns bytes that libarchive has not been given yet, none at the stream's end.
std::string_view Reader::moreBytes() {
  if (!pending_.empty()) return std::exchange(pending_, {});
  std::string_view bytes;
  try {
    bytes = stream_->read();
  } catch (const Damaged& damaged) {
    Position place = damaged.position();
    place.member = member_;
    throw Damaged(damaged.damage(), place);
  }
  unpacked_ += bytes.size();
  if (unpacked_ > kMostUnpacked) {
    throw Damaged(Damage::kTooLarge, {stream_->compressed(), unpacked_, member_});
  }
  return bytes;
}

/// Takes account of a member whose header has so many bytes. Raises Damaged when that is too much.
void Reader::count(std::uint64_t header) {
  if (header > kLongHeader) long_headers_ += header;
  const Position place{stream_->compressed(), position(), member_};
  if (long_headers_ > kLongHeadersRoom) throw Damaged(Damage::kHeadersTooLarge, place);
  if (++members_ > kMostMembers) throw Damaged(Damage::kTooManyMembers, place);
  if (paths_ > kMostOfPaths) throw Damaged(Damage::kPathsTooLong, place);
}

/// Reads what follows the tar archive's end mark, which is to be zeros, and so has the whole file
/// checked.
void Reader::readToEnd() {
  ended_ = true;
  std::uint64_t at = position();
  if (exhausted_) fail(Damage::kTarCutOff, at);
  const std::uint64_t left = unpacked_ - pending_.size() - at;
  const auto held = static_cast<std::size_t>(std::min<std::uint64_t>(left, handed_.size()));
  std::string_view rest = handed_.substr(handed_.size() - held);
  do {
    const std::size_t other = rest.find_first_not_of('\0');
    if (other != std::string_view::npos) fail(Damage::kDataAfterEnd, at + other);
    at += rest.size();
    rest = moreBytes();
  } while (!rest.empty());
}

/// Returns how many bytes of the tar archive libarchive has made use of.
std::uint64_t Reader::position() const {
  return static_cast<std::uint64_t>(archive_filter_bytes(handle_.get(), 0));
}

void Reader::require(int result) {
  if (result != ARCHIVE_OK && result != ARCHIVE_EOF) fail(position());
}

/// Raises what has kept libarchive from reading on at this byte of the tar archive.
void Reader::fail(std::uint64_t at) {
  if (failure_) std::rethrow_exception(failure_);
  if (archive_errno(handle_.get()) == ENOMEM) throw std::bad_alloc();
  if (archive_format(handle_.get()) == 0) fail(Damage::kNoTar, at);
  fail(exhausted_ ? Damage::kTarCutOff : Damage::kWrongHeader, at);
}

/// Raises the damage of the tar archive at this byte; but if the rest of the file shows that it was
/// not unpacked to what had been packed, raises that, for it is the cause.
void Reader::fail(Damage damage, std::uint64_t at) {
  const Position place{stream_->compressed(), at, member_};
  while (!moreBytes().empty()) {
  }
  throw Damaged(damage, place);
}

}  // namespace tarball
