#include <gtest/gtest.h>

#include <string>

#include "host/native/SettingsConfig.h"
#include "tests/support/Raised.h"
#include "tests/support/TemporaryDirectory.h"

namespace native {
namespace {

using support::raised;

constexpr const char* kSubsection = "plugins.qorpanel.stowline";
constexpr const char* kKey = "backuprestorepath";

struct Settings : testing::Test {
  /// Attaches the branch and its setting afresh, as a load does.
  host::ConfigText& load() {
    config.attachSubsection(kSubsection);
    config.subsection(kSubsection)
        .attachText(kKey,
                    {.default_value = "/media/hdd/", .visible_width = 50, .fixed_size = false});
    return config.subsection(kSubsection).text(kKey);
  }

  const support::TemporaryDirectory directory;
  SettingsConfig config{directory / "settings", {"plugins.qorpanel"}};
};

TEST_F(Settings, MissingFileGivesTheDefault) {
  EXPECT_EQ(load().value(), "/media/hdd/");
}

/// The settings file and the value that the setting has after its attachment.
struct Stored {
  const char* file;
  const char* value;
};

constexpr Stored kStored[] = {
    {"", "/media/hdd/"},
    {"config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n", "/media/usb"},
    {"config.plugins.qorpanel.stowline.backuprestorepath=/media/usb", "/media/usb"},
    {"config.plugins.qorpanel.stowline.backuprestorepath=\n", ""},
    {"config.plugins.qorpanel.stowline.backuprestorepath=a=b c\n", "a=b c"},
    {"config.plugins.qorpanel.stowline.backuprestorepath=\xff\xfe\n", "\xff\xfe"},
    {"config.a=1\nconfig.plugins.qorpanel.stowline.backuprestorepath=/media/usb\nconfig.b=2\n",
     "/media/usb"},
    {"config.plugins.qorpanel.stowline.backuprestorepath2=/media/usb\n", "/media/hdd/"},
    {" config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n", "/media/hdd/"},
    {"plugins.qorpanel.stowline.backuprestorepath=/media/usb\n", "/media/hdd/"},
    {"config.plugins.qorpanel.stowline.backuprestorepath\n", "/media/hdd/"},
};

TEST_F(Settings, AttachmentReadsTheStoredValue) {
  for (const Stored& one : kStored) {
    directory.write("settings", one.file);
    EXPECT_EQ(load().value(), one.value) << one.file;
  }
}

TEST_F(Settings, FreshAttachmentReadsTheFileAgain) {
  load().setValue("/media/unsaved");
  directory.write("settings", "config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n");
  EXPECT_EQ(config.subsection(kSubsection).text(kKey).value(), "/media/unsaved");
  EXPECT_EQ(load().value(), "/media/usb");
}

TEST_F(Settings, FreshBranchIsEmpty) {
  load();
  config.attachSubsection(kSubsection);
  EXPECT_EQ(raised([&] { config.subsection(kSubsection).text(kKey); }),
            "0 AttributeError: config.plugins.qorpanel.stowline.backuprestorepath");
}

TEST_F(Settings, MissingBranchesRaise) {
  EXPECT_EQ(raised([&] { config.subsection(kSubsection); }),
            "0 AttributeError: config.plugins.qorpanel.stowline");
  EXPECT_EQ(raised([&] { config.attachSubsection("plugins.other.stowline"); }),
            "0 AttributeError: config.plugins.other");
  EXPECT_EQ(raised([&] { config.subsection("plugins.other.stowline"); }),
            "0 AttributeError: config.plugins.other.stowline");
}

TEST_F(Settings, MissingParentMakesTheLoadFail) {
  SettingsConfig without(directory / "settings", {});
  EXPECT_EQ(raised([&] { without.attachSubsection(kSubsection); }),
            "0 AttributeError: config.plugins.qorpanel");
}

TEST_F(Settings, BranchesBelowAnAttachedOneCanBeAttached) {
  config.attachSubsection(kSubsection);
  config.attachSubsection(std::string(kSubsection) + ".deeper");
  EXPECT_EQ(raised([&] { config.subsection(std::string(kSubsection) + ".deeper"); }), "nothing");
}

}  // namespace
}  // namespace native
