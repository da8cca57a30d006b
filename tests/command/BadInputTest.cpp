#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using BadInputTest = EveryAccountTest;
INSTANTIATE_TEST_SUITE_P(, BadInputTest, kAccounts, nameOfAccount);

constexpr int kFailure = 1;
constexpr int kUsageError = 2;

/// Wrong arguments, in which TREE stands for a receiver tree, FOREIGN for a directory that is none
/// and MISSING for no directory at all; and what the one line about them must say: what is wrong
/// and what would be right.
struct Wrong {
  std::vector<std::string> arguments;
  int status;
  std::vector<std::string> said;
};

const std::vector<std::string> kWords = {"up",   "down", "left",    "right",  "ok",
                                         "exit", "red",  "green",   "yellow", "blue",
                                         "0..9", "wait", "timeout", "frame",  "select:TEXT"};

const Wrong kWrong[] = {
    {{}, kUsageError, {"desk", "receiver"}},
    {{"bogus"}, kUsageError, {"bogus", "--help"}},
    {{"desk", "--play", "ok"}, kUsageError, {"--receiver"}},
    {{"desk", "--receivr", "TREE", "--play", "ok"}, kUsageError, {"--receivr", "desk --help"}},
    {{"desk", "--receiver", "TREE", "--play", "ok", "--bogus"},
     kUsageError,
     {"--bogus", "'stowline desk --help'"}},
    {{"desk", "--receiver", "TREE", "--menu", "x", "--play", "ok"},
     kUsageError,
     {"--menu", "x", "backup", "restore"}},
    {{"desk", "--receiver", "TREE", "--frames", "x", "--play", "ok"},
     kUsageError,
     {"--frames", "x", "text", "json"}},
    {{"desk", "--receiver", "TREE", "--frames", "1", "--play", "ok"},
     kUsageError,
     {"--frames", "1", "text", "json"}},
    {{"desk", "--receiver", "TREE", "--play", "ok okay"}, kUsageError, {"'okay'"}},
    {{"desk", "--receiver", "TREE", "--play", "okay"}, kUsageError, kWords},
    {{"desk", "--receiver", "TREE", "--play", "select:"}, kUsageError, {"'select:'", "TEXT"}},
    {{"desk", "--receiver", "TREE", "--play", "'select:my"}, kUsageError, {"quote"}},
    {{"desk", "--receiver", "TREE", "--play", "select:\xff"},
     kUsageError,
     {"--play: 'select:\\xff' is not valid UTF-8; rows show such bytes as \\xNN (see 'stowline "
      "desk "
      "--help')"}},
    {{"desk", "--receiver", "MISSING", "--play", "ok"},
     kFailure,
     {"'MISSING'", "is not a receiver tree", "'stowline receiver new DIR'"}},
    {{"desk", "--receiver", "FOREIGN", "--play", "ok"},
     kFailure,
     {"'FOREIGN'", "is not a receiver tree", "'stowline receiver new DIR'"}},
    {{"desk", "--receiver", "/", "--play", "ok"}, kFailure, {"'/'", "root directory"}},
    {{"desk", "--receiver", "TREE", "--play", "ok", "--log", "MISSING/log"},
     kFailure,
     {"MISSING/log", "No such file or directory"}},
    {{"desk", "--receiver", "TREE", "--play", "ok", "--trace", "MISSING/trace"},
     kFailure,
     {"MISSING/trace", "No such file or directory"}},
    {{"receiver"}, kUsageError, {"new", "flash"}},
    {{"receiver", "new"}, kUsageError, {"DIR", "'stowline receiver new --help'"}},
    {{"receiver", "new", "--modle", "uno"}, kUsageError, {"--modle"}},
    {{"receiver", "new", "MISSING", "--model", "x"},
     kUsageError,
     {"--model: x", "solo,duo,uno,ultimo,solo2,duo2,solose,zero"}},
    {{"receiver", "new", "TREE"}, kFailure, {"'TREE'", "new or an empty directory"}},
    {{"receiver", "new", "FOREIGN"}, kFailure, {"'FOREIGN'", "new or an empty directory"}},
    {{"receiver", "new", "/"}, kFailure, {"'/'", "root directory"}},
    {{"receiver", "flash", "FOREIGN"}, kFailure, {"'FOREIGN'", "is not a receiver tree"}},
    {{"receiver", "flash", "MISSING"}, kFailure, {"'MISSING'", "is not a receiver tree"}},
    {{"receiver", "flash", "/"}, kFailure, {"'/'", "root directory"}},
};

