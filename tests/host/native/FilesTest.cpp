#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/native/NativeSystem.h"
#include "tests/support/TemporaryDirectory.h"

namespace native {
namespace {

using Lines = std::vector<std::string>;

struct Files : testing::Test {
  const support::TemporaryDirectory directory;
  NativeSystem os;
};

TEST_F(Files, OpenReturnsLinesWithAndWithoutTheLastNewline) {
  directory.write("ended", "one\ntwo\n");
  directory.write("cut", "one\ntwo");
  directory.write("empty", "");
  directory.write("blank", "\n");
  EXPECT_EQ(os.open(directory / "ended"), (Lines{"one\n", "two\n"}));
  EXPECT_EQ(os.open(directory / "cut"), (Lines{"one\n", "two"}));
  EXPECT_EQ(os.open(directory / "empty"), Lines{});
  EXPECT_EQ(os.open(directory / "blank"), Lines{"\n"});
}

/// Calls `check` with every text of up to `length` bytes of an alphabet that matters to lines.
template <class Check>
void forEveryText(std::size_t length, const Check& check) {
  const std::string alphabet("a\n\r\xff\0", 5);
  std::vector<std::string> texts = {""};
  for (std::size_t round = 0; round <= length; ++round) {
    std::vector<std::string> longer;
    for (const std::string& text : texts) {
      check(text);
      for (const char byte : alphabet) longer.push_back(text + byte);
    }
    texts = std::move(longer);
  }
}

TEST_F(Files, EveryLineButTheLastEndsWithItsOnlyNewlineAndNoByteIsLost) {
  forEveryText(3, [this](const std::string& text) {
    directory.write("file", text);
    const Lines lines = os.open(directory / "file");
    std::string joined;
    for (const std::string& line : lines) {
      ASSERT_FALSE(line.empty());
      ASSERT_EQ(line.substr(0, line.size() - 1).find('\n'), std::string::npos);
      ASSERT_TRUE(line.ends_with('\n') || &line == &lines.back());
      joined += line;
    }
    ASSERT_EQ(joined, text);
  });
}

TEST_F(Files, OpenReadsFilesLargerThanAnyBuffer) {
  // Line lengths that share no divisor with a buffer's size put its edge everywhere in a line.
  Lines written;
  std::string content;
  for (std::size_t length = 0; content.size() < 1000000; length = (length + 37) % 1009) {
    written.push_back(std::string(length, 'x') + "\n");
    content += written.back();
  }
  directory.write("large", content);
  EXPECT_EQ(os.open(directory / "large"), written);
  EXPECT_EQ(os.fileSize(directory / "large"), static_cast<long long>(content.size()));
}

TEST_F(Files, ListdirGivesNamesAsBytesWithoutTheDotEntries) {
  Lines names = {"plain",    ".hidden",     "..data", "two words", "line\nbreak",
                 "\xff\xfe", "caf\xc3\xa9", "-rf",    "*",         "trailing "};
  for (const std::string& name : names) directory.write(name, name);
  directory.makeDirectory("folder");
  directory.makeLink("dangling", "/no/such/target");
  names.insert(names.end(), {"folder", "dangling"});

  Lines listed = os.listdir(directory.path());
  std::ranges::sort(listed);
  std::ranges::sort(names);
  EXPECT_EQ(listed, names);
}

TEST_F(Files, ListdirOfAnEmptyDirectoryIsEmpty) {
  EXPECT_EQ(os.listdir(directory.path()), Lines{});
}

TEST_F(Files, EveryListedNameCanBeUsedAsItStands) {
  for (const char* name : {"line\nbreak", "\xff\xfe", " ", "'\"\\"}) {
    directory.write(name, "content");
    const std::string path = directory / os.listdir(directory.path()).at(0);
    EXPECT_TRUE(os.exists(path));
    EXPECT_EQ(os.fileSize(path), 7);
    EXPECT_EQ(os.open(path), Lines{"content"});
    os.remove(path);
    EXPECT_FALSE(os.exists(path));
  }
}

TEST_F(Files, FileSizeFollowsALinkAndCountsTheArchiveThreshold) {
  for (const std::size_t size : {0U, 1U, 9999U, 10000U}) {
    directory.write("archive", std::string(size, 'x'));
    EXPECT_EQ(os.fileSize(directory / "archive"), static_cast<long long>(size));
  }
  directory.makeLink("link", directory / "archive");
  EXPECT_EQ(os.fileSize(directory / "link"), 10000);
}

}  // namespace
}  // namespace native
