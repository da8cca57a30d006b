#include <gtest/gtest.h>

#include <string>

#include "base/SystemError.h"
#include "command/backups/VerifyFile.h"
#include "tests/support/TemporaryDirectory.h"

namespace backups {
namespace {

constexpr const Kind& kPluginList = kKinds[2];

struct PluginListTest : testing::Test {
  tarball::Verdict verify(const std::string& content) const {
    directory.write("list", content);
    return verifyFile(directory / "list", kPluginList);
  }

  support::TemporaryDirectory directory;
};

TEST_F(PluginListTest, NamesOfPackagesALineEachAreSound) {
  const tarball::Verdict verdict =
      verify("enigma2-plugin-extensions-one\nenigma2-plugin-skin-2.0+r1\n");
  EXPECT_TRUE(verdict.sound());
  EXPECT_EQ(verdict.members, 2U);
  EXPECT_EQ(verdict.notes, std::vector<tarball::Finding>{});
  EXPECT_EQ(verdict.noted, 0U);
}

TEST_F(PluginListTest, EmptyListIsSoundAndNoted) {
  const tarball::Verdict verdict = verify("");
  EXPECT_TRUE(verdict.sound());
  EXPECT_EQ(verdict.notes, (std::vector<tarball::Finding>{{"no package", ""}}));
  EXPECT_EQ(verdict.noted, 1U);
}

TEST_F(PluginListTest, AnythingElseIsNamed) {
  struct Case {
    const char* content;
    std::vector<tarball::Finding> findings;
  };
  const Case cases[] = {
      {"one\ntwo", {{"not the name of a package", "two"}}},
      {"one\n\n", {{"not the name of a package", "\\x0a"}}},
      {"one\r\n", {{"not the name of a package", "one\\x0d\\x0a"}}},
      {"; reboot\nab cd\n",
       {{"not the name of a package", "; reboot\\x0a"},
        {"not the name of a package", "ab cd\\x0a"}}},
  };
  for (const Case& one : cases) {
    const tarball::Verdict verdict = verify(one.content);
    EXPECT_EQ(verdict.findings, one.findings);
    EXPECT_EQ(verdict.found, one.findings.size());
  }
}

TEST_F(PluginListTest, ManyFindingsAreCounted) {
  std::string content;
  for (int line = 0; line < 1000; ++line) content += "!\n";
  const tarball::Verdict verdict = verify(content);
  EXPECT_EQ(verdict.findings.size(), tarball::kMostFindings);
  EXPECT_EQ(verdict.found, 1000U);
}

TEST_F(PluginListTest, EndlessListIsNotReadToItsEnd) {
  const tarball::Verdict verdict = verifyFile("/dev/zero", kPluginList);
  EXPECT_EQ(verdict.findings.front(), (tarball::Finding{"too long for a list of packages", ""}));
}

TEST_F(PluginListTest, ListThatIsNotThereRaises) {
  EXPECT_THROW(verifyFile(directory / "none", kPluginList), base::SystemError);
}

}  // namespace
}  // namespace backups
