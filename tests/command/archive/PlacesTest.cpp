#include <gtest/gtest.h>

#include <clocale>

#include "command/archive/Places.h"

namespace tarball {
namespace {

struct Case {
  const char* path;
  bool held;
};

const Places& places() {
  static const Places places(
      {"/etc/enigma2/*", "/etc/CC*", "/etc/hostname", "/Settings/*",
       "/usr/share/enigma2/skin_default/spinner/wait*png", "/etc/wpa_supplicant*.conf"},
      {"etc/enigma2/*.tv", "etc/enigma2/blacklist", "etc/tuxbox/config/enigma*"});
  return places;
}

TEST(Places, HoldWhatAPatternNamesAndEverythingBelowIt) {
  constexpr Case kCases[] = {
      {"etc/enigma2/settings", true},
      {"etc/enigma2/a/b/c", true},
      {"etc/enigma2/caf\xe9/b", true},
      {"./etc//enigma2/a/", true},
      {"/etc/hostname", true},
      {"etc/hostname/below", true},
      {"etc/hostname2", false},
      {"etc/enigma2", false},
      {"etc/enigma2/", false},
      {"etc", false},
      {"", false},
      {"etc/CC", true},
      {"etc/CCcam/x", true},
      {"etc/cc", false},
      {"x/etc/CC", false},
      {"etc/enigma2/.hidden", false},
      {"etc/enigma2/a/.hidden", true},
      {"etc/enigma2/../passwd", false},
      {"etc/enigma2/a/../../passwd", false},
      {"usr/share/enigma2/skin_default/spinner/wait1.png", true},
      {"usr/share/enigma2/skin_default/spinner/wait/1.png", false},
      {"etc/wpa_supplicant.wlan0.conf", true},
      {"etc/wpa_supplicant.conf.old", false},
  };
  for (const auto& [path, held] : kCases) EXPECT_EQ(places().hold(path), held) << path;
  EXPECT_FALSE(Places({}, {}).hold("etc/hostname"));
}

TEST(Places, LeaveOutWhatAnExclusionNamesAndEverythingBelowIt) {
  constexpr Case kCases[] = {
      {"etc/enigma2/userbouquet.tv", true},
      {"etc/enigma2/a/b.tv", true},
      {"etc/enigma2/.tv", true},
      {"etc/enigma2/caf\xe9.tv", true},
      {"etc/enigma2/a.tv/below", true},
      {"./etc/enigma2//a.tv/", true},
      {"etc/enigma2/a.tv2", false},
      {"etc/enigma2/blacklist", true},
      {"etc/enigma2/blacklist2", false},
      {"etc/tuxbox/config/enigma.cfg", true},
      {"Settings/etc/enigma2/blacklist", true},
      {"Settings/my_etc/enigma2/blacklist", false},
      {"", false},
  };
  for (const auto& [path, excluded] : kCases) EXPECT_EQ(places().excluded(path), excluded) << path;
  EXPECT_FALSE(Places({}, {}).excluded("etc/hostname"));
}

TEST(Places, TakeNamesForBytesInEveryLocale) {
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  const Places one_byte_more({"/etc/CC?"}, {"etc/x?"});
  EXPECT_TRUE(one_byte_more.hold("etc/CC\xe9"));
  EXPECT_TRUE(one_byte_more.excluded("etc/x\xe9"));
  EXPECT_FALSE(one_byte_more.hold("etc/CC\xc3\xa9"));
  EXPECT_FALSE(one_byte_more.excluded("etc/x\xc3\xa9"));
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace tarball
