#include <gtest/gtest.h>

#include <ostream>

#include "command/preview/Preview.h"
#include "tests/command/preview/Told.h"
#include "tests/support/archive/TarWriter.h"

namespace preview {

/// Shows a difference as it is when a test fails.
void PrintTo(const Difference& difference, std::ostream* out) {
  *out << difference.path << ": " << difference.reason << "\n" << difference.text;
}

}  // namespace preview

namespace preview_test {
namespace {

using archive_test::member;

/// A receiver, and an archive that is restored on it.
struct DifferencesTest : testing::Test {
  DifferencesTest() {
    files.makeReceiver();
    files.makeDirectory("/etc/enigma2");
  }

  /// Restores the settings archive of these members. A member that cannot be compressed makes it
  /// large enough for the module.
  std::vector<preview::Difference> found(const std::string& members) const {
    const std::string archive = kBackups + "settings_1_solo2.tar.gz";
    files.write(archive, archive_test::gzipped(members + kFiller + archive_test::kEndMark, 0));
    preview::Preview preview =
        preview::look({files.at(archive), files.path(), true}, [](const auto&) {});
    std::vector<preview::Difference> differences;
    preview.restore->differences->show(preview.restore->changes,
                                       [&](const auto& found) { differences.push_back(found); });
    EXPECT_EQ(preview.restore->rehearsal.refusal, "");
    EXPECT_EQ(differences.at(differences.size() - deleted_ - 1).path, "/filler");
    differences.erase(differences.end() - static_cast<std::ptrdiff_t>(deleted_) - 1);
    return differences;
  }

  static inline const std::string kFiller = member({.name = "filler"}, std::string(12000, '\0'));
  Files files;
  std::size_t deleted_ = 0;  ///< differences of deleted files, which come last
};

using Differences = std::vector<preview::Difference>;

TEST_F(DifferencesTest, AreThoseOfTextsThatAreBroughtChangedOrDeleted) {
  files.write("/etc/hostname", "old\n");
  files.write("/etc/same", "same\n");
  files.write("/etc/enigma2/x.tv", "gone\n");
  files.write("/etc/mode", "mode\n", 0755);
  deleted_ = 1;
  EXPECT_EQ(
      found(member({.name = "etc/hostname"}, "new\n") + member({.name = "etc/same"}, "same\n") +
            member({.name = "etc/mode"}, "mode\n") + member({.name = "etc/a b"}, "\xff") +
            member({.name = "etc/dir", .type = '5'})),
      (Differences{
          {"/etc/hostname", "--- /etc/hostname\n+++ /etc/hostname\n@@ -1,1 +1,1 @@\n-old\n+new\n",
           ""},
          {"/etc/a b",
           "--- /dev/null\n+++ /etc/a b\t\n@@ -0,0 +1,1 @@\n+\xff\n\\ No newline at end of file\n",
           ""},
          {"/etc/enigma2/x.tv", "--- /etc/enigma2/x.tv\n+++ /dev/null\n@@ -1,1 +0,0 @@\n-gone\n",
           ""},
      }));
}

TEST_F(DifferencesTest, WhatIsNotShownIsNamedWithTheReason) {
  const std::string most(preview::kLargestText, '\n');
  files.write("/etc/binary", std::string("\0", 1));
  files.makeLink("/etc/link", "hosts");
  files.write("/etc/large", most + "\n");
  files.write("/etc/lines", "1\n" + most.substr(2));
  EXPECT_EQ(
      found(member({.name = "etc/binary"}, "text\n") + member({.name = "etc/link"}, "file\n") +
            member({.name = "etc/large"}, "small\n") + member({.name = "etc/larger"}, most + "\n") +
            member({.name = "etc/lines"}, "2\n3\n" + std::string(20001, '\r') + "\n" +
                                              archive_test::repeated("\r\n", 20000))),
      (Differences{
          {"/etc/binary", "", "not a text"},
          {"/etc/link", "", "not a file on both sides"},
          {"/etc/large", "", "larger than 256 KiB"},
          {"/etc/larger", "", "larger than 256 KiB"},
          {"/etc/lines", "", "too many lines to compare"},
      }));
}

TEST_F(DifferencesTest, LaterMemberOfTheSamePathIsTheOneCompared) {
  files.write("/etc/hostname", "old\n");
  EXPECT_EQ(found(member({.name = "etc/hostname"}, "first\n") +
                  member({.name = "etc/hostname"}, "new\n")),
            (Differences{
                {"/etc/hostname",
                 "--- /etc/hostname\n+++ /etc/hostname\n@@ -1,1 +1,1 @@\n-old\n+new\n", ""},
            }));
}

TEST_F(DifferencesTest, StopWhenTheyHaveTakenTheirRoom) {
  std::string members;
  for (int number = 0; number < 70; ++number) {
    members += member({.name = "etc/" + std::to_string(number)}, std::string(250000, 'x'));
  }
  const Differences differences = found(members);
  ASSERT_EQ(differences.size(), 70U);
  for (std::size_t at = 0; at < differences.size(); ++at) {
    EXPECT_EQ(differences[at].reason, at < 68 ? "" : "too much to show after the others") << at;
  }
}

}  // namespace
}  // namespace preview_test
