#include "desk/protocol/Word.h"

#include <cctype>
#include <string_view>

#include "base/Escape.h"

namespace desk {
namespace {

constexpr std::string_view kSelect = "select:";
constexpr std::string_view kRow = "row:";

/// The words without an argument.
constexpr struct {
  std::string_view text;
  Word::Kind kind;
} kWords[] = {
    {"up", Word::Kind::key},      {"down", Word::Kind::key},  {"left", Word::Kind::key},
    {"right", Word::Kind::key},   {"ok", Word::Kind::key},    {"exit", Word::Kind::key},
    {"red", Word::Kind::key},     {"green", Word::Kind::key}, {"yellow", Word::Kind::key},
    {"blue", Word::Kind::key},    {"wait", Word::Kind::wait}, {"timeout", Word::Kind::timeout},
    {"frame", Word::Kind::frame},
};

/// Whether `word` names a row by its index.
bool isRow(const std::string& word) {
  constexpr std::size_t kMostDigits = 9;
  return word.starts_with(kRow) && word.size() > kRow.size() &&
         word.size() <= kRow.size() + kMostDigits &&
         word.find_first_not_of("0123456789", kRow.size()) == std::string::npos;
}

bool isDigit(const std::string& word) {
  return word.size() == 1 && std::isdigit(static_cast<unsigned char>(word[0])) != 0;
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

std::optional<Word> parseWord(const std::string& text) {
  if (isDigit(text)) return Word{Word::Kind::key, text};
  if (isRow(text)) return Word{Word::Kind::row, text};
  if (text.starts_with(kSelect)) return Word{Word::Kind::select, text};
  for (const auto& [known, kind] : kWords) {
    if (text == known) return Word{kind, text};
  }
  return std::nullopt;
}

bool isPress(const std::string& text) {
  const auto word = parseWord(text);
  return word && (word->kind == Word::Kind::key || word->kind == Word::Kind::row);
}

std::vector<Word> parseWords(const std::string& script) {
  std::vector<Word> words;
  for (const std::string& text : split(script)) {
    if (base::escapeInvalidUtf8(text) != text) {
      throw UnknownWord("'" + base::escapeInvalidUtf8(text) +
                        "' is not valid UTF-8; rows show such bytes as \\xNN");
    }
    if (text == kSelect) {
      throw UnknownWord("'select:' needs the text of a row: select:TEXT");
    }
    const auto word = parseWord(text);
    if (!word) {
      throw UnknownWord("unknown word '" + text +
                        "'; known are up down left right ok exit red green yellow blue 0..9 wait "
                        "timeout frame select:TEXT row:INDEX");
    }
    words.push_back(*word);
  }
  return words;
}

}  // namespace desk
