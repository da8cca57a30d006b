#include <gtest/gtest.h>

#include <string>

#include "command/backups/Engine.h"

namespace backups {
namespace {

/// A member, the archives that may hold it (s: settings, c: configuration, u: user files, a: any
/// of them), and those that leave it out.
struct EngineCase {
  const char* member;
  const char* held;
  const char* excluded;
};

constexpr EngineCase kEngineCases[] = {
    {"etc/enigma2/bouquets.tv", "sca", "c"},
    {"etc/enigma2/lamedb", "sca", "c"},
    {"etc/tuxbox/satellites.xml", "sa", ""},
    {"etc/enigma2/settings", "ca", ""},
    {"etc/enigma2/key.pem", "ca", "c"},
    {"etc/tuxbox/config/enigma.cfg", "ca", "c"},
    {"etc/shadow", "ca", ""},
    {"usr/share/enigma2/skin_default/spinner/wait1.png", "ca", ""},
    {"usr/share/enigma2/AtileHD/colors_atile_Mine.xml", "ua", ""},
    {"usr/share/enigma2/vfd_skin/skin_vfd_Mine.xml", "ua", ""},
    {"usr/share/enigma2/AtileHD/skin.xml", "", ""},
    {"bin/sh", "", ""},
    {"etc/init.d/networking", "", ""},
};

TEST(Engine, PlacesAreThoseThatTheModuleArchives) {
  const EnginePlaces engine = enginePlaces();
  struct Kind {
    char letter;
    const tarball::Places& places;
  };
  const Kind kinds[] = {{'s', engine.settings},
                        {'c', engine.configuration},
                        {'u', engine.user_files},
                        {'a', engine.any}};
  for (const EngineCase& one : kEngineCases) {
    std::string held;
    std::string excluded;
    for (const Kind& kind : kinds) {
      if (kind.places.hold(one.member)) held += kind.letter;
      if (kind.places.excluded(one.member)) excluded += kind.letter;
    }
    EXPECT_EQ(held, one.held) << one.member;
    EXPECT_EQ(excluded, one.excluded) << one.member;
  }
}

}  // namespace
}  // namespace backups
