#include "desk/drawing/Pictures.h"

#include <string_view>
#include <utility>

#include "base/Files.h"
#include "base/SystemError.h"

namespace desk::drawing {
namespace {

/// No picture of a skin is larger, in bytes.
constexpr std::size_t kLargestPicture = 1024 * 1024;

/// The types of pictures by how their files begin.
constexpr struct {
  std::string_view begin;
  const char* type;
} kTypes[] = {
    {"\x89PNG\r\n", "image/png"},
    {"\xff\xd8\xff", "image/jpeg"},
    {"GIF8", "image/gif"},
};

/// Returns bytes in base64 (RFC 4648).
std::string base64(std::string_view bytes) {
  constexpr const char* kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::string_view group = bytes.substr(at, 3);
    unsigned bits = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      bits = bits << 8U | (index < group.size() ? static_cast<unsigned char>(group[index]) : 0U);
    }
    for (std::size_t digit = 0; digit < 4; ++digit) {
      text += digit <= group.size() ? kDigits[bits >> (18 - 6 * digit) & 0x3FU] : '=';
    }
  }
  return text;
}

}  // namespace

std::shared_ptr<const Picture> Pictures::at(const std::string& path) {
  const std::lock_guard lock(mutex_);
  const auto known = shown_.find(path);
  if (known != shown_.end()) return known->second;
  if (size_ >= most_) return nullptr;
  auto picture = read(path);
  if (picture && picture->content.size() > most_ - size_) picture = nullptr;
  size_ += path.size() + (picture ? picture->content.size() : 0);
  return shown_[path] = std::move(picture);
}

std::shared_ptr<const Picture> Pictures::named(const std::string& name) {
  const std::lock_guard lock(mutex_);
  for (const ByPath* pictures : {&shown_, &shown_before_}) {
    for (const auto& [path, picture] : *pictures) {
      if (picture && picture->name == name) return picture;
    }
  }
  return nullptr;
}

void Pictures::changeScreen() {
  const std::lock_guard lock(mutex_);
  shown_before_ = std::exchange(shown_, {});
  size_ = 0;
}

/// Reads a picture; one that has not changed since the screen before is the same.
std::shared_ptr<const Picture> Pictures::read(const std::string& path) {
  try {
    const base::Descriptor file = receiver_.open(path);
    auto bytes = base::readAtMost(file.number(), kLargestPicture, path);
    if (!bytes) return nullptr;
    const auto before = shown_before_.find(path);
    if (before != shown_before_.end() && before->second && before->second->content == *bytes) {
      return before->second;
    }
    for (const auto& [begin, type] : kTypes) {
      if (!bytes->starts_with(begin)) continue;
      const std::string name = std::to_string(++last_number_);
      return std::make_shared<const Picture>(Picture{name, std::move(*bytes), type});
    }
  } catch (const base::SystemError&) {
    // What cannot be read is not there.
  }
  return nullptr;
}

std::string dataUrlOf(const Picture& picture) {
  return "data:" + picture.type + ";base64," + base64(picture.content);
}

}  // namespace desk::drawing
