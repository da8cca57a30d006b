#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>

#include "tests/support/archive/Archives.h"
#include "tests/support/archive/TarWriter.h"

namespace archive_test {
namespace {

using tarball::Damage;

struct Result {
  std::optional<Damage> damage;
  Lines members;
};

Result resultOf(const std::string& bytes) {
  const ArchiveFile file(bytes);
  try {
    return {.damage = {}, .members = file.listed()};
  } catch (const tarball::Damaged& damaged) {
    return {.damage = damaged.damage(), .members = {}};
  }
}

std::string flipped(std::string bytes, std::size_t bit) {
  bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
  return bytes;
}

/// A tar archive of two members: 512 bytes of header, 512 of content, twice, and its end mark.
std::string twoMembers() {
  return member({.name = "etc/hostname"}, "receiver\n") +
         member({.name = "etc/CCcam.cfg"}, "port") + kEndMark;
}

struct DamageCase {
  std::string name;
  std::string bytes;
  std::string damage;
};

class Damages : public testing::TestWithParam<DamageCase> {};

TEST_P(Damages, AreSaidWithTheirPlace) {
  EXPECT_EQ(ArchiveFile(GetParam().bytes).damage(), GetParam().damage);
}

/// Returns gzip data whose byte so far from their end is another one.
std::string changedFromEnd(std::size_t distance) {
  const std::string packed = gzipped(twoMembers());
  return flipped(packed, (packed.size() - distance) * 8);
}

std::string sizeOf(const std::string& bytes) {
  return std::to_string(bytes.size());
}

std::vector<DamageCase> damageCases() {
  const std::string packed = gzipped(twoMembers());
  const std::string size = sizeOf(packed);
  const std::string tar = twoMembers();
  const std::string header_damaged = gzipped(flipped(tar, 1030 * 8));
  const std::string first_damaged = gzipped(flipped(tar, 8));
  const std::string cut = gzipped(tar.substr(0, 1536));
  const std::string unmarked = gzipped(tar.substr(0, 2048));
  const std::string followed = gzipped(tar + std::string(512, '\0') + "x");
  const std::string last = ", last member etc/CCcam.cfg)";
  // A block that is stored rather than compressed says its length twice.
  const std::string refused = packed.substr(0, 10) + '\x01' + std::string(20, '\0');
  return {
      {"EmptyFile", "", "the file is empty (byte 0 of the file, byte 0 unpacked)"},
      {"OtherFile", "PK\3\4",
       "the file is not compressed by gzip (byte 0 of the file, byte 0 unpacked)"},
      {"OneOtherByte", "x",
       "the file is not compressed by gzip (byte 0 of the file, byte 0 unpacked)"},
      {"FirstByteOfGzipOnly", "\x1f\x8c",
       "the file is not compressed by gzip (byte 2 of the file, byte 0 unpacked)"},
      {"PlainTar", tar, "the file is not compressed by gzip (byte 0 of the file, byte 0 unpacked)"},
      {"Zeros", std::string(1024, '\0'),
       "the file is not compressed by gzip (byte 0 of the file, byte 0 unpacked)"},
      {"ExtraField",
       packed.substr(0, 3) + '\4' + packed.substr(4, 6) + std::string("\2\0xy", 4) +
           packed.substr(10),
       "the gzip header has an extra field (byte " + sizeOf(packed + "1234") +
           " of the file, byte 3072 unpacked" + last},
      {"CutOff", packed.substr(0, packed.size() - 1),
       "the file is cut off (byte " + std::to_string(packed.size() - 1) +
           " of the file, byte 3072 unpacked" + last},
      {"Data", refused, "the compressed data are damaged (byte 15 of the file, byte 0 unpacked)"},
      {"Checksum", changedFromEnd(8),
       "the checksum is wrong (byte " + std::to_string(packed.size() - 4) +
           " of the file, byte 3072 unpacked" + last},
      {"Length", changedFromEnd(4),
       "the length is wrong (byte " + size + " of the file, byte 3072 unpacked" + last},
      {"OtherBytesBehind", packed + "x",
       "other data follow the compressed data (byte " + size + " of the file, byte 3072 unpacked" +
           last},
      {"OtherBytesBehindZeros", packed + std::string(2, '\0') + packed,
       "other data follow the compressed data (byte " + std::to_string(packed.size() + 2) +
           " of the file, byte 3072 unpacked" + last},
      {"NoBytes", gzipped(""),
       "there is no tar archive in the file (byte 20 of the file, byte 0 unpacked)"},
      {"NoTar", gzipped("receiver\n"),
       "there is no tar archive in the file (byte " + sizeOf(gzipped("receiver\n")) +
           " of the file, byte 0 unpacked)"},
      {"FirstHeader", first_damaged,
       "there is no tar archive in the file (byte " + sizeOf(first_damaged) +
           " of the file, byte 0 unpacked)"},
      {"Header", header_damaged,
       "the header of a member is damaged (byte " + sizeOf(header_damaged) +
           " of the file, byte 1024 unpacked, last member etc/hostname)"},
      {"TarCutOff", cut,
       "the tar archive is cut off (byte " + sizeOf(cut) + " of the file, byte 1536 unpacked" +
           last},
      {"NoEndMark", unmarked,
       "the tar archive is cut off (byte " + sizeOf(unmarked) + " of the file, byte 2048 unpacked" +
           last},
      {"BytesBehindTheEndMark", followed,
       "other data follow the end of the tar archive (byte " + sizeOf(followed) +
           " of the file, byte 3584 unpacked" + last},
  };
}

INSTANTIATE_TEST_SUITE_P(Every, Damages, testing::ValuesIn(damageCases()),
                         [](const auto& info) { return info.param.name; });

TEST(Damage, OfTheCompressedDataIsTheCauseOfDamageInTheTarArchive) {
  // Stored data are unpacked as they are: their checksum alone tells what was changed in them.
  const std::string stored = gzipped(twoMembers(), 0);
  EXPECT_EQ(resultOf(stored).damage, std::nullopt);
  EXPECT_EQ(resultOf(flipped(stored, (15 + 1030) * 8)).damage, Damage::kWrongChecksum);
}

TEST(Damage, ByCuttingTheFileAnywhereIsFound) {
  const std::string archive = smallArchive();
  EXPECT_EQ(resultOf("").damage, Damage::kEmptyFile);
  for (std::size_t length = 1; length < archive.size(); ++length) {
    ASSERT_EQ(resultOf(archive.substr(0, length)).damage, Damage::kCutOff) << length;
  }
  EXPECT_EQ(resultOf(archive).damage, std::nullopt);
}

TEST(Damage, ByCuttingTheTarArchiveAnywhereIsFound) {
  const std::string tar = twoMembers();
  for (std::size_t length = 0; length < tar.size(); ++length) {
    ASSERT_EQ(resultOf(gzipped(tar.substr(0, length))).damage,
              length < 512 ? Damage::kNoTar : Damage::kTarCutOff)
        << length;
  }
  EXPECT_EQ(resultOf(gzipped(tar)).damage, std::nullopt);
}

TEST(Damage, ByAnyBitIsFoundUnlessTheMembersAreTheSame) {
  const std::string archive = smallArchive();
  const Lines members = resultOf(archive).members;
  ASSERT_EQ(members.size(), 3U);
  const std::size_t checksum = (archive.size() - 8) * 8;
  for (std::size_t bit = 0; bit < archive.size() * 8; ++bit) {
    const Result result = resultOf(flipped(archive, bit));
    if (result.damage) continue;
    ASSERT_EQ(result.members, members) << bit;
    ASSERT_LT(bit, checksum);
  }
}

TEST(Damage, ByAnyBitOfATarHeaderIsFoundUnlessTheMembersAreTheSame) {
  const std::string tar = twoMembers();
  const Lines members = resultOf(gzipped(tar)).members;
  constexpr struct {
    std::size_t header;
    Damage damage;
  } kHeaders[] = {{0, Damage::kNoTar}, {1024, Damage::kWrongHeader}};
  for (const auto& [header, damage] : kHeaders) {
    std::size_t found = 0;
    for (std::size_t bit = header * 8; bit < (header + 512) * 8; ++bit) {
      const Result result = resultOf(gzipped(flipped(tar, bit)));
      ASSERT_TRUE(result.damage ? *result.damage == damage : result.members == members) << bit;
      found += result.damage.has_value() ? 1 : 0;
    }
    EXPECT_GT(found, 500U * 8) << header;
  }
}

}  // namespace
}  // namespace archive_test
