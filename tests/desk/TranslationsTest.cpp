#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "desk/model/Translations.h"

namespace desk {
namespace {

/// Returns a number as four bytes, the lowest first unless `is_swapped`.
std::string number(std::uint32_t value, bool is_swapped) {
  std::string bytes;
  for (unsigned shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
  return is_swapped ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
}

/// Returns a catalogue of these texts.
std::string catalogue(const std::vector<std::pair<std::string, std::string>>& texts,
                      bool is_swapped = false) {
  const auto count = static_cast<std::uint32_t>(texts.size());
  const std::uint32_t header = 28;
  std::string tables[2];
  std::string strings;
  const std::uint32_t begin = header + 16 * count;
  for (const auto& [original, translation] : texts) {
    std::size_t table = 0;
    for (const std::string& text : {original, translation}) {
      tables[table++] += number(static_cast<std::uint32_t>(text.size()), is_swapped) +
                         number(begin + static_cast<std::uint32_t>(strings.size()), is_swapped);
      strings += text + '\0';
    }
  }
  std::string bytes;
  for (const std::uint32_t value :
       {0x950412deU, 0U, count, header, header + 8 * count, 0U, header + 16 * count}) {
    bytes += number(value, is_swapped);
  }
  return bytes + tables[0] + tables[1] + strings;
}

TEST(Translations, AreReadFromACatalogueOfEitherByteOrder) {
  const std::vector<std::pair<std::string, std::string>> texts = {
      {"", "Language: de"}, {"Exit", "Verlassen"}, {"one\nline", "eine\nZeile"}};
  for (const bool is_swapped : {false, true}) {
    EXPECT_EQ(parseCatalogue(catalogue(texts, is_swapped)),
              (Translations{{"Exit", "Verlassen"}, {"one\nline", "eine\nZeile"}}));
  }
}

TEST(Translations, OfSeveralPluralFormsTheFirstCounts) {
  EXPECT_EQ(parseCatalogue(catalogue({{std::string("file\0files", 10), std::string("A\0B", 3)}})),
            (Translations{{"file", "A"}}));
}

TEST(Translations, WhatIsNoCatalogueIsRefused) {
  const std::string whole = catalogue({{"Exit", "Verlassen"}});
  EXPECT_THROW(parseCatalogue(""), std::runtime_error);
  EXPECT_THROW(parseCatalogue("msgid \"Exit\"\nmsgstr \"Verlassen\"\n"), std::runtime_error);
  for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
    EXPECT_THROW(parseCatalogue(whole.substr(0, length)), std::runtime_error) << length;
  }
}

}  // namespace
}  // namespace desk
