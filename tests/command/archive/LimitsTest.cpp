#include <gtest/gtest.h>

#include <algorithm>
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
  std::string verdict;  // what a line of it begins with
};

std::string zeros(std::size_t size) {
  return std::string(size, '\0');
}

/// Returns gzip data that are this many bytes as a file, and unpack to 4 GiB.
std::string fourGiB() {
  return repeated(gzipped(zeros(16 * 1024 * 1024)), 256);
}

constexpr const char* kTooLarge = "the archive unpacks to more than 1 GiB (";

std::vector<LimitCase> limitCases() {
  return {
      {"ContentsWithoutEnd",
       [] { return gzipped(block({.name = "keys/a", .size = 8589934591})) + fourGiB(); },
       kTooLarge},
      {"ZerosWithoutEnd", [] { return gzipped(block({.name = "keys/a"})) + fourGiB(); }, kTooLarge},
      {"MembersWithoutEnd",
       [] { return repeated(gzipped(repeated(block({.name = "keys/a"}), 1000)), 1000); },
       "the archive has more than 100000 members ("},
      {"PathsThatAreLongInAll",
       [] {
         const std::string name = repeated("keys/", 200);
         return gzipped(repeated(longPath(name + "a") + block({.name = name}), 17000));
       },
       "the members' paths take more than 16 MiB ("},
      {"PathsOfManyDirectories",
       [] {
         std::string members;
         for (int number = 0; number < 4000; ++number) {
           const std::string path = "keys/" + repeated("k/", 2040) + std::to_string(number);
           members += longPath(path) + block({.name = path});
         }
         return gzipped(members + kEndMark, 1);
       },
       "deeper than any file: keys/k/"},
  };
}

class Limits : public testing::TestWithParam<LimitCase> {};

TEST_P(Limits, KeepMemoryAndTimeSmall) {
  const ArchiveFile file(GetParam().archive());
  const Measured outcome = measured([&] {
    const Lines verdict = file.verdict();
    const bool is_found = std::ranges::any_of(
        verdict, [](const std::string& line) { return line.starts_with(GetParam().verdict); });
    return is_found ? GetParam().verdict : verdict.front();
  });
  EXPECT_EQ(outcome.result, GetParam().verdict);
  if (!canMeasureMemory()) GTEST_SKIP() << "the address sanitizer keeps what is freed";
  EXPECT_LT(outcome.peak, kMostMemory);
  RecordProperty("peak_kib", std::to_string(outcome.peak));
}

INSTANTIATE_TEST_SUITE_P(Every, Limits, testing::ValuesIn(limitCases()),
                         [](const auto& info) { return info.param.name; });

TEST(Limits, LeaveRoomForAHundredThousandMembers) {
  std::string members;
  for (int number = 0; number < 100000; ++number) {
    members += block({.name = "keys/" + std::to_string(number)});
  }
  const ArchiveFile file(gzipped(members + kEndMark, 1));
  tarball::Reader reader(file.path());
  const tarball::Verdict verdict = tarball::verify(reader, {.places = places()});
  EXPECT_TRUE(verdict.sound());
  EXPECT_EQ(verdict.members, 100000U);
}

TEST(Limits, LeaveRoomForTheLongestNames) {
  const std::string path = repeated("keys/", 800) + "a";
  const std::string target(4000, 't');
  const std::string tar = longPath(path) + longTarget(target) +
                          block({.name = path, .type = '2', .link = target}) + kEndMark;
  const std::string line = "symbolic link 644 0:0 0 1700000000 " + path + " -> " + target + ": ";
  EXPECT_EQ(ArchiveFile(gzipped(tar)).listed(), Lines{line});
}

}  // namespace
}  // namespace archive_test
