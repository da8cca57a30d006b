#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "desk/protocol/Word.h"

namespace desk {
namespace {

using Words = std::vector<std::string>;

/// A script and the words that it holds.
struct Script {
  const char* text;
  Words words;
};

const Script kScripts[] = {
    {"", {}},
    {" \t\n ", {}},
    {"ok", {"ok"}},
    {"  up down\tleft\nright  ", {"up", "down", "left", "right"}},
    {"ok exit red green yellow blue", {"ok", "exit", "red", "green", "yellow", "blue"}},
    {"0 1 2 3 4 5 6 7 8 9", {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}},
    {"wait timeout frame", {"wait", "timeout", "frame"}},
    {"select:one ok", {"select:one", "ok"}},
    {"select:'two words' ok", {"select:two words", "ok"}},
    {"select:\"two words\" ok", {"select:two words", "ok"}},
    {"'select:two words' ok", {"select:two words", "ok"}},
    {"select:a'b c'd", {"select:ab cd"}},
    {"select:\"it's here\"", {"select:it's here"}},
    {"select:ok", {"select:ok"}},
    {"row:0 row:123456789", {"row:0", "row:123456789"}},
    {"select:select:", {"select:select:"}},
    {"select:caf\xc3\xa9", {"select:caf\xc3\xa9"}},
    {"'ok' \"exit\"", {"ok", "exit"}},
    {"select:tab''le", {"select:table"}},
};

Words textsOf(const std::vector<Word>& words) {
  Words texts;
  for (const Word& word : words) texts.push_back(word.text);
  return texts;
}

TEST(Words, AreCutAtWhiteSpaceOutsideOfQuotes) {
  for (const Script& script : kScripts)
    EXPECT_EQ(textsOf(parseWords(script.text)), script.words) << script.text;
}

TEST(Words, HaveAKindAndSomeAnArgument) {
  const struct {
    const char* text;
    Word::Kind kind;
    const char* argument;
  } words[] = {
      {"ok", Word::Kind::key, "ok"},         {"7", Word::Kind::key, "7"},
      {"wait", Word::Kind::wait, "wait"},    {"timeout", Word::Kind::timeout, "timeout"},
      {"frame", Word::Kind::frame, "frame"}, {"select:a:b", Word::Kind::select, "a:b"},
      {"row:12", Word::Kind::row, "12"},
  };
  for (const auto& [text, kind, argument] : words) {
    EXPECT_EQ(parseWord(text), (Word{kind, text}));
    EXPECT_EQ(parseWord(text)->argument(), argument);
  }
}

TEST(Words, AViewerPressesKeysAndRowsAlone) {
  for (const char* word : {"up", "ok", "exit", "blue", "0", "9", "row:3"}) {
    EXPECT_TRUE(isPress(word)) << word;
  }
  for (const char* word :
       {"", "OK", "10", "-1", "menu", "wait", "frame", "select:a", "row:", "ok "}) {
    EXPECT_FALSE(isPress(word)) << word;
  }
}

/// Returns what is said of `script`.
std::string complaint(const std::string& script) {
  try {
    parseWords(script);
  } catch (const UnknownWord& error) {
    return error.what();
  }
  return "no complaint";
}

TEST(Words, UnknownOnesAreNamedBesideTheKnown) {
  for (const char* word : {"OK", "select", "10", "okay", "menu", "--play", "ok;exit",
                           "row:", "row:-1", "row:x", "row:1x", "row:1234567890"}) {
    EXPECT_EQ(complaint(std::string("up ") + word + " down"),
              std::string("unknown word '") + word +
                  "'; known are up down left right ok exit red green yellow blue 0..9 wait "
                  "timeout frame select:TEXT row:INDEX");
  }
}

TEST(Words, SelectionNeedsAText) {
  EXPECT_EQ(complaint("up select: down"), "'select:' needs the text of a row: select:TEXT");
}

TEST(Words, QuoteThatIsNotClosedIsRefused) {
  EXPECT_EQ(complaint("ok select:'two"), "a quote is not closed in: ok select:'two");
  EXPECT_EQ(complaint("\"ok"), "a quote is not closed in: \"ok");
  EXPECT_EQ(complaint("select:'a\" b"), "a quote is not closed in: select:'a\" b");
}

}  // namespace
}  // namespace desk
