#include "command/archive/Reader.h"

#include <algorithm>
#include <utility>

#include "command/archive/Header.h"

namespace tarball {

Reader::Reader(const std::string& path, const BeginProgress& begin)
    : Reader(std::make_unique<GzipFile>(path, begin)) {}

Reader::Reader(base::Descriptor file, std::string name, const BeginProgress& begin)
    : Reader(std::make_unique<GzipFile>(std::move(file), std::move(name), begin)) {}

Reader::Reader(std::unique_ptr<Stream> stream) : stream_(std::move(stream)) {}

std::optional<Member> Reader::next() {
  if (ended_) return std::nullopt;
  skipContent();
  try {
    std::optional<Member> member = readMember();
    if (member) count(*member);
    return member;
  } catch (const NotPlain& reason) {
    fail(Damage::kNotPlain, header_, reason.what());
  }
}

std::string_view Reader::read() {
  const std::string_view bytes = take(content_);
  if (bytes.empty() && content_ > 0) fail(Damage::kTarCutOff, position());
  content_ -= bytes.size();
  return bytes;
}

/// Reads the headers of a member. None where the end mark is instead.
std::optional<Member> Reader::readMember() {
  for (LongNames names;;) {
    header_ = position();
    const std::string block = takeBlock();
    if (block.find_first_not_of('\0') == std::string::npos) {
      if (names != LongNames()) throw NotPlain("long name of no member");
      readToEnd();
      return std::nullopt;
    }
    if (!hasRightChecksum(block))
      fail(has_header_ ? Damage::kWrongHeader : Damage::kNoTar, header_);
    has_header_ = true;
    const Header header(block);
    beginContent(header.size());
    if (!header.isLongName()) return header.member(names);
    std::string content;
    for (auto bytes = read(); !bytes.empty(); bytes = read()) content += bytes;
    header.addTo(names, std::move(content));
    skipContent();
  }
}

/// Takes the next header, or what else is in its place.
std::string Reader::takeBlock() {
  std::string block;
  while (block.size() < kBlock) {
    const std::string_view bytes = take(kBlock - block.size());
    if (bytes.empty() && !has_header_) fail(Damage::kNoTar, header_);
    if (bytes.empty()) fail(Damage::kTarCutOff, position());
    block += bytes;
  }
  return block;
}

/// Takes up to so many of the next bytes; none at the stream's end.
std::string_view Reader::take(std::uint64_t most) {
  if (pending_.empty() && most > 0) pending_ = moreBytes();
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(most, pending_.size()));
  const std::string_view taken = pending_.substr(0, count);
  pending_.remove_prefix(taken.size());
  return taken;
}

/// Returns the next bytes of the stream, none at its end.
std::string_view Reader::moreBytes() {
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

void Reader::beginContent(std::uint64_t size) {
  content_ = size;
  padding_ = (kBlock - size % kBlock) % kBlock;
}

/// Skips the rest of the content and the padding of its last block.
void Reader::skipContent() {
  while (!read().empty()) {
  }
  content_ = std::exchange(padding_, 0);
  while (!read().empty()) {
  }
}

/// Takes account of a member. Raises Damaged when there are too many, or their paths too long.
void Reader::count(const Member& member) {
  member_ = member.path;
  paths_ += member.path.size() + member.link.size();
  const Position place{stream_->compressed(), position(), member_};
  if (++members_ > kMostMembers) throw Damaged(Damage::kTooManyMembers, place);
  if (paths_ > kMostOfPaths) throw Damaged(Damage::kPathsTooLong, place);
}

/// Reads on from the first block of the end mark: a second one and whatever follows are to be
/// zeros. So the whole file is checked.
void Reader::readToEnd() {
  ended_ = true;
  for (auto bytes = take(kMostUnpacked); !bytes.empty(); bytes = take(kMostUnpacked)) {
    const std::size_t other = bytes.find_first_not_of('\0');
    if (other == std::string_view::npos) continue;
    fail(Damage::kDataAfterEnd, position() - bytes.size() + other);
  }
  if (position() < header_ + 2 * kBlock) fail(Damage::kTarCutOff, position());
}

/// Raises the damage of the tar archive at this byte; but if the rest of the file shows that it was
/// not unpacked to what had been packed, raises that, for it is the cause.
void Reader::fail(Damage damage, std::uint64_t at, const std::string& detail) {
  const Position place{stream_->compressed(), at, member_};
  while (!moreBytes().empty()) {
  }
  throw Damaged(damage, place, detail);
}

}  // namespace tarball
