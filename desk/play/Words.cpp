#include "desk/play/Words.h"

#include <cctype>
#include <string_view>

#include "desk/model/KeyMap.h"
#include "host/native/ShownText.h"

namespace desk {
namespace {

constexpr const char* kSelect = "select:";
constexpr std::string_view kRow = "row:";

/// Whether `word` names a row by its index.
bool isRow(const std::string& word) {
  constexpr std::size_t kMostDigits = 9;
  return word.starts_with(kRow) && word.size() > kRow.size() &&
         word.size() <= kRow.size() + kMostDigits &&
         word.find_first_not_of("0123456789", kRow.size()) == std::string::npos;
}

bool isWord(const std::string& word) {
  return isPress(word) || word == "wait" || word == "timeout" || word == "frame" ||
         word.starts_with(kSelect);
}

std::vector<std::string> split(const std::string& script) {
  std::vector<std::string> words;
  std::string word;
  char quote = 0;
  for (const char character : script + " ") {
    const bool isSpace = std::isspace(static_cast<unsigned char>(character)) != 0;
    if (quote != 0 && character == quote) {
      quote = 0;
    } else if (quote == 0 && (character == '"' || character == '\'')) {
      quote = character;
    } else if (quote != 0 || !isSpace) {
      word += character;
    } else if (!word.empty()) {
      words.push_back(word);
      word.clear();
    }
  }
  if (quote != 0) throw UnknownWord("a quote is not closed in: " + script);
  return words;
}

}  // namespace

bool isPress(const std::string& word) {
  return isKey(word) || isRow(word);
}

std::vector<std::string> parseWords(const std::string& script) {
  std::vector<std::string> words = split(script);
  for (const std::string& word : words) {
    if (native::shownText(word) != word) {
      throw UnknownWord("'" + native::shownText(word) +
                        "' is not valid UTF-8; rows show such bytes as \\xNN");
    }
    if (word == kSelect) {
      throw UnknownWord("'select:' needs the text of a row: select:TEXT");
    }
    if (!isWord(word)) {
      throw UnknownWord("unknown word '" + word +
                        "'; known are up down left right ok exit red green yellow blue 0..9 wait "
                        "timeout frame select:TEXT row:INDEX");
    }
  }
  return words;
}

}  // namespace desk
