#include <gtest/gtest.h>
#include <sys/inotify.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>

#include "base/Descriptor.h"
#include "base/Files.h"
#include "command/preview/JsonReport.h"
#include "command/preview/Preview.h"
#include "command/preview/TextReport.h"
#include "tests/command/preview/Told.h"
#include "tests/support/archive/Measured.h"
#include "tests/support/archive/TarWriter.h"

namespace preview_test {
namespace {

using archive_test::gzipped;
using archive_test::member;

const std::string kArchive = kBackups + "configuration_ver_c_1_solo2.tar.gz";

struct PreviewTest : testing::Test {
  PreviewTest() { files.makeReceiver(); }

  Files files;
};

/// Hears which files of a directory are opened.
class Watch {
 public:
  explicit Watch(const std::string& directory) : inotify_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    // Closing parts what would otherwise be reported as one.
    EXPECT_GE(inotify_add_watch(inotify_.number(), directory.c_str(), IN_OPEN | IN_CLOSE), 0);
  }

  Lines opened() const {
    alignas(inotify_event) std::array<char, 65536> buffer{};
    const ssize_t size = read(inotify_.number(), buffer.data(), buffer.size());
    Lines names;
    for (ssize_t at = 0; at < size;) {
      inotify_event event{};
      std::memcpy(&event, &buffer[static_cast<std::size_t>(at)], sizeof event);
      const char* name = &buffer[static_cast<std::size_t>(at) + sizeof event];
      if ((event.mask & IN_OPEN) != 0 && event.len > 0) names.emplace_back(name);
      at += static_cast<ssize_t>(sizeof event + event.len);
    }
    return names;
  }

 private:
  base::Descriptor inotify_;
};

TEST_F(PreviewTest, EveryArchiveIsReadOnce) {
  const std::string filler = member({.name = "filler"}, std::string(12000, '\0'));
  files.write("/etc/same", "same\n");
  files.write(kArchive, gzipped(member({.name = "etc/new"}, "new\n") + filler +
                                    member({.name = "etc/same"}, "same\n") + archive_test::kEndMark,
                                0));
  files.write(kArchive + "_user_files",
              gzipped(tarOf({member({.name = "etc/same"}, "changed\n")})));
  const Watch watch(files.at(kBackups));
  Lines begun;
  Lines members;

  preview::Preview preview = preview::look(
      {files.at(kArchive), files.path(), true},
      [&](const tarball::Member& taken) { members.push_back(taken.path); },
      [&](const std::string& name, std::uint64_t) {
        begun.push_back(name);
        return tarball::Progress();
      });
  Lines differences;
  preview.restore->differences->show(preview.restore->changes,
                                     [&](const auto& found) { differences.push_back(found.path); });

  EXPECT_EQ(preview.damage, "");
  EXPECT_EQ(members, (Lines{"etc/new", "filler", "etc/same"}));
  EXPECT_EQ(differences, (Lines{"/etc/new", "/filler", "/etc/same"}));
  const std::string name = kArchive.substr(kBackups.size());
  EXPECT_EQ(watch.opened(), (Lines{name, name + "_user_files"}));
  EXPECT_EQ(begun, (Lines{files.at(kArchive), kArchive + "_user_files"}));
}

/// Returns an archive of so many members, each a text of its own.
std::string archiveOf(std::uint64_t count) {
  std::string archive;
  for (std::uint64_t number = 1; number <= count; ++number) {
    const std::string text = std::to_string(number);
    archive +=
        gzipped(member({.name = "etc/some/directory/file_" + text}, "value=" + text + "\n"), 1);
  }
  return archive + gzipped(std::string(12000, '\0'), 0);
}

template <typename Report>
std::string shown(const preview::Request& request, Report report) {
  preview::Preview preview =
      preview::look(request, [&report](const tarball::Member& taken) { report.add(taken); });
  report.finish(preview);
  return std::to_string(preview.members) + " " + preview.damage;
}

/// Returns the most memory, in KiB, that showing an archive of so many members takes.
long memoryOf(const Files& files, std::uint64_t members, bool json) {
  files.write(kArchive, archiveOf(members));
  const preview::Request request{files.at(kArchive), files.path(), true};
  const archive_test::Measured outcome = archive_test::measured([&] {
    std::ofstream out("/dev/null");
    return json ? shown(request, preview::JsonReport(request.file, out))
                : shown(request, preview::TextReport(out, false));
  });
  EXPECT_EQ(outcome.result, std::to_string(members) + " ");
  return outcome.peak;
}

TEST_F(PreviewTest, MembersTakeLittleMemory) {
  if (!archive_test::canMeasureMemory()) GTEST_SKIP() << "the address sanitizer keeps it";
  for (const bool json : {false, true}) {
    const long few = memoryOf(files, 1, json);
    EXPECT_LT(memoryOf(files, 10000, json) - few, 5 * 1024) << json;
  }
}

}  // namespace
}  // namespace preview_test
