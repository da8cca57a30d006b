#include <cstdlib>

#include "tests/desk/tree/TreeFixture.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

std::string searchPath() {
  const char* path = std::getenv("PATH");
  return path ? path : "";
}

/// Each refusal is one whole line that says what is wrong and what to do, and nothing is touched.
class Refusal : public Directory {
 protected:
  ~Refusal() override { setenv("PATH", path_.c_str(), 1); }

  /// Lets the machine have only the given programs.
  void leaveOnly(const std::map<std::string, std::string>& programs) {
    fs::create_directory(dir_ / "bin");
    for (const auto& [name, text] : programs) {
      writeFile(dir_ / "bin" / name, text);
      fs::permissions(dir_ / "bin" / name, fs::perms(0755));
    }
    setenv("PATH", (dir_ / "bin").c_str(), 1);
  }

  std::string newLine(const std::string& model = "solo2") {
    return refusal([&] { layOut(place_, model); });
  }
  std::string flashLine() {
    return refusal([&] { flash(place_); });
  }
  std::string useLine() {
    return refusal([&] { requireTree(place_); });
  }

  fs::path place_ = dir_ / "tree";
  const std::string path_ = searchPath();
};

const char* const kRoot =
    "'/' is this machine's own root directory: name one that is for the receiver tree";

TEST_F(Refusal, UnknownModelIsAnsweredWithTheKnownOnes) {
  EXPECT_EQ(newLine("trio"),
            "no model 'trio': name one of solo duo uno ultimo solo2 duo2 solose zero");
  EXPECT_EQ(newLine(""), "no model '': name one of solo duo uno ultimo solo2 duo2 solose zero");
  EXPECT_FALSE(fs::exists(place_));
}

TEST_F(Refusal, RootDirectoryIsNoReceiverTree) {
  place_ = "/";
  EXPECT_EQ(newLine(), kRoot);
  EXPECT_EQ(flashLine(), kRoot);
  EXPECT_EQ(useLine(), kRoot);
}

TEST_F(Refusal, RootDirectoryIsFoundBehindLinksAndDots) {
  fs::create_directory_symlink("/", dir_ / "link");
  for (const fs::path& path : {dir_ / "link", dir_ / "link/usr/..", fs::path("/usr/../")}) {
    place_ = path;
    const std::string line =
        inQuotes(path) +
        " is this machine's own root directory: name one that is for the receiver tree";
    EXPECT_EQ(newLine(), line);
    EXPECT_EQ(flashLine(), line);
    EXPECT_EQ(useLine(), line);
  }
}

TEST_F(Refusal, NewNeedsANewOrEmptyDirectory) {
  writeFile(place_ / "letter.txt", "mine");
  EXPECT_EQ(newLine(), inQuotes(place_) + " is there already: name a new or an empty directory");
  EXPECT_EQ(snapshot(dir_).size(), 2U);

  place_ = place_ / "letter.txt";
  EXPECT_EQ(newLine(), inQuotes(place_) + " is there already: name a new or an empty directory");
  EXPECT_EQ(read(place_), "mine");
}

TEST_F(Refusal, ForeignDirectoryIsNeitherFlashedNorUsed) {
  const std::string line = inQuotes(place_) +
                           " is not a receiver tree: 'stowline receiver new DIR' lays one out in a "
                           "new or an empty directory";
  EXPECT_EQ(flashLine(), line) << "missing";
  EXPECT_EQ(useLine(), line) << "missing";

  writeFile(place_ / "letter.txt", "mine");
  const Snapshot before = snapshot(dir_);
  EXPECT_EQ(flashLine(), line) << "unmarked";
  EXPECT_EQ(useLine(), line) << "unmarked";
  EXPECT_EQ(snapshot(dir_), before);
}

TEST_F(Refusal, OnlyAMarkerOfOurOwnCounts) {
  const std::string line = inQuotes(place_) +
                           " is not a receiver tree: 'stowline receiver new DIR' lays one out in a "
                           "new or an empty directory";
  for (const char* marker : {"", "solo2\n", "stowline receiver tree 2\nsolo2\n",
                             "stowline receiver tree 1\n", "stowline receiver tree 1\ntrio\n"}) {
    writeFile(place_ / ".stowline-receiver", marker);
    EXPECT_EQ(flashLine(), line) << marker;
    EXPECT_EQ(useLine(), line) << marker;
    EXPECT_EQ(read(place_ / ".stowline-receiver"), marker);
  }
}

TEST_F(Refusal, LinkIsNoMarker) {
  layOut(dir_ / "other", "uno");
  fs::create_directory(place_);
  fs::create_symlink(dir_ / "other/.stowline-receiver", place_ / ".stowline-receiver");
  EXPECT_EQ(flashLine(), inQuotes(place_) +
                             " is not a receiver tree: 'stowline receiver new DIR' lays one out in "
                             "a new or an empty directory");
}

TEST_F(Refusal, TreeWithoutItsToolsIsNotUsed) {
  layOut(place_, "solo2");
  for (const char* tool :
       {"bin/busybox", "bin/sh", "bin/toybox", "bin/tar", "usr/bin/opkg", "usr/bin/killall"}) {
    fs::rename(place_ / tool, dir_ / "taken away");
    EXPECT_EQ(useLine(), inQuotes(place_) + " has no /" + tool +
                             ": put the tree back in order with 'stowline receiver flash " +
                             place_.string() + "'");
    fs::rename(dir_ / "taken away", place_ / tool);
    EXPECT_EQ(useLine(), "no refusal");
  }
}

TEST_F(Refusal, MachineWithoutBusyboxIsToldWhatToInstall) {
  leaveOnly({});
  EXPECT_EQ(newLine(),
            "no busybox on this machine; install the packages busybox and toybox "
            "(scripts/bootstrap does)");
  EXPECT_FALSE(fs::exists(place_));
}

TEST_F(Refusal, MachineWithoutToyboxIsToldWhatToInstall) {
  leaveOnly({{"busybox", "#!/bin/sh\nexit 127\n"}});
  EXPECT_EQ(newLine(),
            "no toybox on this machine; install the packages busybox and toybox "
            "(scripts/bootstrap does)");
  EXPECT_FALSE(fs::exists(place_));
}

TEST_F(Refusal, ShellThatPrefersItsOwnToolsIsNotUsed) {
  leaveOnly({{"busybox", "#!/bin/sh\necho 'killall: whom?'\nexit 1\n"}});
  EXPECT_EQ(newLine(), (dir_ / "bin/busybox").string() +
                           " is no use: its shell prefers its own tools to those of the tree; "
                           "install the package busybox in place of busybox-static");
  EXPECT_FALSE(fs::exists(place_));
}

TEST_F(Refusal, TreeIsNotFlashedWhereTheToolsForItAreMissing) {
  layOut(place_, "solo2");
  const Snapshot before = snapshot(place_);
  leaveOnly({});
  EXPECT_EQ(flashLine(),
            "no busybox on this machine; install the packages busybox and toybox "
            "(scripts/bootstrap does)");
  EXPECT_EQ(snapshot(place_), before);
}

TEST_F(Refusal, ForbiddenPlaceIsNamedWithTheSystemsReason) {
  if (geteuid() == 0) GTEST_SKIP() << "root may write anywhere";
  fs::permissions(dir_, fs::perms(0555));
  EXPECT_EQ(newLine(), "cannot lay out a receiver tree in '" + place_.string() + "': '" +
                           place_.string() + "': Permission denied");
  fs::permissions(dir_, fs::perms(0755));
}

}  // namespace
}  // namespace desk
