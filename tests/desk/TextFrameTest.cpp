#include <gtest/gtest.h>

#include <array>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "desk/play/TextFrame.h"

namespace desk {
namespace {

using Json = nlohmann::ordered_json;
using ShownLines = std::vector<std::string>;

/// Returns the rows as a frame holds them. A list of pairs would be taken for an object.
Json rows(const std::vector<std::array<std::string, 2>>& texts) {
  return texts;
}

/// Returns a frame with nothing in it but `more`.
Json frame(const Json& more) {
  Json result = {{"key", ""},
                 {"screen", "Screen"},
                 {"title", ""},
                 {"widgets", Json::object()},
                 {"rows", Json::array()},
                 {"selected", 0}};
  if (!more.is_null()) result.update(more);
  return result;
}

/// Returns the lines in which the frame says something, without the box around it.
ShownLines saidIn(const Json& frame) {
  constexpr const char* kBox = "+-| ";
  ShownLines lines;
  std::istringstream stream(textFrame(frame));
  for (std::string line; std::getline(stream, line);) {
    const std::size_t begin = line.find_first_not_of(kBox);
    if (begin == std::string::npos) continue;
    lines.push_back(line.substr(begin, line.find_last_not_of(kBox) + 1 - begin));
  }
  return lines;
}

TEST(TextFrame, MenuWithRowsDescriptionsAndColourKeys) {
  EXPECT_EQ(
      textFrame(frame({{"key", "down"},
                       {"title", "QOR Stowline"},
                       {"widgets", {{"key_red", "Exit"}, {"key_yellow", "Delete"}, {"status", ""}}},
                       {"rows", rows({{"Backup", "save"}, {"Restore", ""}})},
                       {"selected", 1}})),
      R"(
[down]
+-- QOR Stowline ----------------------------------------------------------+
|   Backup                                                                 |
|     save                                                                 |
| > Restore                                                                |
|                                                                          |
| [red] Exit   [yellow] Delete                                             |
+--------------------------------------------------------------------------+
)");
}

TEST(TextFrame, QuestionWithItsKindItsLinesAndItsAnswers) {
  EXPECT_EQ(textFrame(frame({{"key", "ok"},
                             {"screen", "MessageBox"},
                             {"rows", rows({{"yes", ""}, {"no", ""}})},
                             {"type", "yesno"},
                             {"text", "Are you sure?\n\nReally?"},
                             {"timeout", 0}})),
            R"(
[ok]
+-- MessageBox [yesno] ----------------------------------------------------+
| Are you sure?                                                            |
|                                                                          |
| Really?                                                                  |
| > yes                                                                    |
|   no                                                                     |
+--------------------------------------------------------------------------+
)");
}

TEST(TextFrame, UpperEdgeNamesTheScreenWithoutATitleOrSaysThatTheMenuIsClosed) {
  EXPECT_EQ(saidIn(frame({})), ShownLines{"Screen"});
  EXPECT_EQ(saidIn(frame({{"key", "exit"}, {"screen", ""}})),
            (ShownLines{"[exit]", "(the menu is closed)"}));
}

TEST(TextFrame, ConsoleWithItsOutput) {
  EXPECT_EQ(saidIn(frame({{"key", "wait"},
                          {"screen", "Console"},
                          {"title", "Running"},
                          {"text", "one\ntwo\n"},
                          {"running", true}})),
            (ShownLines{"[wait]", "Running", "one", "two", "(running)"}));
}

TEST(TextFrame, PackagesWithTheirStates) {
  EXPECT_EQ(saidIn(frame(
                {{"packages",
                  {{{"name", "one"}, {"state", "done"}}, {{"name", "two"}, {"state", "waiting"}}}},
                 {"running", false}})),
            (ShownLines{"Screen", "done     one", "waiting  two", "(finished)"}));
}

TEST(TextFrame, ConfirmationShowsItsMessage) {
  EXPECT_EQ(saidIn(frame({{"widgets", {{"messagetext", "Restore this?\nIt restarts."}}}})),
            (ShownLines{"Screen", "Restore this?", "It restarts."}));
}

TEST(TextFrame, LettersOfSeveralBytesTakeOneColumn) {
  EXPECT_EQ(textFrame(frame({{"title", "Men\xc3\xbc"}, {"text", "caf\xc3\xa9 \xe2\x82\xac"}})),
            "\n"
            "+-- Men\xc3\xbc ------------------------------------------------------------------+\n"
            "| caf\xc3\xa9 \xe2\x82\xac"
            "                                                                   |\n"
            "+--------------------------------------------------------------------------+\n");
}

}  // namespace
}  // namespace desk
