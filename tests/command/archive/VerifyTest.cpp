#include <gtest/gtest.h>

#include <climits>
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

std::string file(const std::string& name) {
  return block({.name = name});
}

std::string named(const std::string& path) {
  return extended(record("path", path)) + file("keys/short");
}

constexpr const char* kElsewhere = "not a place of this backup: ";
constexpr const char* kLeadsOut = "link that leads out of the tree: ";
constexpr const char* kHardElsewhere = "hard link to another place than this backup's: ";
constexpr const char* kThrough = "path through a link of the archive: ";
constexpr const char* kInPlace = "in the place of a link of the archive: ";

Lines lines(const std::string& what, const std::string& member) {
  return {what + member};
}

class Verdicts : public testing::TestWithParam<VerdictCase> {};

TEST_P(Verdicts, NameWhatAMemberWouldDo) {
  EXPECT_EQ(ArchiveFile(gzipped(GetParam().members + kEndMark)).verdict(), GetParam().verdict);
}

const std::string kTooLong = "keys/" + std::string(PATH_MAX, 'x');

std::vector<VerdictCase> verdictCases() {
  return {
      {"Nothing", "", {"no member"}},
      {"SoundMembers", file("etc/hostname") + file("keys") + file("keys/a/b"), {}},
      {"EmptyPath", file(""), {"empty path", "not a place of this backup"}},
      {"AbsolutePath", file("/etc/hostname"), lines("absolute path: ", "/etc/hostname")},
      {"ParentDirectory",
       file("keys/../etc/shadow"),
       {"\"..\" in the path: keys/../etc/shadow", kElsewhere + std::string("keys/../etc/shadow")}},
      {"LongPath", named(kTooLong),
       lines("path longer than any file's: ", kTooLong.substr(0, PATH_MAX) + "...")},
      {"LineBreak", named("keys/a\nb\x1b"), lines("line break in the path: ", "keys/a\\x0ab\\x1b")},
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
      {"LinkWithoutTarget", link("keys/a", ""), lines("link without a target: ", "keys/a")},
      {"LinkWhoseTargetIsInAnExtendedHeaderOnly",
       extended(record("linkpath", "/etc/../..")) + link("keys/a", ""),
       lines("link without a target: ", "keys/a")},
      {"LinkAboveTheRootByAnExtendedHeader",
       extended(record("linkpath", "/etc/../..")) + link("keys/a", "b"),
       lines(kLeadsOut, "keys/a")},
      {"HardLinkWithoutTarget", hardLink("keys/a", ""),
       lines("device, FIFO or other special file: ", "keys/a")},
      {"HardLink", file("keys/a") + hardLink("keys/b", "keys/a"), {}},
      {"HardLinkToALaterFile", hardLink("keys/b", "keys/a") + file("keys/a"),
       lines("hard link to no earlier file of the archive: ", "keys/b")},
      {"HardLinkToAHardLink",
       file("keys/a") + hardLink("keys/b", "keys/a") + hardLink("keys/c", "keys/b"),
       {}},
      {"AbsoluteHardLink", hardLink("keys/a", "/keys/b"), lines(kHardElsewhere, "keys/a")},
      {"HardLinkToAnotherPlace", hardLink("keys/a", "etc/shadow"), lines(kHardElsewhere, "keys/a")},
      {"HardLinkWithParentDirectory", hardLink("keys/a", "keys/../etc/shadow"),
       lines(kHardElsewhere, "keys/a")},
      {"ThroughALink", link("keys/a", "/etc") + file("keys/a/shadow"),
       lines(kThrough, "keys/a/shadow")},
      {"ThroughALinkFurtherUp", link("keys/a", "/") + file("./keys//a/etc/shadow"),
       lines(kThrough, "./keys//a/etc/shadow")},
      {"BesideALink", link("keys/a", "/etc") + file("keys/ab/c") + file("keys/b"), {}},
      {"BeforeALink", file("keys/a/b") + link("keys/a", "/etc"), {}},
      {"HardLinkThroughALink", link("keys/a", "/etc") + hardLink("keys/b", "keys/a/shadow"),
       lines(kThrough, "keys/b")},
      {"ThroughAHardLinkToALink",
       link("keys/a", "/etc") + hardLink("keys/b", "keys/a") + file("keys/b/shadow"),
       lines(kThrough, "keys/b/shadow")},
      {"OverALink", link("keys/a", "/etc/shadow") + file("keys/a"), lines(kInPlace, "keys/a")},
      {"LinkTwice", link("keys/a", "/etc") + link("keys/a", "/etc"), {}},
      {"LeftOut",
       file("etc/enigma2/a.tv") + file("keys/old/x"),
       {"note: left out by this backup: etc/enigma2/a.tv",
        "note: left out by this backup: keys/old/x"}},
  };
}

INSTANTIATE_TEST_SUITE_P(Every, Verdicts, testing::ValuesIn(verdictCases()),
                         [](const auto& info) { return info.param.name; });

TEST(Verdict, CountsMembersAndBytes) {
  const ArchiveFile archive(gzipped(member({.name = "keys/a"}, "key") + file("keys/b") + kEndMark));
  tarball::Reader reader(archive.path());
  const tarball::Verdict verdict = tarball::verify(reader, places());
  EXPECT_TRUE(verdict.sound());
  EXPECT_EQ(verdict.members, 2U);
  EXPECT_EQ(verdict.unpacked, 3U * 512 + 1024);
}

TEST(Verdict, IsSoundInSpiteOfNotes) {
  const ArchiveFile archive(gzipped(file("etc/enigma2/a.tv") + kEndMark));
  tarball::Reader reader(archive.path());
  const tarball::Verdict verdict = tarball::verify(reader, places());
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
  Lines expected(100, "not a place of this backup: etc/passwd");
  expected.emplace_back("23 more");
  const std::string members = repeated(file("etc/passwd"), 123);
  EXPECT_EQ(ArchiveFile(gzipped(members + kEndMark)).verdict(), expected);
}

TEST(Verdict, NamesTheFirstHundredNotesAndCountsTheRest) {
  Lines expected(100, "note: left out by this backup: keys/old");
  expected.emplace_back("note: 23 more");
  const std::string members = repeated(file("keys/old"), 123);
  EXPECT_EQ(ArchiveFile(gzipped(members + kEndMark)).verdict(), expected);
}

TEST(Verdict, NamesDamageBehindAnyNumberOfFindings) {
  const std::string packed = gzipped(repeated(file("etc/passwd"), 123));
  Lines expected(99, "not a place of this backup: etc/passwd");
  expected.push_back("the tar archive is cut off (byte " + std::to_string(packed.size()) +
                     " of the file, byte 62976 unpacked, last member etc/passwd)");
  expected.emplace_back("24 more");
  EXPECT_EQ(ArchiveFile(packed).verdict(), expected);
}

}  // namespace
}  // namespace archive_test
