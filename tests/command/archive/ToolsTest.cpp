#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/archive/Archives.h"

namespace archive_test {
namespace {

const std::string kLongName(180, 'n');

const Lines kNotes = {"note: set-user-ID or set-group-ID: etc/CCcam.cfg"};

/// What a receiver's directories may hold, with names of every kind.
class Tree {
 public:
  Tree() {
    directory_.makeDirectory("etc/enigma2/empty");
    directory_.write("etc/hostname", "receiver\n");
    directory_.write("etc/enigma2/" + kLongName, "long\n");
    directory_.write("etc/enigma2/caf\xe9", "Latin-1\n");
    directory_.write("etc/enigma2/caf\xc3\xa9", "composed\n");
    directory_.write("etc/enigma2/cafe\xcc\x81", "decomposed\n");
    directory_.write("etc/CCcam.cfg", "linked\n");
    directory_.makeLink("etc/enigma2/link", "../hostname");
    directory_.makeLink("etc/enigma2/long", kLongName);
    shell(
        "cd " + directory_.path() +
        " && ln etc/CCcam.cfg etc/CCcam.old && chmod 600 etc/hostname && chmod 4750 etc/CCcam.cfg "
        "&& chmod 755 etc/enigma2/empty && find etc -exec touch -h -d @1700000000 {} +");
  }

  /// Returns the archive that the tool makes of the names.
  std::string archive(const std::string& tool, const std::string& names) const {
    // The pipe is open as long as the tool's compressor runs, which one of the tools leaves behind.
    shell("cd " + directory_.path() + " && " + tool + " - " + names + " | cat >archive");
    return directory_.read("archive");
  }

 private:
  support::TemporaryDirectory directory_;
};

class Tools : public testing::TestWithParam<const char*> {
 protected:
  Tree tree_;
};

TEST_P(Tools, MakeArchivesThatAreReadAsTheyWereMade) {
  const std::string owner = std::to_string(getuid()) + ":" + std::to_string(getgid());
  const auto line = [&owner](const std::string& what, const std::string& rest) {
    return what + " " + owner + " " + rest;
  };
  Lines expected = {
      line("file 600", "9 1700000000 etc/hostname: receiver\n"),
      line("file 4750", "7 1700000000 etc/CCcam.cfg: linked\n"),
      line("hard link 4750", "0 1700000000 etc/CCcam.old -> etc/CCcam.cfg: "),
      line("directory 755", "0 1700000000 etc/enigma2/empty/: "),
      line("file 644", "5 1700000000 etc/enigma2/" + kLongName + ": long\n"),
      line("file 644", "8 1700000000 etc/enigma2/caf\xe9: Latin-1\n"),
      line("file 644", "9 1700000000 etc/enigma2/caf\xc3\xa9: composed\n"),
      line("file 644", "11 1700000000 etc/enigma2/cafe\xcc\x81: decomposed\n"),
      line("symbolic link 777", "0 1700000000 etc/enigma2/link -> ../hostname: "),
      line("symbolic link 777", "0 1700000000 etc/enigma2/long -> " + kLongName + ": ")};
  const ArchiveFile file(
      tree_.archive(GetParam(), "etc/hostname etc/CCcam.cfg etc/CCcam.old etc/enigma2/*"));
  Lines members = file.listed();
  std::ranges::sort(members);
  std::ranges::sort(expected);
  EXPECT_EQ(members, expected);
  EXPECT_EQ(file.verdict(), kNotes);
}

TEST_P(Tools, MakeSoundArchivesOfAbsolutePaths) {
  const ArchiveFile file(tree_.archive(GetParam(), "/etc/hostname 2>/dev/null"));
  tarball::Reader reader(file.path());
  ASSERT_EQ(reader.next().value().path, "etc/hostname");
  EXPECT_EQ(file.verdict(), Lines{});
}

INSTANTIATE_TEST_SUITE_P(Every, Tools,
                         testing::Values("tar czf", "busybox tar czf", "toybox tar czf"),
                         [](const auto& info) {
                           std::string name = info.param;
                           std::erase_if(name, [](unsigned char c) { return !std::isalnum(c); });
                           return name;
                         });

TEST(EmptyArchive, IsFoundToHaveNoMember) {
  EXPECT_EQ(ArchiveFile(Tree().archive("tar czf", "-T /dev/null")).verdict(), Lines{"no member"});
}

}  // namespace
}  // namespace archive_test
