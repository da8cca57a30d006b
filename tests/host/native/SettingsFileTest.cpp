#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

#include "host/native/SettingsFile.h"
#include "tests/support/Raised.h"
#include "tests/support/TemporaryDirectory.h"

namespace native {
namespace {

using support::raised;

const std::string kPath = "config.plugins.qorpanel.stowline.backuprestorepath";
const std::string kStart = kPath + "=";

struct SettingsFileTest : testing::Test {
  bool has(const std::string& name) { return access((directory / name).c_str(), F_OK) == 0; }

  void store(const std::optional<std::string>& value) { settings.store({{kPath, value}}); }

  const support::TemporaryDirectory directory;
  SettingsFile settings{directory / "settings"};
};

/// The settings file and what is stored in it.
struct Stored {
  std::string file;
  std::optional<std::string> value;
};

const Stored kStored[] = {
    {"", std::nullopt},
    {kStart + "/media/usb\n", "/media/usb"},
    {kStart + "/media/usb", "/media/usb"},
    {kStart + "\n", ""},
    {kStart, ""},
    {kStart + "a=b c\n", "a=b c"},
    {kStart + "\xff\xfe\n", "\xff\xfe"},
    {"config.a=1\n" + kStart + "/media/usb\nconfig.b=2\n", "/media/usb"},
    {kStart + "/media/usb\n" + kStart + "/media/cf\n", "/media/cf"},
    {kPath + "2=/media/usb\n", std::nullopt},
    {" " + kStart + "/media/usb\n", std::nullopt},
    {kStart.substr(std::string("config.").size()) + "/media/usb\n", std::nullopt},
    {kPath + "\n", std::nullopt},
};

TEST_F(SettingsFileTest, StoredValueIsThatOfItsLastLine) {
  EXPECT_EQ(settings.stored(kPath), std::nullopt);
  for (const Stored& one : kStored) {
    directory.write("settings", one.file);
    EXPECT_EQ(settings.stored(kPath), one.value) << one.file;
  }
}

TEST_F(SettingsFileTest, BackToTheDefaultRemovesTheLine) {
  directory.write("settings", "config.a=1\n" + kStart + "/media/usb\nconfig.b=2\n");
  store(std::nullopt);
  EXPECT_EQ(directory.read("settings"), "config.a=1\nconfig.b=2\n");
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

TEST_F(SettingsFileTest, OtherLinesStayByteForByteInTheirOrderWhereverOursStood) {
  forEverySelection([this](const std::vector<std::string>& others) {
    const std::string kept = joined(others);
    for (std::size_t place = 0; place <= others.size(); ++place) {
      std::vector<std::string> lines = others;
      lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), kStart + "/media/usb\n");
      directory.write("settings", joined(lines));
      store("/media/cf");
      ASSERT_EQ(directory.read("settings"), kept + kStart + "/media/cf\n");
    }
  });
}

TEST_F(SettingsFileTest, LastLineWithoutNewlineIsCompleted) {
  directory.write("settings", "config.a=1");
  store("/media/usb");
  EXPECT_EQ(directory.read("settings"), "config.a=1\n" + kStart + "/media/usb\n");
}

TEST_F(SettingsFileTest, WithoutTheDirectoryRaises) {
  EXPECT_EQ(raised([&] { SettingsFile(directory / "gone/settings").store({}); }),
            "No such file or directory: '" + (directory / "gone/settings.new") + "'");
}

TEST_F(SettingsFileTest, FailureKeepsTheOldFileWhole) {
  directory.write("settings", "config.a=1\n");
  directory.makeDirectory("settings.new");
  EXPECT_EQ(raised([&] { store("/media/usb"); }),
            "Is a directory: '" + (directory / "settings.new") + "'");
  EXPECT_EQ(directory.read("settings"), "config.a=1\n");
}

TEST_F(SettingsFileTest, FullMediumKeepsTheOldFileWholeAndLeavesNoOther) {
  directory.write("settings", "config.a=1\n");
  directory.makeLink("settings.new", "/dev/full");
  EXPECT_EQ(raised([&] { store("/media/usb"); }),
            "No space left on device: '" + (directory / "settings.new") + "'");
  EXPECT_EQ(directory.read("settings"), "config.a=1\n");
  EXPECT_FALSE(has("settings.new"));
}

TEST_F(SettingsFileTest, FailureToReplaceRaisesAndLeavesNoOther) {
  directory.makeDirectory("settings/in the way");
  EXPECT_EQ(raised([&] { store("/media/usb"); }),
            "Is a directory: '" + (directory / "settings") + "'");
  EXPECT_FALSE(has("settings.new"));
}

TEST_F(SettingsFileTest, LeftOverOfAnInterruptedSaveIsOverwritten) {
  directory.write("settings.new", "half a li");
  store("/media/usb");
  EXPECT_EQ(directory.read("settings"), kStart + "/media/usb\n");
  EXPECT_FALSE(has("settings.new"));
}

TEST_F(SettingsFileTest, NewFileIsReadableByAll) {
  store("/media/usb");
  struct stat status {};
  ASSERT_EQ(stat((directory / "settings").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

}  // namespace
}  // namespace native
