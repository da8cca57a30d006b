#include "desk/web/Assets.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <string_view>

#include "base/Files.h"
#include "base/SystemError.h"
#include "desk/drawing/Pictures.h"

namespace desk::web {
namespace {

/// Returns a path as it stands in an address (RFC 3986).
std::string percentEncoded(const std::string& path) {
  std::string encoded;
  for (const char character : path) {
    constexpr std::string_view kPlain = "/-._~";
    const auto byte = static_cast<unsigned char>(character);
    const bool is_plain =
        std::isalnum(byte) != 0 || kPlain.find(character) != std::string_view::npos;
    std::array<char, 4> code{};
    std::snprintf(code.data(), code.size(), "%%%02X", byte);
    encoded += is_plain ? std::string(1, character) : code.data();
  }
  return encoded;
}

}  // namespace

std::optional<std::string> Pictures::name(const std::string& path) {
  const std::lock_guard lock(mutex_);
  if (!drawing::readPicture(receiver_, path)) return std::nullopt;
  named_.insert(path);
  return "/picture" + percentEncoded(path) + "?token=" + token_;
}

std::optional<Asset> Pictures::find(const std::string& path) {
  const std::lock_guard lock(mutex_);
  if (!named_.contains(path)) return std::nullopt;
  auto picture = drawing::readPicture(receiver_, path);
  if (!picture) return std::nullopt;
  return Asset{.content = std::move(picture->content), .type = std::move(picture->type)};
}

std::optional<Asset> readFont(const std::filesystem::path& file) {
  try {
    return Asset{.content = base::readFile(file), .type = "font/ttf"};
  } catch (const base::SystemError&) {
    return std::nullopt;
  }
}

}  // namespace desk::web
