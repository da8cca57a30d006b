#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "tests/support/archive/Archives.h"
#include "tests/support/archive/TarWriter.h"

namespace archive_test {
namespace {

/// A member's headers, and why they are refused.
struct HeaderCase {
  std::string name;
  std::string headers;
  std::string reason;
};

class Headers : public testing::TestWithParam<HeaderCase> {};

TEST_P(Headers, ThatTwoProgramsMayReadDifferentlyAreRefused) {
  const std::string sound = member({.name = "keys/first"}, "first");
  const std::string damage = ArchiveFile(gzipped(sound + GetParam().headers + kEndMark)).damage();
  EXPECT_EQ(damage.substr(0, damage.find(" (byte")),
            "programs may read the header of a member differently: " + GetParam().reason);
}

const std::string kFile = member({.name = "keys/a"}, "content");
const std::string kLink = block({.name = "keys/a", .type = '2', .link = "b"});

/// A file's header with other bytes from `at` on.
std::string with(std::size_t at, const std::string& bytes) {
  return changed(block({.name = "keys/a"}), at, bytes);
}

std::string ofType(char type) {
  return block({.name = "keys/a", .type = type});
}

std::vector<HeaderCase> headerCases() {
  const std::string global =
      changed(extended(record("path", "etc/shadow")).substr(0, 512), 156, "g");
  return {
      {"NoFormat", with(257, std::string(8, '\0')), "unusual format"},
      {"PrefixInTheFormatOfGnuTar", changed(block({.name = "a", .is_gnu = true}), 345, "keys"),
       "unusual name prefix"},
      {"BytesBehindTheLastField", with(511, "x"), "unusual last bytes"},
      {"BytesBehindTheName", with(7, "x"), "unusual name"},
      {"NoName", block({.name = ""}), "unusual name"},
      {"BytesBehindThePrefix", with(345, std::string("keys\0x", 6)), "unusual name prefix"},
      {"ModeOfAFileType", with(100, "0100644"), "unusual mode"},
      {"NoMode", with(100, std::string(8, ' ')), "unusual mode"},
      {"SizeWithBlanksBefore", with(124, "          0 "), "unusual size"},
      {"SizeToTheEndOfItsField", with(124, "000000000000"), "unusual size"},
      {"SizeInBase256", with(124, "\x80" + std::string(11, '\0')), "unusual size"},
      {"NegativeSize", with(124, std::string(12, '\xff')), "unusual size"},
      {"SizeWithASign", with(124, "-0000000001"), "unusual size"},
      {"TextBehindTheSize", with(124, std::string(1, '0') + '\0' + "0000000001"), "unusual size"},
      {"UserIdThatMeansNone", with(108, std::string("\x80\0\0\0\xff\xff\xff\xff", 8)),
       "unusual user ID"},
      {"NegativeGroupId", with(116, std::string(8, '\xff')), "unusual group ID"},
      {"TimeOfTooManyDigits", with(136, std::string("\x80\0\1\0\0\0\0\0\0\0\0\0", 12)),
       "unusual time"},
      {"DeviceNumberOfLetters", with(329, "xxxxxxx"), "unusual device number"},
      {"OldFile", ofType('\0'), "unusual type"},
      {"ContiguousFile", ofType('7'), "unusual type"},
      {"SparseFile", ofType('S'), "unusual type"},
      {"Unknown", ofType('Z'), "unusual type"},
      {"GlobalHeader", global + padded(record("path", "etc/shadow")) + kFile, "unusual type"},
      {"ContentOfALink", block({.name = "keys/a", .type = '2', .size = 1, .link = "b"}),
       "unusual size"},
      {"ContentOfADirectory", block({.name = "keys/a/", .type = '5', .size = 1}), "unusual size"},
      {"FileWithThePathOfADirectory", block({.name = "keys/a/"}), "unusual name"},
      {"FileWithATarget", block({.name = "keys/a", .link = "b"}), "unusual link target"},
      {"LinkWithoutTarget", ofType('2'), "unusual link target"},
      {"HardLinkWithoutTarget", ofType('1'), "unusual link target"},
      {"LongTargetOfAFile", longTarget("etc/shadow") + kFile, "long name of something else"},
      {"LongPathTwice", longPath("keys/ab") + longPath("keys/ac") + kFile, "two long names"},
      {"LongPathAndPrefix", longPath("keys/b") + with(345, "keys"), "unusual name prefix"},
      {"LongPathOfAnotherMember", longPath("keys/b") + kFile, "long name of something else"},
      {"LongTargetOfAnotherLink", longTarget("c") + kLink, "long name of something else"},
      {"LongPathThatEndsEarly", longPath(std::string("keys/b\0c", 8)) + kFile, "unusual long name"},
      {"EmptyLongPath", longPath("") + kFile, "unusual long name"},
      {"LongPathThatIsNotSaidToBe",
       changed(longPath("b").substr(0, 512), 0, "x") + padded("b") + kFile, "unusual name"},
      {"PathLongerThanAnyFiles", longPath(std::string(PATH_MAX - 1, 'x')) + kFile, "unusual size"},
      {"LongPathOfNoMember", longPath("keys/b"), "long name of no member"},
      {"ExtendedHeader", extended(record("path", "etc/shadow")) + kFile, "unusual type"},
      {"PathWithAnEmptyName", block({.name = "keys//a"}), "unusual name"},
      {"PathWithADot", block({.name = "keys/./a"}), "unusual name"},
      {"FileThatEndsWithADot", block({.name = "keys/."}), "unusual name"},
      {"DirectoryThatIsADot", block({.name = "./", .type = '5'}), "unusual name"},
      {"HardLinkToADirectorysPath", block({.name = "keys/b", .type = '1', .link = "keys/a/"}),
       "unusual link target"},
      {"HardLinkToAPathWithADot", block({.name = "keys/b", .type = '1', .link = "keys/./a"}),
       "unusual link target"},
  };
}

INSTANTIATE_TEST_SUITE_P(Every, Headers, testing::ValuesIn(headerCases()),
                         [](const auto& info) { return info.param.name; });

TEST(Header, WhoseChecksumIsOfSignedBytesIsDamaged) {
  std::string header = block({.name = "keys/caf\xe9"});
  unsigned sum = 8 * ' ';
  for (std::size_t at = 0; at < header.size(); ++at) {
    if (at < 148 || at >= 156) sum += static_cast<unsigned>(static_cast<signed char>(header[at]));
  }
  char text[8];
  std::snprintf(text, sizeof text, "%06o", sum);
  header.replace(148, 6, text);
  const std::string damage = ArchiveFile(gzipped(kFile + header + kEndMark)).damage();
  EXPECT_EQ(damage.substr(0, damage.find(" (byte")), "the header of a member is damaged");
}

TEST(Header, HasAChecksumOfSixOrSevenDigits) {
  const std::string header = block({.name = "keys/a"});
  const std::string digits = header.substr(148, 6);
  const auto listedWith = [&](const std::string& checksum) {
    std::string tar = header + kEndMark;
    tar.replace(148, 8, checksum);
    const ArchiveFile file(gzipped(tar));
    return file.damage().empty();
  };
  EXPECT_TRUE(listedWith(digits + std::string("\0 ", 2)));
  EXPECT_TRUE(listedWith("0" + digits + std::string("\0", 1)));
  EXPECT_FALSE(listedWith(digits + "  "));
  EXPECT_FALSE(listedWith(digits.substr(1) + std::string("\0  ", 3)));
  EXPECT_FALSE(listedWith(" " + digits + std::string("\0", 1)));
}

TEST(Header, MaySayWhatOctalDigitsCannotOfOwnersAndTimes) {
  std::string header = with(108, std::string("\x80\0\0\0\xff\xff\xff\xfe", 8));
  header = changed(header, 116, std::string("\x80\0\0\0\0\x20\0\0", 8));
  header = changed(header, 136, std::string("\x80\0\0\0\0\0\0\2\0\0\0\0", 12));
  EXPECT_EQ(ArchiveFile(gzipped(header + kEndMark)).listed(),
            Lines{"file 644 4294967294:2097152 0 8589934592 keys/a: "});
}

TEST(Header, MayHaveAPrefixBeforeItsName) {
  const std::string prefix(155, 'p');
  const std::string name(100, 'n');
  EXPECT_EQ(ArchiveFile(gzipped(changed(block({.name = name}), 345, prefix) + kEndMark)).listed(),
            Lines{"file 644 0:0 0 1700000000 " + prefix + "/" + name + ": "});
}

}  // namespace
}  // namespace archive_test
