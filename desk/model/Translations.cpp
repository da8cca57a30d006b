#include "desk/model/Translations.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace desk {
namespace {

constexpr std::uint32_t kMagic = 0x950412de;

/// A catalogue's bytes.
class Catalogue {
 public:
  explicit Catalogue(std::string_view bytes) : bytes_(bytes) {
    if (number(0) == kMagic) return;
    is_swapped_ = true;
    if (number(0) != kMagic) throw std::runtime_error("it is no catalogue of translations");
  }

  /// Returns the number at an offset.
  std::uint32_t number(std::size_t offset) const {
    std::array<char, 4> digits{};
    std::ranges::copy(part(offset, digits.size()), digits.begin());
    if (is_swapped_) std::ranges::reverse(digits);
    return std::bit_cast<std::uint32_t>(digits);
  }

  /// Returns the text whose length and offset stand at an offset, up to its first plural form.
  std::string text(std::size_t offset) const {
    const std::string_view text = part(number(offset + 4), number(offset));
    return std::string(text.substr(0, text.find('\0')));
  }

 private:
  std::string_view part(std::size_t offset, std::size_t length) const {
    if (offset > bytes_.size() || length > bytes_.size() - offset) {
      throw std::runtime_error("the catalogue of translations is cut off");
    }
    return bytes_.substr(offset, length);
  }

  std::string_view bytes_;
  bool is_swapped_ = false;
};

}  // namespace

Translations parseCatalogue(std::string_view bytes) {
  const Catalogue catalogue(bytes);
  const std::size_t count = catalogue.number(8);
  const std::size_t originals = catalogue.number(12);
  const std::size_t translations = catalogue.number(16);
  Translations texts;
  for (std::size_t index = 0; index < count; ++index) {
    const std::size_t place = 8 * index;
    texts.emplace(catalogue.text(originals + place), catalogue.text(translations + place));
  }
  texts.erase("");  // the catalogue's own header
  return texts;
}

}  // namespace desk
