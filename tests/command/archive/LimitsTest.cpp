#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/archive/Archives.h"
#include "tests/support/archive/Measured.h"
#include "tests/support/archive/TarWriter.h"

namespace archive_test {
namespace {

constexpr long kMostMemory = 64 * 1024;  // KiB

/// An archive that is made to use up the time or the memory of whoever reads it.
struct LimitCase {
  std::string name;
  std::function<std::string()> archive;
  std::string verdict;  // what the first and only line begins with
};

std::string zeros(std::size_t size) {
  return std::string(size, '\0');
}

/// Returns gzip data that are this many bytes as a file, and unpack to 4 GiB.
std::string fourGiB() {
  return repeated(gzipped(zeros(16 * 1024 * 1024)), 256);
}

/// Returns a header that describes holes, with so many of them, in the format that tar had first.
std::string oldSparse(std::size_t extensions) {
  const std::string region(
      "00000000000\0"
      "00000000000\0",
      24);
  const std::string map = repeated(region, 4) + "\1" + "00000000000";
  const std::string extension = repeated(region, 21) + "\1" + zeros(7);
  return block({.name = "keys/sparse", .type = 'S', .tail = map}) + repeated(extension, extensions);
}

std::string newSparse(std::size_t regions) {
  const std::string map = std::to_string(regions) + "\n" + repeated("0\n0\n", regions);
  return extended(record("GNU.sparse.major", "1") + record("GNU.sparse.minor", "0") +
                  record("GNU.sparse.name", "keys/sparse") + record("GNU.sparse.realsize", "0")) +
         member({.name = "keys/sparse"}, map);
}

/// Returns an access control list that names so many users.
std::string accessList(std::size_t users) {
  std::string list;
  for (std::size_t user = 0; user < users; ++user) {
    list += "u:" + std::to_string(user) + ":r,";
  }
  return extended(record("SCHILY.acl.access", list)) + block({.name = "keys/a"});
}

std::string links(std::size_t count) {
  std::string members;
  for (std::size_t number = 0; number < count; ++number) {
    members += block({.name = "keys/" + std::to_string(number), .type = '2', .link = "a"});
  }
  return members;
}

constexpr const char* kTooLarge = "the archive unpacks to more than 1 GiB (";
constexpr const char* kHeaderTooLarge = "the header of a member is too large (";

std::vector<LimitCase> limitCases() {
  return {
      {"ContentsWithoutEnd",
       [] { return gzipped(block({.name = "keys/a", .size = 8589934591})) + fourGiB(); },
       kTooLarge},
      {"ContentsOfTheLargestSize",
       [] {
         const std::string size = "\x80" + zeros(3) + "\x7f" + std::string(7, '\xff');
         return gzipped(block({.name = "keys/a", .size_field = size})) + fourGiB();
       },
       kTooLarge},
      {"ZerosWithoutEnd", [] { return gzipped(block({.name = "keys/a"})) + fourGiB(); }, kTooLarge},
      {"MembersWithoutEnd",
       [] {
         return repeated(gzipped(repeated(block({.name = "keys/a"}), 1000)), 1000) +
                gzipped(kEndMark);
       },
       "the archive has more than 100000 members ("},
      {"PathsThatAreLongInAll",
       [] {
         const std::string name = "keys/" + std::string(1000, 'p');
         const std::string one =
             member({.name = "././@LongLink", .type = 'L'}, name) + block({.name = "keys/a"});
         return gzipped(repeated(one, 17000) + kEndMark);
       },
       "the members' paths take more than 16 MiB ("},
      {"LongName",
       [] {
         return gzipped(member({.name = "././@LongLink", .type = 'L'}, std::string(900000, 'n')) +
                        block({.name = "keys/a"}) + kEndMark);
       },
       kHeaderTooLarge},
      {"ExtendedHeader",
       [] {
         return gzipped(extended(repeated(record("SCHILY.xattr.a", ""), 40000)) +
                        block({.name = "keys/a"}) + kEndMark);
       },
       kHeaderTooLarge},
      {"ExtendedHeadersInARow",
       [] { return gzipped(repeated(extended(record("comment", "c")), 1000) + kEndMark); },
       "the header of a member is damaged ("},
      {"HolesInTheOldFormat", [] { return gzipped(oldSparse(100000) + kEndMark); },
       kHeaderTooLarge},
      {"HolesInTheNewFormat", [] { return gzipped(newSparse(1000000) + kEndMark); },
       kHeaderTooLarge},
      {"AccessList", [] { return gzipped(accessList(70000) + kEndMark); }, kHeaderTooLarge},
      {"AccessListsJustSmallEnough",
       [] { return repeated(gzipped(accessList(5500)), 300) + gzipped(kEndMark); },
       "the headers of the members are too large ("},
      {"LinksWithoutEnd", [] { return gzipped(links(60000) + kEndMark); },
       "more links than can be remembered: "},
  };
}

class Limits : public testing::TestWithParam<LimitCase> {};

TEST_P(Limits, KeepMemoryAndTimeSmall) {
  const ArchiveFile file(GetParam().archive());
  const Measured outcome = measured([&] { return file.verdict().front(); });
  EXPECT_EQ(outcome.result.substr(0, GetParam().verdict.size()), GetParam().verdict);
  if (!canMeasureMemory()) GTEST_SKIP() << "the address sanitizer keeps what is freed";
  EXPECT_LT(outcome.peak, kMostMemory);
  RecordProperty("peak_kib", std::to_string(outcome.peak));
}

INSTANTIATE_TEST_SUITE_P(Every, Limits, testing::ValuesIn(limitCases()),
                         [](const auto& info) { return info.param.name; });

TEST(Limits, LeaveRoomForAHundredThousandMembers) {
  const std::string some = gzipped(repeated(block({.name = "keys/a"}), 1000));
  const ArchiveFile file(repeated(some, 100) + gzipped(kEndMark));
  tarball::Reader reader(file.path());
  const tarball::Verdict verdict = tarball::verify(reader, places());
  EXPECT_TRUE(verdict.sound());
  EXPECT_EQ(verdict.members, 100000U);
}

TEST(Limits, LeaveRoomForTheLongestNames) {
  const std::string path = "keys/" + std::string(4000, 'p');
  const std::string target(4000, 't');
  const std::string tar = member({.name = "././@LongLink", .type = 'L'}, path + '\0') +
                          member({.name = "././@LongLink", .type = 'K'}, target + '\0') +
                          block({.name = "short", .type = '2', .link = "short"}) +
                          extended(record("path", path) + record("linkpath", target)) +
                          block({.name = "short", .type = '2', .link = "short"}) + kEndMark;
  const std::string line = "symbolic link 644 0:0 0 1700000000 " + path + " -> " + target + ": ";
  EXPECT_EQ(ArchiveFile(gzipped(tar)).listed(), (Lines{line, line}));
}

}  // namespace
}  // namespace archive_test
