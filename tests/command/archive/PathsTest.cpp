#include <gtest/gtest.h>

#include <climits>

#include "archive/Paths.h"

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

TEST(Paths, AreShownOnOneLineWithoutControlCharacters) {
  EXPECT_EQ(shownPath("etc/caf\xc3\xa9"), "etc/caf\xc3\xa9");
  EXPECT_EQ(shownPath("caf\xe9\n\x1b[1m\x7f\t"), "caf\\xe9\\x0a\\x1b[1m\\x7f\\x09");
  EXPECT_EQ(shownPath(std::string("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(shownPath("\xc2\x9b"
                      "1m\xc2\xa0"),
            "\\xc2\\x9b1m\xc2\xa0");
  EXPECT_EQ(shownPath(std::string(PATH_MAX, 'x')), std::string(PATH_MAX, 'x'));
  EXPECT_EQ(shownPath(std::string(PATH_MAX + 1, 'x')), std::string(PATH_MAX, 'x') + "...");
}

}  // namespace
}  // namespace tarball
