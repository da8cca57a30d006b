#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "command/archive/Verify.h"
#include "tests/support/archive/Archives.h"
#include "tests/support/archive/TarWriter.h"

namespace archive_test {
namespace {

struct VerdictCase {
  std::string name;
  std::string members;
  Lines verdict;
};

std::string link(const std::string& name, const std::string& target) {
  return block({.name = name, .type = '2', .link = target});
}

std::string hardLink(const std::string& name, const std::string& target) {
  return block({.name = name, .type = '1', .link = target});
}

std::string directory(const std::string& name) {
  return block({.name = name, .type = '5', .mode = 0755});
}

std::string file(const std::string& name) {
  return block({.name = name});
}

constexpr const char* kElsewhere = "not a place of this backup: ";
constexpr const char* kLeadsOut = "link that leads out of the tree: ";
constexpr const char* kHardElsewhere = "hard link to another place than this backup's: ";
constexpr const char* kNoFile = "hard link to no earlier file of the archive: ";
constexpr const char* kBelow = "below a file or link of the archive: ";
constexpr const char* kTwice = "in the archive more than once: ";

Lines lines(const std::string& what, const std::string& member) {
  return {what + member};
}

const std::string kTooLongName(256, 'x');

const std::string kDeepPath = repeated("keys/", 101) + "a";

class Verdicts : public testing::TestWithParam<VerdictCase> {};

TEST_P(Verdicts, NameWhatAMemberWouldDo) {
  EXPECT_EQ(ArchiveFile(gzipped(GetParam().members + kEndMark)).verdict(), GetParam().verdict);
}

std::vector<VerdictCase> verdictCases() {
  return {
      {"Nothing", "", {"no member"}},
      {"SoundMembers", file("etc/hostname") + directory("keys") + file("keys/a/b"), {}},
      {"AbsolutePath", file("/etc/hostname"), lines("absolute path: ", "/etc/hostname")},
      {"ParentDirectory",
       file("keys/../etc/shadow"),
       {"\"..\" in the path: keys/../etc/shadow", kElsewhere + std::string("keys/../etc/shadow")}},
      {"LineBreak", file("keys/a\nb\x1b"),
       lines("line break in the path or the link's target: ", "keys/a\\x0ab\\x1b")},
      {"LineBreakInATarget", link("keys/a", "b\nbegin 644 c\n"),
       lines("line break in the path or the link's target: ", "keys/a")},
      {"TimeBefore1970", changed(file("keys/a"), 136, std::string(12, '\xff')),
       lines("time before 1970: ", "keys/a")},
      {"SetGroupIdDirectory", block({.name = "keys/a/", .type = '5', .mode = 02755}),
       lines("set-user-ID or set-group-ID directory: ", "keys/a/")},
      {"CharacterDevice", block({.name = "keys/a", .type = '3'}),
       lines("device, FIFO or other special file: ", "keys/a")},
      {"BlockDevice", block({.name = "keys/a", .type = '4'}),
       lines("device, FIFO or other special file: ", "keys/a")},
      {"Fifo", block({.name = "keys/a", .type = '6'}),
       lines("device, FIFO or other special file: ", "keys/a")},
      {"OtherPlace", file("etc/passwd"), lines(kElsewhere, "etc/passwd")},
      {"DirectoryAboveThePlaces", file("etc"), lines(kElsewhere, "etc")},
      {"LinkWithinTheTree", link("keys/a", "../etc/hostname") + link("keys/b", "/media/hdd"), {}},
      {"LinkToTheRoot", link("keys/a/b", "../..") + link("keys/b", "/"), {}},
      {"LinkAboveTheRoot", link("keys/a/b", "../../.."), lines(kLeadsOut, "keys/a/b")},
      {"LinkAboveTheRootAndBack", link("keys/a", "../../etc"), lines(kLeadsOut, "keys/a")},
      {"AbsoluteLinkAboveTheRoot", link("keys/a", "/etc/../.."), lines(kLeadsOut, "keys/a")},
      {"HardLink", file("keys/a") + hardLink("keys/b", "keys/a"), {}},
      {"HardLinkToALaterFile", hardLink("keys/b", "keys/a") + file("keys/a"),
       lines(kNoFile, "keys/b")},
      {"HardLinkToItself", hardLink("keys/a", "keys/a"), lines(kNoFile, "keys/a")},
      {"HardLinkToALink", link("keys/a", "x") + hardLink("keys/b", "keys/a"),
       lines(kNoFile, "keys/b")},
      {"HardLinkToADirectory", directory("keys/a") + hardLink("keys/b", "keys/a"),
       lines(kNoFile, "keys/b")},
      {"HardLinkWithAnotherMode",
       file("keys/a") + block({.name = "keys/b", .type = '1', .mode = 0600, .link = "keys/a"}),
       lines("hard link with another mode or owner than its file: ", "keys/b")},
      {"HardLinkWithAnotherOwner",
       file("keys/a") + changed(hardLink("keys/b", "keys/a"), 108, "0001750"),
       lines("hard link with another mode or owner than its file: ", "keys/b")},
      {"HardLinkToAHardLink",
       file("keys/a") + hardLink("keys/b", "keys/a") + hardLink("keys/c", "keys/b"),
       {}},
      {"AbsoluteHardLink", hardLink("keys/a", "/keys/b"), lines(kHardElsewhere, "keys/a")},
      {"HardLinkToAnotherPlace", hardLink("keys/a", "etc/shadow"), lines(kHardElsewhere, "keys/a")},
      {"HardLinkWithParentDirectory", hardLink("keys/a", "keys/../etc/shadow"),
       lines(kHardElsewhere, "keys/a")},
      {"BelowALink", link("keys/a", "/etc") + file("keys/a/shadow"),
       lines(kBelow, "keys/a/shadow")},
      {"BelowALinkFurtherUp", link("keys/a", "/") + file("./keys/a/etc/shadow"),
       lines(kBelow, "keys/a/etc/shadow")},
      {"BelowAFile", file("keys/a") + file("keys/a/b"), lines(kBelow, "keys/a/b")},
      {"BelowALaterLink",
       file("keys/a/b") + link("keys/a", "/etc"),
       {"below a file or link of the archive: keys/a/b",
        "before a directory that it is in: keys/a/b"}},
      {"BeforeItsDirectory", file("keys/a/b") + directory("keys/a"),
       lines("before a directory that it is in: ", "keys/a/b")},
      {"BesideALink",
       link("keys/a", "/etc") + file("keys/ab/c") + file("keys/a-/c") + file("keys/b"),
       {}},
      {"HardLinkThroughALink", link("keys/a", "/etc") + hardLink("keys/b", "keys/a/shadow"),
       lines(kNoFile, "keys/b")},
      {"FileTwice", file("keys/a") + file("./keys/a"), lines(kTwice, "./keys/a")},
      {"FileInThePlaceOfALink", link("keys/a", "/etc/shadow") + file("keys/a"),
       lines(kTwice, "keys/a")},
      {"DirectoryTwice", directory("keys/a") + directory("keys/a/"), lines(kTwice, "keys/a/")},
      {"DeepPath", longPath(kDeepPath) + file(kDeepPath),
       lines("deeper than any file: ", kDeepPath)},
      {"LongName", longPath("keys/" + kTooLongName) + file("keys/xxx"),
       lines("name longer than any file's: ", "keys/" + kTooLongName)},
      {"SetUserId", block({.name = "keys/a", .mode = 04755}),
       lines("note: set-user-ID or set-group-ID: ", "keys/a")},
      {"SetGroupId", block({.name = "keys/a", .mode = 02755}),
       lines("note: set-user-ID or set-group-ID: ", "keys/a")},
      {"LeftOut",
       file("etc/enigma2/a.tv") + file("keys/old/x"),
       {"note: left out by this backup: etc/enigma2/a.tv",
        "note: left out by this backup: keys/old/x"}},
  };
}

INSTANTIATE_TEST_SUITE_P(Every, Verdicts, testing::ValuesIn(verdictCases()),
                         [](const auto& info) { return info.param.name; });

/// So many lines, each with its number.
Lines numbered(const std::string& text, int count) {
  Lines lines;
  for (int number = 0; number < count; ++number) lines.push_back(text + std::to_string(number));
  return lines;
}

/// So many files, each named by its number.
std::string files(const std::string& directory, int count) {
  std::string members;
  for (const std::string& name : numbered(directory, count)) members += file(name);
  return members;
}

TEST(Verdict, CountsMembersAndBytes) {
  const ArchiveFile archive(gzipped(member({.name = "keys/a"}, "key") + file("keys/b") + kEndMark));
  tarball::Reader reader(archive.path());
  const tarball::Verdict verdict = tarball::verify(reader, {.places = places()});
  EXPECT_TRUE(verdict.sound());
  EXPECT_EQ(verdict.members, 2U);
  EXPECT_EQ(verdict.unpacked, 3U * 512 + 1024);
}

/// An archive for a restore that writes etc/hostname and keys/link, and saves files to keys/saved.
Lines verdictBeforeWriting(const std::string& members) {
  tarball::Reader reader(std::make_unique<Bytes>(members + kEndMark));
  return linesOf(tarball::verify(reader, {.places = places(),
                                          .written = {"etc/hostname", "keys/link"},
                                          .linked = {"keys/link"},
                                          .reserved = {"keys/saved"}}));
}

TEST(Verdict, TakesPlainFilesThatTheRestoreWritesTo) {
  EXPECT_EQ(verdictBeforeWriting(file("etc/hostname") + file("keys/link")), Lines{});
  for (const char* target : {"../run/hostname", "/var/run/hostname", "/tmp/a"}) {
    EXPECT_EQ(verdictBeforeWriting(link("keys/link", target)), Lines{}) << target;
  }
}

TEST(Verdict, RefusesWhatTheRestoreCouldNotWriteToOrWouldWriteThrough) {
  const std::string finding = "no plain file, though the restore writes to it: ";
  for (const char* target : {"shadow", "/run/../etc/shadow", "../run/hostname"}) {
    EXPECT_EQ(verdictBeforeWriting(link("etc/hostname", target)), Lines{finding + "etc/hostname"});
  }
  EXPECT_EQ(verdictBeforeWriting(link("keys/link", "/etc/shadow")), Lines{finding + "keys/link"});
  EXPECT_EQ(verdictBeforeWriting(directory("etc/hostname/")), Lines{finding + "etc/hostname/"});
  EXPECT_EQ(verdictBeforeWriting(file("etc/hostname/a")), Lines{finding + "etc/hostname/a"});
  EXPECT_EQ(verdictBeforeWriting(file("keys/a") + hardLink("etc/hostname", "keys/a")),
            Lines{finding + "etc/hostname"});
  EXPECT_EQ(verdictBeforeWriting(file("etc/hostname") + hardLink("keys/a", "./etc/hostname")),
            Lines{"hard link to what the restore writes to: keys/a"});
}

TEST(Verdict, RefusesWhatTheRestoreUsesItself) {
  for (const char* path : {"./keys/saved", "keys/saved/a"}) {
    EXPECT_EQ(verdictBeforeWriting(file(path)),
              Lines{std::string("used by the restore itself: ") + path});
  }
}

TEST(Verdict, IsSoundInSpiteOfNotes) {
  const ArchiveFile archive(gzipped(file("etc/enigma2/a.tv") + kEndMark));
  tarball::Reader reader(archive.path());
  const tarball::Verdict verdict = tarball::verify(reader, {.places = places()});
  EXPECT_TRUE(verdict.sound());
  EXPECT_EQ(verdict.noted, 1U);
}

TEST(Verdict, EndsWithTheDamageThatEndsTheReading) {
  const std::string packed = gzipped(file("etc/passwd") + kEndMark);
  EXPECT_EQ(ArchiveFile(packed + "x").verdict(),
            (Lines{"not a place of this backup: etc/passwd",
                   "other data follow the compressed data (byte " + std::to_string(packed.size()) +
                       " of the file, byte 1536 unpacked, last member etc/passwd)"}));
}

TEST(Verdict, NamesTheFirstHundredFindingsAndCountsTheRest) {
  Lines expected = numbered("not a place of this backup: etc/", 100);
  expected.emplace_back("23 more");
  EXPECT_EQ(ArchiveFile(gzipped(files("etc/", 123) + kEndMark)).verdict(), expected);
}

TEST(Verdict, NamesTheFirstHundredNotesAndCountsTheRest) {
  Lines expected = numbered("note: left out by this backup: keys/old/", 100);
  expected.emplace_back("note: 23 more");
  EXPECT_EQ(ArchiveFile(gzipped(files("keys/old/", 123) + kEndMark)).verdict(), expected);
}

TEST(Verdict, NamesDamageBehindAnyNumberOfFindings) {
  const std::string packed = gzipped(files("etc/", 123));
  Lines expected = numbered("not a place of this backup: etc/", 99);
  expected.push_back("the tar archive is cut off (byte " + std::to_string(packed.size()) +
                     " of the file, byte 62976 unpacked, last member etc/122)");
  expected.emplace_back("24 more");
  EXPECT_EQ(ArchiveFile(packed).verdict(), expected);
}

}  // namespace
}  // namespace archive_test
