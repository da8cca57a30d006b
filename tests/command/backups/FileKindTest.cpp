#include <gtest/gtest.h>

#include <string>

#include "command/backups/FileKind.h"

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

TEST(FileKind, IsWhatTheModulesListsTakeAFileForByItsName) {
  for (const KindCase& one : kKindCases) {
    EXPECT_EQ(std::string(wordOf(kindOf(one.name))), one.kind) << one.name;
  }
}

}  // namespace
}  // namespace backups
