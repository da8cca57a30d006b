#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

/// Backups of a receiver that has been in use, as the menu writes them.
class VerifyTest : public DeskTest {
 protected:
  void SetUp() override {
    DeskTest::SetUp();
    if (IsSkipped()) return;
    const Play play = receiver().play(
        "backup", "select:installed ok ok select:channel ok ok select:configurations ok ok");
    ASSERT_EQ(play.status, 0) << play.errors;
  }

  Account account() const override { return Account::ordinary; }

  /// Returns the path of the one backup that begins and ends so.
  std::string backup(const std::string& prefix, const std::string& suffix) {
    return receiver().at(kBackups) / receiver().backup(prefix, suffix);
  }

  static Outcome verify(const Strings& arguments) {
    Strings argv = {kStowline, "verify"};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return run(argv);
  }

  /// Returns the bytes that an archive unpacks to.
  static std::size_t unpackedSize(const std::string& archive) {
    return run({"gzip", "-dc", archive}).output.size();
  }
};

TEST_F(VerifyTest, EveryBackupOfTheMenuIsSoundAndNothingIsWritten) {
  const std::string settings = backup("settings", ".tar.gz");
  const std::string configuration = backup("configuration", ".tar.gz");
  const std::string user_files = backup("configuration", "_user_files");
  const std::string plugins = backup("pluginlist", ".lst");
  const Snapshot before = receiver().content();
  const Outcome outcome = verify({"--json", settings, configuration, user_files, plugins});
  EXPECT_EQ(receiver().content(), before);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  Json expected = Json::array();
  const auto add = [&](const std::string& file, const char* kind, std::size_t members,
                       std::size_t unpacked) {
    expected.push_back({{"file", file},
                        {"kind", kind},
                        {"sound", true},
                        {"error", nullptr},
                        {"members", members},
                        {"unpacked", unpacked},
                        {"findings", Json::array()},
                        {"findings_total", 0},
                        {"notes", Json::array()},
                        {"notes_total", 0}});
  };
  add(settings, "settings", membersOf(settings).size(), unpackedSize(settings));
  add(configuration, "configuration", membersOf(configuration).size(), unpackedSize(configuration));
  add(user_files, "user files", membersOf(user_files).size(), unpackedSize(user_files));
  add(plugins, "plugins", linesOf(readFile(plugins)).size(), fs::file_size(plugins));
  EXPECT_EQ(Json::parse(outcome.output), expected);
}

TEST_F(VerifyTest, WhatIsDamagedOrMisplacedIsSaidAndTheOthersAreReadAllTheSame) {
  const std::string whole = backup("settings", ".tar.gz");
  const std::string cut = receiver().outside() / "settings_cut.tar.gz";
  writeFile(cut, readFile(whole).substr(0, 100));
  const Outcome outcome = verify({cut, receiver().outside() / "none", whole});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "stowline: 2 of 3 not sound\n");
  const Strings lines = linesOf(outcome.output);
  ASSERT_EQ(lines.size(), 4U) << outcome.output;
  EXPECT_TRUE(lines[0].starts_with(cut + ": NOT SOUND, settings, ")) << lines[0];
  EXPECT_TRUE(lines[1].starts_with("  the file is cut off (byte 100 of the file, ")) << lines[1];
  EXPECT_EQ(lines[2], std::string(receiver().outside() / "none") +
                          ": cannot be read: No such file or directory: '" +
                          std::string(receiver().outside() / "none") + "'");
  EXPECT_TRUE(lines[3].starts_with(whole + ": sound, settings, ")) << lines[3];

  const Outcome quiet = verify({"--quiet", whole, "/dev/null", "/"});
  EXPECT_EQ(quiet.output,
            "/dev/null: cannot be read: it is no regular file\n"
            "/: cannot be read: it is no regular file\n");
  EXPECT_EQ(quiet.errors, "stowline: 2 of 3 not sound\n");

  // The kind, which the name says, is which places an archive may hold.
  const std::string renamed = receiver().outside() / "settings_renamed.tar.gz";
  fs::copy_file(backup("configuration", "_user_files"), renamed);
  const Outcome misplaced = verify({renamed});
  EXPECT_EQ(misplaced.status, 1);
  EXPECT_NE(misplaced.output.find("usr/share/enigma2/AtileHD/colors_atile_"), std::string::npos)
      << misplaced.output;
}

TEST(VerifyRefusals, WithoutAFileOneLineSaysWhatIsMissing) {
  const Outcome outcome = run({kStowline, "verify"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.errors, "stowline: FILE is required (see 'stowline verify --help')\n");
}

}  // namespace
}  // namespace command_test
