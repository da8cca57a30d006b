#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "command/preview/Patterns.h"
#include "tests/command/preview/Told.h"

namespace preview_test {
namespace {

struct PatternsTest : testing::Test {
  PatternsTest() {
    for (const char* made : {"/etc", "/etc/one", "/etc/two", "/etc/.hidden"}) {
      files.makeDirectory(made);
    }
    for (const char* made : {"/etc/b.tv", "/etc/a.tv", "/etc/.c.tv", "/etc/one/x", "/etc/two/x",
                             "/etc/.hidden/x", "/etc/caf\xe9.tv"}) {
      files.write(made, "");
    }
  }

  Lines expanded(const std::string& pattern) const {
    return preview::expand(base::Root(files.path()), pattern).paths;
  }

  Files files;
};

TEST_F(PatternsTest, ExpandAsTheShellDoes) {
  const struct {
    const char* pattern;
    Lines paths;
  } kCases[] = {
      {"/etc/*.tv", {"/etc/a.tv", "/etc/b.tv", "/etc/caf\xe9.tv"}},
      {"/etc/.*.tv", {"/etc/.c.tv"}},
      {"/etc/[ab].tv", {"/etc/a.tv", "/etc/b.tv"}},
      {"/etc/*/x", {"/etc/one/x", "/etc/two/x"}},
      {"/*/a.tv", {"/etc/a.tv"}},
      {"/etc/a.tv", {"/etc/a.tv"}},
      {"/etc/none", {}},
      {"/etc/a.tv/*", {}},
      {"/none/*", {}},
  };
  for (const auto& [pattern, paths] : kCases) EXPECT_EQ(expanded(pattern), paths) << pattern;
}

TEST_F(PatternsTest, LinksLeadNowhereButIntoTheReceiver) {
  files.writeOutside("outside.tv", "");
  files.makeLink("/climbing", "../..");
  files.makeLink("/absolute", "/etc");
  files.makeLink("/etc/one/dangling.tv", "/nowhere");
  EXPECT_EQ(expanded("/climbing/*.tv"), Lines());
  EXPECT_EQ(expanded("/absolute/one/*"), (Lines{"/absolute/one/dangling.tv", "/absolute/one/x"}));
}

TEST_F(PatternsTest, DirectoryThatMayNotBeReadIsNamed) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read every directory";
  chmod(files.at("/etc/one").c_str(), 0);
  const preview::Expansion expansion = preview::expand(base::Root(files.path()), "/etc/*/x*");
  EXPECT_EQ(expansion.paths, Lines{"/etc/two/x"});
  EXPECT_EQ(expansion.unreadable, Lines{"/etc/one"});
  chmod(files.at("/etc/one").c_str(), 0755);
}

}  // namespace
}  // namespace preview_test
