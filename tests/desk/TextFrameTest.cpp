#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "desk/play/TextFrame.h"

namespace desk {
namespace {

using Json = nlohmann::ordered_json;

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

TEST(TextFrame, FirstFrameNamesNoKeyAndTheScreenStandsInForTheTitle) {
  EXPECT_EQ(textFrame(frame({})),
            R"(
+-- Screen ----------------------------------------------------------------+
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

TEST(TextFrame, ConsoleWithItsOutput) {
  EXPECT_EQ(textFrame(frame({{"key", "wait"},
                             {"screen", "Console"},
                             {"title", "Running"},
                             {"text", "one\ntwo\n"},
                             {"running", true}})),
            R"(
[wait]
+-- Running ---------------------------------------------------------------+
| one                                                                      |
| two                                                                      |
| (running)                                                                |
+--------------------------------------------------------------------------+
)");
}

TEST(TextFrame, PackagesWithTheirStates) {
  EXPECT_EQ(textFrame(frame(
                {{"screen", "Ipkg"},
                 {"packages",
                  {{{"name", "one"}, {"state", "done"}}, {{"name", "two"}, {"state", "waiting"}}}},
                 {"running", false}})),
            R"(
+-- Ipkg ------------------------------------------------------------------+
| done     one                                                             |
| waiting  two                                                             |
| (finished)                                                               |
+--------------------------------------------------------------------------+
)");
}

TEST(TextFrame, ConfirmationShowsItsMessage) {
  EXPECT_EQ(textFrame(frame({{"widgets", {{"messagetext", "Restore this?\nIt restarts."}}}})),
            R"(
+-- Screen ----------------------------------------------------------------+
| Restore this?                                                            |
| It restarts.                                                             |
+--------------------------------------------------------------------------+
)");
}

TEST(TextFrame, ClosedMenuSaysSo) {
  EXPECT_EQ(textFrame(frame({{"key", "exit"}, {"screen", ""}})),
            R"(
[exit]
+-- (the menu is closed) --------------------------------------------------+
+--------------------------------------------------------------------------+
)");
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
