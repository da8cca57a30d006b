#include <filesystem>
#include <set>
#include <string>

#include "tests/command/ShowTest.h"
#include "tests/support/command/Expected.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

class ShowRestoreTest : public ShowTest {};

/// Returns what `restore` says will differ, as changes() tells it of two snapshots.
std::set<std::string> saidOf(const Json& restore) {
  std::set<std::string> lines;
  for (const Json& change : restore["changes"]) {
    const std::string action = change["action"];
    const std::string path = change["path"].get<std::string>().substr(1);
    if (action == "add") lines.insert("+ " + path);
    if (action == "change" || (action == "keep" && change["old"] != change["new"])) {
      lines.insert("~ " + path);
    }
    if (!change["old"].is_null() && change["new"].is_null()) lines.insert("- " + path);
  }
  return lines;
}

/// Returns what differs between two snapshots, without directories that new files need and
/// without the logs.
std::set<std::string> doneBetween(Snapshot before, Snapshot after) {
  forget(before, "var/log");
  forget(after, "var/log");
  std::set<std::string> lines;
  for (const std::string& line : changes(before, after)) {
    const std::string path = line.substr(2);
    if (line[0] != '+' || after.at(path).type != 'd') lines.insert(line);
  }
  return lines;
}

/// What commands other than those that unpack and delete do to the lines: the spinner's pictures
/// that the archive does not bring go, the resolver file becomes a link, the video window full.
void addWhatOtherCommandsDo(std::set<std::string>& lines, const Snapshot& before) {
  for (const auto& [path, entry] : before) {
    if (path.starts_with("usr/share/enigma2/skin_default/spinner/") &&
        !lines.contains("~ " + path)) {
      lines.insert("- " + path);
    }
  }
  lines.erase("~ etc/resolv.conf");
  lines.insert("~ var/run/resolv.conf");
  for (const char* file : {"dst_height", "dst_left", "dst_top", "dst_width"}) {
    if (before.at(std::string("proc/stb/vmpeg/0/") + file).content != "00000000\n") {
      lines.insert(std::string("~ proc/stb/vmpeg/0/") + file);
    }
  }
}

TEST_F(ShowRestoreTest, SettingsRestoreDoesWhatWasShownAndShowingDoesNothing) {
  receiver().write("/etc/tuxbox/config/other", "stays\n");
  const Snapshot before = receiver().content();
  const Json restore = restoreOf(settings_);
  const Outcome differences = showHere(settings_, {"--diff"});
  EXPECT_EQ(changes(before, receiver().content()), Lines());
  EXPECT_EQ(pathsOf(restore, "delete"), Lines{"/etc/enigma2/userbouquet.later.tv"});
  const fs::path patched = receiver().outside() / "patched";
  fs::create_directory(patched);
  fs::copy(receiver().at("/etc"), patched / "etc",
           fs::copy_options::recursive | fs::copy_options::copy_symlinks);

  const Play play = receiver().play("restore", "select:channel ok ok timeout");

  EXPECT_EQ(restore["commands"], Json(play.trace));
  EXPECT_EQ(doneBetween(before, receiver().content()), saidOf(restore));
  EXPECT_FALSE(saidOf(restore).empty());
  EXPECT_EQ(pathsOf(restoreOf(settings_), "same").size(), membersOf(pathOf(settings_)).size());

  // What is shown as differences makes the same of the files.
  EXPECT_EQ(differences.status, 0) << differences.errors;
  const std::string diff = receiver().outside() / "diff";
  writeFile(diff, differences.output.substr(differences.output.find("\n--- /") + 1));
  const Outcome patch = run({"patch", "-s", "-p1", "-d", patched, "-i", diff});
  EXPECT_EQ(patch.status, 0) << patch.output << patch.errors;
  for (const char* directory : {"etc/enigma2", "etc/tuxbox"}) {
    const fs::path restored = receiver().tree() / directory;
    EXPECT_EQ(changes(snapshot(restored), snapshot(patched / directory)), Lines());
  }
}

TEST_F(ShowRestoreTest, ConfigurationRestoreDoesWhatWasShownAndShowingDoesNothing) {
  const Snapshot before = receiver().content();
  const Json restore = restoreOf(configuration_);
  EXPECT_EQ(changes(before, receiver().content()), Lines());
  EXPECT_EQ(pathsOf(restore, "removed again"), Lines{"/.qws/share/data/Arora/bookmarks.xbel"});
  EXPECT_EQ(pathsOf(restore, "delete"),
            (Lines{"/.qws", "/.qws/share", "/.qws/share/data", "/.qws/share/data/Arora",
                   "/.qws/share/data/Arora/history"}));
  EXPECT_EQ(pathsOf(restore, "keep"), Lines());

  const Play play = receiver().play("restore", "select:configurations ok ok ok exit");

  EXPECT_EQ(restore["commands"], Json(play.trace));
  std::set<std::string> said = saidOf(restore);
  addWhatOtherCommandsDo(said, before);
  EXPECT_EQ(doneBetween(before, receiver().content()), said);
}

TEST_F(ShowRestoreTest, OldConfigurationRestoreDoesWhatWasShown) {
  const std::string name = "configuration_20240305_07-04_solo2.tar.gz";
  fs::rename(pathOf(configuration_), pathOf(name));
  fs::remove(receiver().at("/etc/fstab"));
  fs::permissions(receiver().at("/etc/shadow"), fs::perms(0600));
  const Snapshot before = receiver().content();
  const Json restore = restoreOf(name);

  const Play play = receiver().play("restore", "select:configurations ok ok ok exit");

  EXPECT_EQ(restore["commands"], Json(play.trace));
  std::set<std::string> said = saidOf(restore);
  EXPECT_TRUE(said.contains("+ etc/fstab"));
  addWhatOtherCommandsDo(said, before);
  said.insert("+ etc/shadow_backup");  // which the restore leaves behind
  EXPECT_EQ(doneBetween(before, receiver().content()), said);
  EXPECT_EQ(receiver().read("/etc/fstab"), "");
}

}  // namespace
}  // namespace command_test
