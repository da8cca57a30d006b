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

/// An archive of links in the place of what some restore writes, and of what it saves.
std::string archive() {
  std::string members = archive_test::block({.name = "etc/samba/smb_backup"});
  for (const char* path : {"etc/samba/smb.conf", "etc/fstab", "etc/passwd", "etc/shadow",
                           "etc/auto.network", "etc/resolv.conf", "etc/hostname"}) {
    members += archive_test::block({.name = path, .type = '2', .link = "target"});
  }
  return archive_test::gzipped(members + archive_test::kEndMark);
}

TEST(OwnFilesOfRestores, AreNoLinksInAnArchiveOfAnyVersion) {
  const support::TemporaryDirectory directory;
  for (const std::string start : {"configuration_", "configuration_ver_c_", "renamed_"}) {
    const std::string name = start + "20240305_07-04_solo2.tar.gz";
    directory.write(name, archive());
    Lines refused;
    for (const auto& finding : verifyFile(directory / name, kindOf(name)).findings) {
      refused.push_back(finding.member);
    }
    EXPECT_EQ(refused, (Lines{"etc/samba/smb_backup", "etc/samba/smb.conf", "etc/fstab",
                              "etc/passwd", "etc/shadow", "etc/auto.network", "etc/resolv.conf"}));
  }
}

}  // namespace
}  // namespace backups