std::string replaced(std::string text, const std::string& word, const std::string& by) {
  if (const auto at = text.find(word); at != std::string::npos) text.replace(at, word.size(), by);
  return text;
}

class Directories {
 public:
  explicit Directories(const Receiver& receiver)
      : tree_(receiver.tree()), outside_(receiver.outside()) {
    writeFile(outside_ / "foreign/etc/enigma2/lamedb", "somebody's\n");
  }

  std::string named(const std::string& text) const {
    return replaced(replaced(replaced(text, "TREE", tree_), "FOREIGN", outside_ / "foreign"),
                    "MISSING", outside_ / "missing");
  }

 private:
  fs::path tree_;
  fs::path outside_;
};

void expectOneLine(const Outcome& outcome, int status, const std::vector<std::string>& said) {
  EXPECT_EQ(outcome.status, status);
  EXPECT_EQ(linesOf(outcome.errors).size(), 1U) << outcome.errors;
  EXPECT_TRUE(outcome.errors.starts_with("stowline: ")) << outcome.errors;
  for (const std::string& text : said) {
    EXPECT_NE(outcome.errors.find(text), std::string::npos) << text << " in " << outcome.errors;
  }
}

TEST_P(BadInputTest, GetsOneLineThatSaysWhatToDoAndNothingIsTouched) {
  const Directories directories(receiver());
  const Snapshot before = snapshot(receiver().outside());
  for (const auto& [arguments, status, said] : kWrong) {
    std::vector<std::string> argv = {kStowline};
    for (const std::string& word : arguments) argv.push_back(directories.named(word));
    SCOPED_TRACE(testing::PrintToString(argv));
    std::vector<std::string> expected;
    for (const std::string& text : said) expected.push_back(directories.named(text));

    const Outcome outcome = run(argv);

    expectOneLine(outcome, status, expected);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(changes(before, snapshot(receiver().outside())), std::vector<std::string>());
  }
}

TEST_P(BadInputTest, SystemWithoutNamespacesIsSaid) {
  // Below a namespace that allows none, and in which the user is no root.
  const std::vector<std::string> without = {
      "unshare",     "--map-current-user",
      "--keep-caps", "sh",
      "-c",          "echo 0 > /proc/sys/user/max_user_namespaces || exit 125; exec \"$@\"",
      "sh"};
  std::vector<std::string> probe = without;
  probe.push_back("true");
  if (const Outcome outcome = run(probe); outcome.status != 0) {
    GTEST_SKIP() << "user namespaces cannot be forbidden here: " << outcome.errors;
  }
  const Snapshot before = receiver().content();

  const Play play = receiver().play("backup", "select:channel ok", without);

  EXPECT_EQ(play.status, kFailure);
  EXPECT_EQ(play.errors,
            "stowline: this system gives no namespaces to enclose the receiver in: allow them with "
            "'sysctl user.max_user_namespaces=1000', or do without as root (--no-enclosure)\n");
  EXPECT_EQ(play.lines, std::vector<Json>());
  EXPECT_EQ(changes(before, receiver().content()), std::vector<std::string>());
}

using BrokenOffPlayTest = DeskTest;

TEST_F(BrokenOffPlayTest, MissingRowOrUnwritableOutputIsAFailure) {
  const Play play = receiver().play("backup", "down select:nowhere down");
  EXPECT_EQ(play.lines,
            (std::vector<Json>{menuFrame("", "backup", 0), menuFrame("down", "backup", 1)}));
  EXPECT_EQ(play.status, kFailure);
  EXPECT_EQ(play.errors, "stowline: select:nowhere: the shown screen has no such row\n");

  for (const std::string redirection : {">/dev/full", ">&-"}) {
    std::vector<std::string> argv = {"sh", "-c", "exec \"$@\" " + redirection, "sh"};
    std::ranges::copy(receiver().playArguments("backup", "exit"), std::back_inserter(argv));
    expectOneLine(run(argv), kFailure, {"cannot write to standard output"});
  }
}

}  // namespace
}  // namespace command_test
