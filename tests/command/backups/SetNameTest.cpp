#include <gtest/gtest.h>

#include <string>

#include "command/backups/Kind.h"
#include "command/backups/SetName.h"
#include "host/dryrun/Host.h"
#include "plugin/src/Setup.h"

namespace backups {
namespace {

struct NameCase {
  const char* name;
  const char* said;  ///< time, model, who wrote it and version; "" for nothing
};

constexpr NameCase kNameCases[] = {
    {"settings_20240305_07-04_solo2.tar.gz", "2024-03-05 07:04 solo2 hand "},
    {"settings_20240305_07-04_solo2.auto.tar.gz", "2024-03-05 07:04 solo2 timer "},
    {"configuration_ver_c_20240305_07-04_uno.tar.gz", "2024-03-05 07:04 uno hand c"},
    {"configuration_ver_a_20240305_07-04_uno.auto.tar.gz", "2024-03-05 07:04 uno timer a"},
    {"configuration_20240305_07-04_duo.tar.gz", "2024-03-05 07:04 duo hand "},
    {"pluginlist_20240305_07-04_zero.auto.lst", "2024-03-05 07:04 zero timer "},
    {"pluginlist_20240305_07-04_other box.lst", "2024-03-05 07:04 other box hand "},
    {"settings_my own.tar.gz", ""},
    {"settings_20240305_07-04_solo2", ""},
    {"settings_20240305_07-04_.tar.gz", ""},
    {"settings_20240305_7-04_solo2.tar.gz", ""},
    {"settings_2024-03-05_07-04_solo2.tar.gz", ""},
    {"settings_20240305_07-04_solo2.tar.gz.part", ""},
    {"configuration_ver_c_20240305_07-04_uno.tar.gz_user_files", ""},
    {"backup_20240305_07-04_uno.tar.gz", ""},
    {"settings_", ""},
    {"", ""},
};

TEST(SetName, SaysWhenAndOnWhichModelABackupWasMadeAndWhetherByATimer) {
  for (const NameCase& one : kNameCases) {
    const auto said = parseSetName(one.name);
    const std::string text = said ? said->time + " " + said->model +
                                        (said->is_scheduled ? " timer " : " hand ") + said->version
                                  : "";
    EXPECT_EQ(text, one.said) << one.name;
  }
}

std::string baseName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

/// Returns the digits of a text.
std::string digitsOf(std::string text) {
  std::erase_if(text, [](char character) { return character < '0' || character > '9'; });
  return text;
}

TEST(SetName, SaysSomethingOfEveryNameThatTheEngineWrites) {
  for (const char* backup_mode : {"", "auto"}) {
    dryrun::System system(std::nullopt);
    dryrun::Host host(system, "other box", "");
    stowline::load(host.module());
    const host::Object engine = host.named("BackupActions")({std::string(backup_mode)});
    for (const Kind& kind : kKinds) {
      engine.call(kind.operation, {});
      const std::string name = baseName(plain::textOf(engine.get(kind.file)));
      const auto said = parseSetName(name);
      ASSERT_TRUE(said) << name;
      EXPECT_EQ(said->model, "other box") << name;
      EXPECT_EQ(said->is_scheduled, backup_mode == std::string("auto")) << name;
      EXPECT_EQ(said->version, kind.is_confirmed ? "c" : "") << name;
      EXPECT_EQ(digitsOf(said->time), digitsOf(name)) << name;
    }
  }
}

}  // namespace
}  // namespace backups
