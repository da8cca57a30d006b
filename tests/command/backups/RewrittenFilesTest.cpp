#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "command/backups/VerifyFile.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/archive/Archives.h"
#include "tests/support/archive/TarWriter.h"

namespace backups {
namespace {

using Lines = archive_test::Lines;

struct RewrittenCase {
  const char* name;  ///< how the archive's name begins
  Lines refused;     ///< the links and files in it
};

class RewrittenFilesTest : public testing::TestWithParam<RewrittenCase> {};

/// An archive of links in the place of what some restore writes, and of what it saves.
std::string archive() {
  std::string members = archive_test::block({.name = "etc/samba/smb_backup"});
  for (const char* path : {"etc/samba/smb.conf", "etc/fstab", "etc/passwd", "etc/shadow",
                           "etc/auto.network", "etc/resolv.conf", "etc/hostname"}) {
    members += archive_test::block({.name = path, .type = '2', .link = "target"});
  }
  return archive_test::gzipped(members + archive_test::kEndMark);
}

TEST_P(RewrittenFilesTest, AreNoLinksInAnArchiveOfThatVersion) {
  const support::TemporaryDirectory directory;
  const std::string name = std::string(GetParam().name) + "20240305_07-04_solo2.tar.gz";
  directory.write(name, archive());
  Lines refused;
  for (const auto& finding : verifyFile(directory / name, kindOf(name)).findings) {
    refused.push_back(finding.member);
  }
  EXPECT_EQ(refused, GetParam().refused);
}

const Lines kAll = {"etc/samba/smb_backup", "etc/samba/smb.conf", "etc/fstab",      "etc/passwd",
                    "etc/shadow",           "etc/auto.network",   "etc/resolv.conf"};

INSTANTIATE_TEST_SUITE_P(Every, RewrittenFilesTest,
                         testing::Values(RewrittenCase{"configuration_", kAll},
                                         RewrittenCase{"configuration_ver_a_", kAll},
                                         RewrittenCase{"configuration_ver_b_",
                                                       {"etc/samba/smb_backup",
                                                        "etc/samba/smb.conf", "etc/resolv.conf"}},
                                         RewrittenCase{"configuration_ver_c_", {"etc/resolv.conf"}},
                                         RewrittenCase{"renamed_", kAll}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace backups
