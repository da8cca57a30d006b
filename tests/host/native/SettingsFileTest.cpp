#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

#include "host/native/SettingsConfig.h"
#include "tests/support/Raised.h"
#include "tests/support/TemporaryDirectory.h"

namespace native {
namespace {

using support::raised;

constexpr const char* kBranch = "plugins.qorpanel.stowline";
const std::string kDefault = "/media/hdd/";
const std::string kStart = "config.plugins.qorpanel.stowline.backuprestorepath=";

struct SettingsFile : testing::Test {
  /// Loads from the file, as a new process does.
  void load() {
    config.emplace(directory / "settings", std::vector<std::string>{"plugins.qorpanel"});
    config->attachSubsection(kBranch);
    branch().attachText("backuprestorepath",
                        {.default_value = kDefault, .visible_width = 50, .fixed_size = false});
  }

  host::ConfigSubsection& branch() { return config->subsection(kBranch); }
  host::ConfigText& text() { return branch().text("backuprestorepath"); }
  bool has(const std::string& name) { return access((directory / name).c_str(), F_OK) == 0; }

  void store(const std::string& value) {
    text().setValue(value);
    text().save();
    config->save();
  }

  const support::TemporaryDirectory directory;
  std::optional<SettingsConfig> config;
};

TEST_F(SettingsFile, DefaultIsNotWritten) {
  load();
  store(kDefault);
  EXPECT_EQ(directory.read("settings"), "");
}

TEST_F(SettingsFile, OtherValueIsWrittenAndReadBack) {
  load();
  store("/media/usb");
  EXPECT_EQ(directory.read("settings"), kStart + "/media/usb\n");
  load();
  EXPECT_EQ(text().value(), "/media/usb");
}

TEST_F(SettingsFile, ValueIsReplacedNotRepeated) {
  load();
  store("/media/usb");
  store("/media/cf");
  EXPECT_EQ(directory.read("settings"), kStart + "/media/cf\n");
}

TEST_F(SettingsFile, BackToTheDefaultRemovesTheLine) {
  directory.write("settings", "config.a=1\n" + kStart + "/media/usb\nconfig.b=2\n");
  load();
  store(kDefault);
  EXPECT_EQ(directory.read("settings"), "config.a=1\nconfig.b=2\n");
}

TEST_F(SettingsFile, OnlySavedValuesAreWritten) {
  load();
  text().setValue("/media/usb");
  config->save();
  EXPECT_EQ(directory.read("settings"), "");
  branch().save();
  EXPECT_EQ(directory.read("settings"), "");
  config->save();
  EXPECT_EQ(directory.read("settings"), kStart + "/media/usb\n");
}

TEST_F(SettingsFile, UnsavedChangeKeepsTheStoredValue) {
  directory.write("settings", kStart + "/media/usb\n");
  load();
  text().setValue("/media/cf");
  config->save();
  EXPECT_EQ(directory.read("settings"), kStart + "/media/usb\n");
}

TEST_F(SettingsFile, BranchWithoutTheSettingLeavesItsLineAlone) {
  directory.write("settings", kStart + "/media/usb\n");
  load();
  config->attachSubsection(kBranch);
  config->save();
  EXPECT_EQ(directory.read("settings"), kStart + "/media/usb\n");
}

/// Lines that are about no setting of ours, however near they come.
const std::string kOthers[] = {
    "config.av.videomode=1080i \r\n",
    "\n",
    "config.plugins.qorpanel.stowline.backuprestorepath2=/media/usb\n",
    " " + kStart + "/media/usb\n",
    "\xff\xfe\n",
};

/// Calls `check` with every selection of the other lines, in their order.
template <class Check>
void forEverySelection(const Check& check) {
  for (unsigned chosen = 0; chosen < 1U << std::size(kOthers); ++chosen) {
    std::vector<std::string> lines;
    for (std::size_t index = 0; index < std::size(kOthers); ++index) {
      if (chosen >> index & 1U) lines.push_back(kOthers[index]);
    }
    check(lines);
  }
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

TEST_F(SettingsFile, OtherLinesStayByteForByteInTheirOrderWhereverOursStood) {
  forEverySelection([this](const std::vector<std::string>& others) {
    const std::string kept = joined(others);
    for (std::size_t place = 0; place <= others.size(); ++place) {
      std::vector<std::string> lines = others;
      lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), kStart + "/media/usb\n");
      directory.write("settings", joined(lines));
      load();
      ASSERT_EQ(text().value(), "/media/usb");
      text().setValue("/media/cf");
      text().save();
      config->save();
      ASSERT_EQ(directory.read("settings"), kept + kStart + "/media/cf\n");
    }
  });
}

TEST_F(SettingsFile, LastLineWithoutNewlineIsCompleted) {
  directory.write("settings", "config.a=1");
  load();
  store("/media/usb");
  EXPECT_EQ(directory.read("settings"), "config.a=1\n" + kStart + "/media/usb\n");
}

TEST_F(SettingsFile, WithoutTheDirectoryRaises) {
  config.emplace(directory / "gone/settings", std::vector<std::string>{"plugins.qorpanel"});
  EXPECT_EQ(raised([&] { config->save(); }), "2 OSError: [Errno 2] No such file or directory: '" +
                                                 (directory / "gone/settings.new") + "'");
}

TEST_F(SettingsFile, FailureKeepsTheOldFileWhole) {
  directory.write("settings", "config.a=1\n");
  directory.makeDirectory("settings.new");
  load();
  EXPECT_EQ(raised([&] { store("/media/usb"); }),
            "21 OSError: [Errno 21] Is a directory: '" + (directory / "settings.new") + "'");
  EXPECT_EQ(directory.read("settings"), "config.a=1\n");
}

TEST_F(SettingsFile, FullMediumKeepsTheOldFileWholeAndLeavesNoOther) {
  directory.write("settings", "config.a=1\n");
  directory.makeLink("settings.new", "/dev/full");
  load();
  EXPECT_EQ(
      raised([&] { store("/media/usb"); }),
      "28 OSError: [Errno 28] No space left on device: '" + (directory / "settings.new") + "'");
  EXPECT_EQ(directory.read("settings"), "config.a=1\n");
  EXPECT_FALSE(has("settings.new"));
}

TEST_F(SettingsFile, FailureToReplaceRaisesAndLeavesNoOther) {
  load();
  directory.makeDirectory("settings/in the way");
  EXPECT_EQ(raised([&] { store("/media/usb"); }),
            "21 OSError: [Errno 21] Is a directory: '" + (directory / "settings") + "'");
  EXPECT_FALSE(has("settings.new"));
}

TEST_F(SettingsFile, LeftOverOfAnInterruptedSaveIsOverwritten) {
  directory.write("settings.new", "half a li");
  load();
  store("/media/usb");
  EXPECT_EQ(directory.read("settings"), kStart + "/media/usb\n");
  EXPECT_FALSE(has("settings.new"));
}

TEST_F(SettingsFile, NewFileIsReadableByAll) {
  load();
  store("/media/usb");
  struct stat status {};
  ASSERT_EQ(stat((directory / "settings").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

}  // namespace
}  // namespace native
