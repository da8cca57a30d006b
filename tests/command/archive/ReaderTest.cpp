#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>
#include <string>
#include <vector>

#include "base/SystemError.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/archive/Archives.h"
#include "tests/support/archive/TarWriter.h"

namespace archive_test {
namespace {

const std::string kHostname = member({.name = "etc/hostname"}, "receiver\n");
const std::string kHostnameLine = "file 644 0:0 9 1700000000 etc/hostname: receiver\n";

TEST(Reader, TakesSeveralGzipMembersForOneStream) {
  const std::string tar = kHostname + kEndMark;
  std::string packed;
  for (std::size_t start = 0; start < tar.size(); start += 100) {
    packed += gzipped(tar.substr(start, 100));
  }
  EXPECT_EQ(ArchiveFile(packed).listed(), Lines{kHostnameLine});
  EXPECT_EQ(ArchiveFile(gzipped(tar) + gzipped("") + gzipped("")).listed(), Lines{kHostnameLine});
}

TEST(Reader, TakesZerosBehindTheArchiveAndBehindTheGzipData) {
  const std::string tar = kHostname + kEndMark + std::string(300001, '\0');
  EXPECT_EQ(ArchiveFile(gzipped(tar) + std::string(300001, '\0')).listed(), Lines{kHostnameLine});
}

TEST(Reader, GivesNoMemberOfAnEmptyArchive) {
  EXPECT_EQ(ArchiveFile(gzipped(kEndMark)).listed(), Lines{});
}

TEST(Reader, GivesContentsOfAnySize) {
  std::string tar;
  Lines expected;
  for (const std::size_t size : {0U, 1U, 511U, 512U, 513U, 16384U, 131071U, 131072U, 1000000U}) {
    std::string content;
    while (content.size() < size) content += std::to_string(content.size());
    content.resize(size);
    tar += member({.name = "etc/hostname"}, content);
    expected.push_back("file 644 0:0 " + std::to_string(size) +
                       " 1700000000 etc/hostname: " + content);
  }
  EXPECT_EQ(ArchiveFile(gzipped(tar + kEndMark)).listed(), expected);
}

TEST(Reader, GoesOnPastContentsThatNobodyHasRead) {
  const ArchiveFile file(
      gzipped(member({.name = "etc/CCcam.cfg"}, std::string(1000000, 'x')) + kHostname + kEndMark));
  tarball::Reader reader(file.path());
  EXPECT_EQ(reader.read(), "");
  ASSERT_EQ(reader.next().value().path, "etc/CCcam.cfg");
  EXPECT_EQ(listed(reader), Lines{kHostnameLine});
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_EQ(reader.read(), "");
  EXPECT_EQ(reader.unpacked(), 512U + 1000448 + 1024 + 1024);
}

TEST(Reader, TellsWhichFileItReadsAndHowFarItHas) {
  std::string packed;
  for (int round = 0; round < 2000; ++round) packed += gzipped(kHostname);
  packed += gzipped(kEndMark);
  const ArchiveFile file(packed);
  std::vector<std::uint64_t> progress;
  const auto begin = [&](const std::string& name, std::uint64_t size) -> tarball::Progress {
    EXPECT_EQ(name, file.path());
    EXPECT_EQ(size, packed.size());
    return [&](std::uint64_t bytes) { progress.push_back(bytes); };
  };
  tarball::Reader reader(file.path(), begin);
  EXPECT_EQ(listed(reader).size(), 2000U);
  std::vector<std::uint64_t> expected;
  for (std::uint64_t bytes = 65536; bytes < packed.size(); bytes += 65536) {
    expected.push_back(bytes);
  }
  ASSERT_GE(expected.size(), 2U);
  expected.push_back(packed.size());
  EXPECT_EQ(progress, expected);
}

TEST(Reader, ReadsAnOpenFileFromWhereItStands) {
  const ArchiveFile file("begin" + gzipped(kHostname + kEndMark));
  base::Descriptor descriptor(open(file.path().c_str(), O_RDONLY));
  ASSERT_EQ(lseek(descriptor.number(), 5, SEEK_SET), 5);
  tarball::Reader reader(std::move(descriptor), "archive");
  EXPECT_EQ(listed(reader), Lines{kHostnameLine});
}

TEST(Reader, ReadsAnyStreamInPiecesOfAnySize) {
  const std::string tar = kHostname + kHostname + kEndMark;
  for (std::size_t size = 1; size <= tar.size(); size += 7) {
    tarball::Reader reader(std::make_unique<Bytes>(tar, size));
    ASSERT_EQ(listed(reader), (Lines{kHostnameLine, kHostnameLine})) << size;
    tarball::Reader followed(std::make_unique<Bytes>(tar + "x", size));
    EXPECT_THROW(listed(followed), tarball::Damaged) << size;
  }
}

TEST(Reader, GivesTheTypeOfEveryMember) {
  const std::string tar = block({.name = "file"}) + block({.name = "directory/", .type = '5'}) +
                          block({.name = "symbolic", .type = '2', .link = "target"}) +
                          block({.name = "hard", .type = '1', .link = "file"}) +
                          block({.name = "character", .type = '3'}) +
                          block({.name = "block", .type = '4'}) +
                          block({.name = "fifo", .type = '6'}) + kEndMark;
  EXPECT_EQ(
      ArchiveFile(gzipped(tar)).listed(),
      (Lines{"file 644 0:0 0 1700000000 file: ", "directory 644 0:0 0 1700000000 directory/: ",
             "symbolic link 644 0:0 0 1700000000 symbolic -> target: ",
             "hard link 644 0:0 0 1700000000 hard -> file: ",
             "device 644 0:0 0 1700000000 character: ", "device 644 0:0 0 1700000000 block: ",
             "FIFO 644 0:0 0 1700000000 fifo: "}));
}

/// Returns what `step` raises.
template <class Step>
std::string raised(const Step& step) {
  try {
    step();
  } catch (const base::SystemError& error) {
    return error.what();
  }
  return "nothing";
}

TEST(Reader, RaisesWhatTheSystemRefuses) {
  const support::TemporaryDirectory directory;
  EXPECT_EQ(raised([&] { const tarball::Reader reader(directory / "missing"); }),
            "No such file or directory: '" + (directory / "missing") + "'");
  EXPECT_EQ(raised([&] { tarball::Reader(directory.path()).next(); }),
            "Is a directory: '" + directory.path() + "'");
}

TEST(Reader, DoesNotWaitForAFifo) {
  const support::TemporaryDirectory directory;
  ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
  tarball::Reader reader(directory / "fifo");
  EXPECT_THROW(reader.next(), tarball::Damaged);
}

}  // namespace
}  // namespace archive_test
