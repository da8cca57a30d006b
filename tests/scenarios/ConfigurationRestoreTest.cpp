#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"
#include "tests/support/command/Expected.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

/// An archive's version tag, and what there is besides it on its medium, in it, and on the receiver
/// that it is restored to.
struct Case {
  const char* name;
  const char* prefix;  ///< of the archive's name: tells the version
  bool keeps_system_files;
  bool is_current;
  bool has_samba;         ///< the receiver has a samba configuration
  bool has_atile_hd;      ///< ... the archive, a companion of this kind
  bool has_user_files;    ///< ... and of this kind
  bool has_pictures;      ///< ... and it brings spinner pictures
  bool has_link;          ///< ... and the resolver file as a link
  bool has_video_window;  ///< the receiver has the video window's files
};

void PrintTo(const Case& value, std::ostream* output) {
  *output << value.name;
}

constexpr Case kCases[] = {
    // name, prefix, keeps system files, current; samba, atile_hd, user_files; pictures, link, video
    {"Untagged", "configuration", true, false, true, true, true, true, false, true},
    {"VersionA", "configuration_ver_a", true, false, false, false, false, true, true, true},
    {"VersionB", "configuration_ver_b", false, false, true, false, false, true, false, false},
    {"VersionC", "configuration_ver_c", false, true, true, false, true, false, true, true},
};

constexpr const char* kSmbConf = "/etc/samba/smb.conf";
constexpr const char* kResolver = "/etc/resolv.conf";
constexpr const char* kVideoWindow = "/proc/stb/vmpeg/0";
constexpr const char* kSpinner = "usr/share/enigma2/skin_default/spinner";
constexpr const char* kEarlierSkin = "usr/share/enigma2/AtileHD/earlier.xml";

class ConfigurationRestoreTest : public DeskTest, public testing::WithParamInterface<Case> {
 protected:
  void SetUp() override {
    DeskTest::SetUp();
    if (IsSkipped()) return;
    prepareUsed();
    backUp();
    used_ = receiver().content();
    receiver().flash();
    prepareFlashed();
    flashed_ = receiver().content();
  }

  static const Case& it() { return GetParam(); }
  std::string archivePath() const { return inBackups(archive_); }

  /// Restores the archive, and expects each frame, command and line, and every file as it must be.
  void expectRestored();

  /// The receiver as the restore must leave it, but for its logs.
  Snapshot expected() {
    Snapshot content = flashed_;
    for (const auto& [path, entry] : flashed_) {
      if (it().has_pictures && path.starts_with(kSpinner) && entry.type == 'f') content.erase(path);
    }
    unpackInto(content, archivePath());
    if (it().has_user_files) unpackInto(content, archivePath() + "_user_files");
    if (it().has_atile_hd) addTo(content, kEarlierSkin, {'f', 0644, "<skin/>\n"});
    forget(content, ".qws");
    linkResolver(content);
    keepFiles(content);
    if (it().has_video_window) resetVideoWindow(content);
    return content;
  }

  std::string archive_;

 private:
  void prepareUsed() {
    fs::permissions(receiver().at("/etc/auto.network"), fs::perms(0755));
    if (it().has_link) {
      fs::remove(receiver().at(kResolver));
      fs::create_symlink("/var/run/resolv.conf", receiver().at(kResolver));
    }
    if (!it().has_pictures) fs::remove_all(receiver().tree() / kSpinner);
  }

  /// Makes an archive of the current version and gives it the name and the companions asked for.
  void backUp() {
    receiver().play("backup", "select:configurations ok");
    const std::string made = receiver().backup("configuration_ver_c_", ".tar.gz");
    archive_ = std::string(it().prefix) + "_20240305_07-04_solo2.tar.gz";
    receiver().renameBackup(made, archive_);
    receiver().renameBackup(made + "_user_files", archive_ + "_user_files");
    if (!it().has_user_files) fs::remove(receiver().at(archivePath() + "_user_files"));
    if (it().has_atile_hd) makeEarlierSkinArchive();
  }

  void makeEarlierSkinArchive() {
    const fs::path root = receiver().outside() / "earlier";
    writeFile(root / kEarlierSkin, "<skin/>\n");
    const Outcome tar =
        run({"tar", "-czf", receiver().at(archivePath() + "_atile_hd"), "-C", root, kEarlierSkin});
    ASSERT_EQ(tar.status, 0) << tar.errors;
  }

  void prepareFlashed() {
    if (!it().has_samba) fs::remove(receiver().at(kSmbConf));
    if (!it().has_video_window) fs::remove_all(receiver().at(kVideoWindow));
  }

  void unpackInto(Snapshot& content, const std::string& archive) {
    for (std::string member : membersOf(receiver().at(archive))) {
      if (member.ends_with('/')) member.pop_back();
      addTo(content, member, used_.at(member));
    }
  }

