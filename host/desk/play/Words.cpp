#include "Words.h"

#include <cctype>

#include "model/KeyMap.h"
#include "model/ShownText.h"

namespace desk {
namespace {

constexpr const char* kSelect = "select:";

bool isWord(const std::string& word) {
  return isKey(word) || word == "wait" || word == "timeout" || word == "frame" ||
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

std::vector<std::string> parseWords(const std::string& script) {
  std::vector<std::string> words = split(script);
  for (const std::string& word : words) {
    if (shownText(word) != word) {
      throw UnknownWord("'" + shownText(word) +
                        "' is not valid UTF-8; rows show such bytes as \\xNN");
    }
    if (word == kSelect) {
      throw UnknownWord("'select:' needs the text of a row: select:TEXT");
    }
    if (!isWord(word)) {
      throw UnknownWord("unknown word '" + word +
                        "'; known are up down left right ok exit red green yellow blue 0..9 wait "
                        "timeout frame select:TEXT");
    }
  }
  return words;
}

}  // namespace desk
