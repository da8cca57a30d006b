#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

using RestoreListTest = DeskTest;

Json deletionOf(const std::string& name) {
  return questionFrame("yellow", "", "Are you sure you want to delete\nfollowing backup:\n" + name);
}

TEST_F(RestoreListTest, ShowsAndDeletesNamesWithBlanksAndForeignBytes) {
  // As the list shows them: bytes that are no UTF-8 are escaped.
  const std::string blanks = "settings my old box.tar.gz";
  const std::string accent = "settings_\u00e9t\u00e9.tar.gz";
  const std::string foreign = "settings_\xe9t\xe9.tar.gz";
  const std::string shown = "settings_\\xe9t\\xe9.tar.gz";
  for (const std::string& name : {blanks, accent, foreign}) {
    receiver().write(inBackups(name), "");
  }

  const Play play = receiver().play(
      "restore",
      "select:channel ok select:xe9 yellow ok 'select:my old' yellow ok select:settings_ yellow "
      "ok");

  EXPECT_EQ(play.lines,
            (std::vector<Json>{
                menuFrame("", "restore", 0), menuFrame("select:channel", "restore", 2),
                listFrame("ok", {shown, accent, blanks}),
                listFrame("select:xe9", {shown, accent, blanks}), deletionOf(shown),
                listFrame("ok", {accent, blanks}), listFrame("select:my old", {accent, blanks}, 1),
                deletionOf(blanks), listFrame("ok", {accent}),
                listFrame("select:settings_", {accent}), deletionOf(accent), listFrame("ok", {})}));
  EXPECT_EQ(namesIn(receiver().at(kBackups)),
            (std::vector<std::string>{"plugins", "restore_hello.sh"}));
  EXPECT_EQ(play.errors, "");
}

}  // namespace
}  // namespace command_test
