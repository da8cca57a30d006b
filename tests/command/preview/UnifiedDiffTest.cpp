#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "command/preview/UnifiedDiff.h"
#include "tests/support/TemporaryDirectory.h"

namespace preview_test {
namespace {

using preview::unifiedHunks;

/// Returns lines "1" to "COUNT".
std::string numbered(int count) {
  std::string text;
  for (int line = 1; line <= count; ++line) text += std::to_string(line) + "\n";
  return text;
}

/// Returns `text` with one line replaced.
std::string replaced(std::string text, const std::string& line, const std::string& other) {
  const std::size_t at = ("\n" + text).find("\n" + line + "\n");
  return text.replace(at, line.size() + 1, other);
}

TEST(UnifiedDiffTest, HunkHasThreeLinesOfContext) {
  EXPECT_EQ(unifiedHunks(numbered(9), replaced(numbered(9), "5", "five\n")),
            "@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n");
}

TEST(UnifiedDiffTest, ChangesThatAreSixLinesApartShareAHunk) {
  const std::string before = numbered(20);
  EXPECT_EQ(unifiedHunks(before, replaced(replaced(before, "4", ""), "11", "")),
            "@@ -1,14 +1,12 @@\n 1\n 2\n 3\n-4\n 5\n 6\n 7\n 8\n 9\n 10\n-11\n 12\n 13\n 14\n");
  EXPECT_EQ(unifiedHunks(before, replaced(replaced(before, "4", ""), "12", "")),
            "@@ -1,7 +1,6 @@\n 1\n 2\n 3\n-4\n 5\n 6\n 7\n"
            "@@ -9,7 +8,6 @@\n 9\n 10\n 11\n-12\n 13\n 14\n 15\n");
}

TEST(UnifiedDiffTest, MissingNewlineAtTheEndIsSaid) {
  constexpr const char* kNone = "\\ No newline at end of file\n";
  EXPECT_EQ(unifiedHunks("a\nb", "a\nb\n"),
            "@@ -1,2 +1,2 @@\n a\n-b\n" + std::string(kNone) + "+b\n");
  EXPECT_EQ(unifiedHunks("a\n", "b"), "@@ -1,1 +1,1 @@\n-a\n+b\n" + std::string(kNone));
}

TEST(UnifiedDiffTest, NewAndDeletedTextsBeginAtLineZero) {
  EXPECT_EQ(unifiedHunks("", "a\nb\n"), "@@ -0,0 +1,2 @@\n+a\n+b\n");
  EXPECT_EQ(unifiedHunks("a\nb\n", ""), "@@ -1,2 +0,0 @@\n-a\n-b\n");
}

TEST(UnifiedDiffTest, EqualTextsHaveNoHunk) {
  EXPECT_EQ(unifiedHunks("", ""), "");
  EXPECT_EQ(unifiedHunks(numbered(50000), numbered(50000)), "");
}

TEST(UnifiedDiffTest, OnlyTheLinesBetweenTheFirstAndTheLastDifferenceAreCounted) {
  const std::string before = numbered(50000);
  const std::string swapped = replaced(replaced(before, "25000", "x\n"), "29000", "y\n");
  EXPECT_TRUE(unifiedHunks(before, swapped));
  EXPECT_FALSE(unifiedHunks(before, replaced(replaced(before, "2", "x\n"), "49000", "y\n")));
}

/// Returns a text of random lines, `kinds` of them different, with or without a newline at its end.
std::string randomText(std::mt19937& random, std::size_t lines, std::size_t kinds) {
  std::string text;
  for (std::size_t line = 0; line < lines; ++line) text += std::to_string(random() % kinds) + "\n";
  if (random() % 3 == 0 && !text.empty()) text.pop_back();
  return text;
}

/// Makes the new text of the old with patch(1), which guesses nothing. Returns what that made.
std::string patched(const std::string& before, const std::string& hunks) {
  const support::TemporaryDirectory directory;
  directory.write("file", before);
  directory.write("diff", "--- file\n+++ file\n" + hunks);
  const std::string command = "cd " + directory.path() +
                              " && patch -s -p0 --fuzz=0 --posix -o result -i diff && "
                              "test ! -e file.rej && test ! -e result.rej";
  EXPECT_EQ(std::system(command.c_str()), 0);
  return directory.read("result");
}

TEST(UnifiedDiffTest, PatchMakesTheNewTextOfTheOld) {
  const struct {
    unsigned rounds;
    std::size_t most_lines;
    std::size_t kinds;
  } kCases[] = {{150, 30, 4}, {20, 4000, 4}, {20, 4000, 1000}, {2, 10000, 9000}};
  std::mt19937 random(20240305);
  for (const auto& [rounds, most_lines, kinds] : kCases) {
    for (unsigned round = 0; round < rounds; ++round) {
      const std::string before = randomText(random, random() % most_lines, kinds);
      const std::string after = randomText(random, random() % most_lines, kinds);
      const auto hunks = unifiedHunks(before, after);
      ASSERT_TRUE(hunks);
      ASSERT_EQ(hunks->empty() ? before : patched(before, *hunks), after) << before << "===\n"
                                                                          << *hunks;
    }
  }
}

TEST(UnifiedDiffTest, TextsOfTheMostLinesThatHaveNoneInCommonAreComparedToo) {
  std::string after;
  for (std::size_t line = 0; line < preview::kMostLines / 2; ++line) after += "x\n";
  const std::string before = numbered(static_cast<int>(preview::kMostLines / 2));
  EXPECT_EQ(patched(before, unifiedHunks(before, after).value()), after);
  EXPECT_FALSE(unifiedHunks(before, after + "x\n"));
}

}  // namespace
}  // namespace preview_test
