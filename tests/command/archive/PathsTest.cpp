#include <gtest/gtest.h>

#include <climits>

#include "command/archive/Paths.h"

namespace tarball {
namespace {

using Components = std::vector<std::string_view>;

TEST(Paths, AreMadeOfTheNamesBetweenSlashes) {
  EXPECT_EQ(componentsOf("etc/enigma2/settings"), (Components{"etc", "enigma2", "settings"}));
  EXPECT_EQ(componentsOf("//etc/.//CC/"), (Components{"etc", "CC"}));
  EXPECT_EQ(componentsOf("../etc/..x"), (Components{"..", "etc", "..x"}));
  EXPECT_EQ(componentsOf("./"), Components{});
  EXPECT_EQ(joined({"etc", "enigma2"}), "etc/enigma2");
  EXPECT_EQ(joined({}), "");
}

TEST(Paths, AreShownOnOneLineAsFarAsAPathCanBe) {
  EXPECT_EQ(shownPath("caf\xe9\n\x1b[1m"), "caf\\xe9\\x0a\\x1b[1m");
  EXPECT_EQ(shownPath(std::string(PATH_MAX, 'x')), std::string(PATH_MAX, 'x'));
  EXPECT_EQ(shownPath(std::string(PATH_MAX + 1, 'x')), std::string(PATH_MAX, 'x') + "...");
}

}  // namespace
}  // namespace tarball
