#include <gtest/gtest.h>

#include <string>

#include "command/backups/Kind.h"

namespace backups {
namespace {

struct KindCase {
  const char* name;
  const char* kind;
};

constexpr KindCase kKindCases[] = {
    {"settings_20240305_07-04_solo2.tar.gz", "settings"},
    {"settings_20240305_07-04_zero.auto.tar.gz", "settings"},
    {"settings_mine.tar.gz", "settings"},
    {"configuration_ver_c_20240305_07-04_uno.tar.gz", "configuration"},
    {"configuration_ver_c_20240305_07-04_uno.tar.gz_user_files", "user files"},
    {"configuration_ver_a_20240305_07-04_uno.auto.tar.gz_atile_hd", "user files"},
    {"pluginlist_20240305_07-04_solo2.lst", "plugins"},
    {"settings_20240305_07-04_solo2.tar.gz_user_files", "unknown"},
    {"settings_20240305_07-04_solo2.zip", "unknown"},
    {"my settings.tar.gz", "unknown"},
    {"restore_me.sh", "unknown"},
    {"_user_files", "unknown"},
    {"", "unknown"},
};

TEST(Kind, IsWhatTheModulesListsTakeAFileForByItsName) {
  for (const KindCase& one : kKindCases) {
    EXPECT_EQ(std::string(kindOf(one.name).word), one.kind) << one.name;
  }
}

/// A member, the archives that may hold it (s: settings, c: configuration, u: user files, ?: what
/// is unknown), and those that leave it out.
struct PlaceCase {
  const char* member;
  const char* held;
  const char* excluded;
};

constexpr PlaceCase kPlaceCases[] = {
    {"etc/enigma2/bouquets.tv", "sc?", "c"},
    {"etc/enigma2/lamedb", "sc?", "c"},
    {"etc/tuxbox/satellites.xml", "s?", ""},
    {"etc/enigma2/settings", "c?", ""},
    {"etc/enigma2/key.pem", "c?", "c"},
    {"etc/tuxbox/config/enigma.cfg", "c?", "c"},
    {"etc/shadow", "c?", ""},
    {"usr/share/enigma2/skin_default/spinner/wait1.png", "c?", ""},
    {"usr/share/enigma2/AtileHD/colors_atile_Mine.xml", "u?", ""},
    {"usr/share/enigma2/vfd_skin/skin_vfd_Mine.xml", "u?", ""},
    {"usr/share/enigma2/AtileHD/skin.xml", "", ""},
    {"bin/sh", "", ""},
    {"etc/init.d/networking", "", ""},
};

TEST(Kind, HoldsThePlacesThatTheModuleArchives) {
  for (const PlaceCase& one : kPlaceCases) {
    std::string held;
    std::string excluded;
    for (const Kind* kind : {&kKinds[0], &kKinds[1], &kUserFiles, &kUnknown}) {
      const char letter = kind == &kUnknown ? '?' : *kind->word;
      const tarball::Places places = placesOf(*kind);
      if (places.hold(one.member)) held += letter;
      if (places.excluded(one.member)) excluded += letter;
    }
    EXPECT_EQ(held, one.held) << one.member;
    EXPECT_EQ(excluded, one.excluded) << one.member;
  }
}

}  // namespace
}  // namespace backups
