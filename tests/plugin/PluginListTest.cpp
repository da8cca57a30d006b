#include "tests/plugin/BackupTest.h"

namespace stowline {
namespace {

using namespace expected;

const std::string kPluginList = "/media/hdd/qor-stowline/pluginlist_20240305_07-04_solo2.lst";

using PluginList = BackupTest;

TEST_F(PluginList, AppendsTheInstalledPluginPackagesToTheList) {
  EXPECT_EQ(described(actions.call("createPluginList")), "True");
  EXPECT_EQ(record.take(),
            backupDirectory() + fileExists(kPluginList) +
                "os.system(\"opkg list-installed | grep enigma2-plugin | cut -d \\\" \\\" -f 1 >> "
                "/media/hdd/qor-stowline/pluginlist_20240305_07-04_solo2.lst\")\n" +
                fileExists(kPluginList));
  EXPECT_EQ(actions.attribute("path"), quoted(kDirectory));
  EXPECT_EQ(actions.attribute("pluginfile"), quoted(kPluginList));
}

TEST_F(PluginList, ReportsSuccessByTheFileAloneNotByTheStatus) {
  status = 256;
  EXPECT_EQ(described(actions.call("createPluginList")), "True");
  status = 0;
  has_room = false;
  EXPECT_EQ(described(actions.call("createPluginList")), "False");
}

}  // namespace
}  // namespace stowline