  /// Adds the entry, with the directories above it.
  static void addTo(Snapshot& content, const std::string& path, const Entry& entry) {
    content[path] = entry;
    for (fs::path dir = fs::path(path).parent_path(); !dir.empty(); dir = dir.parent_path()) {
      content.try_emplace(dir.string(), Entry{'d', 0755, ""});
    }
  }

  static void linkResolver(Snapshot& content) {
    Entry& resolver = content["etc/resolv.conf"];
    if (resolver.type == 'l') return;
    content["var/run/resolv.conf"] = resolver;
    resolver = {'l', 0, "/var/run/resolv.conf"};
  }

  void keepFiles(Snapshot& content) const {
    if (it().keeps_system_files) {
      for (const std::string file : {"etc/fstab", "etc/passwd", "etc/shadow"}) {
        content[file].content = flashed_.at(file).content;
      }
      content["etc/shadow_backup"] = {'f', 0644, flashed_.at("etc/shadow").content};
      content["etc/auto.network"].mode = 0644;
    }
    if (it().has_samba && !it().is_current) {
      content["etc/samba/smb.conf"].content = flashed_.at("etc/samba/smb.conf").content;
    }
  }

  static void resetVideoWindow(Snapshot& content) {
    for (const std::string file : {"dst_height", "dst_left", "dst_top", "dst_width"}) {
      content["proc/stb/vmpeg/0/" + file].content = "00000000\n";
    }
  }

  Snapshot used_;
  Snapshot flashed_;
};

INSTANTIATE_TEST_SUITE_P(, ConfigurationRestoreTest, testing::ValuesIn(kCases),
                         [](const auto& info) { return info.param.name; });

std::vector<std::string> expectedLog(bool keeps_system_files, bool keeps_samba) {
  std::vector<std::string> lines;
  if (keeps_system_files) {
    lines.push_back("[Qor Stowline] do not restore old OE tree configuration files");
  }
  if (keeps_samba) {
    lines.push_back("[Qor Stowline] do not restore old samba configuration");
    lines.push_back("[Qor Stowline] restore installed smb.conf");
  }
  return lines;
}

void ConfigurationRestoreTest::expectRestored() {
  const Play play = receiver().play("restore", "select:configurations ok ok ok down exit");

  EXPECT_EQ(play.lines, (std::vector<Json>{menuFrame("", "restore", 0),
                                           menuFrame("select:configurations", "restore", 3),
                                           listFrame("ok", {archive_}),
                                           confirmationFrame("ok", archive_),
                                           {{"event", "gui-killed"}},
                                           {{"event", "gui-started"}},
                                           menuFrame("ok", "restore", 0),
                                           menuFrame("down", "restore", 1),
                                           closedFrame("exit")}));
  EXPECT_EQ(play.status, 0);
  EXPECT_EQ(play.errors, "");

  const bool keeps_samba = it().has_samba && !it().is_current;
  EXPECT_EQ(play.trace, configurationRestoreCommands({.archive = archivePath(),
                                                      .keeps_system_files = it().keeps_system_files,
                                                      .keeps_samba = keeps_samba,
                                                      .has_atile_hd = it().has_atile_hd,
                                                      .has_user_files = it().has_user_files,
                                                      .has_video_window = it().has_video_window}));
  EXPECT_EQ(play.log, expectedLog(it().keeps_system_files, keeps_samba));

  EXPECT_EQ(receiver().lines("/var/log/init.log"),
            (std::vector<std::string>{"current_cam.sh stop", "networking stop", "networking start",
                                      "current_cam.sh start"}));
  Snapshot restored = receiver().content();
  forget(restored, "var/log");
  Snapshot wanted = expected();
  forget(wanted, "var/log");
  EXPECT_EQ(changes(wanted, restored), std::vector<std::string>());
}

TEST_P(ConfigurationRestoreTest, ReplacesWhatTheVersionAllowsAndRestartsTheGui) {
  expectRestored();
}

/// The same of the current version, by the account that a receiver does not have.
class OrdinaryUsersRestoreTest : public ConfigurationRestoreTest {
 protected:
  Account account() const override { return Account::ordinary; }
};
INSTANTIATE_TEST_SUITE_P(, OrdinaryUsersRestoreTest, testing::Values(std::end(kCases)[-1]),
                         [](const auto& info) { return info.param.name; });

TEST_P(OrdinaryUsersRestoreTest, ReplacesTheSameAndRestartsTheGui) {
  expectRestored();
}

using ConfirmationTest = DeskTest;

TEST_F(ConfirmationTest, NewMenuShowsTheRestoredMedium) {
  receiver().play("backup", "ok down ok select:configurations ok");
  const std::string archive = namesIn(receiver().at("/media/usb/qor-stowline")).front();
  receiver().flash();
  fs::rename(receiver().at("/media/usb/qor-stowline/" + archive),
             receiver().at(inBackups(archive)));

  EXPECT_EQ(receiver().play("restore", "select:configurations ok ok green").last(),
            menuFrame("green", "restore", 0, "/media/usb"));
}

}  // namespace
}  // namespace command_test
