#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>

#include "host/native/NativeSystem.h"
#include "host/native/SettingsFile.h"
#include "host/plain/Host.h"
#include "tests/support/Raised.h"
#include "tests/support/TemporaryDirectory.h"

namespace native {
namespace {

using support::raised;

struct Paths : testing::Test {
  mode_t modeOf(const std::string& name) const {
    struct stat status {};
    return stat((directory / name).c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
  }

  const support::TemporaryDirectory directory;
  NativeSystem os;
};

TEST_F(Paths, ExistsFollowsLinks) {
  directory.write("file", "");
  directory.makeDirectory("folder");
  directory.makeLink("to_file", directory / "file");
  directory.makeLink("dangling", directory / "missing");
  directory.makeLink("loop", directory / "loop");
  for (const char* name : {"file", "folder", "folder/", "to_file", "folder/../file"}) {
    EXPECT_TRUE(os.exists(directory / name)) << name;
  }
  for (const char* name : {"missing", "dangling", "loop", "file/", "file/below", "to_file/below"}) {
    EXPECT_FALSE(os.exists(directory / name)) << name;
  }
  EXPECT_FALSE(os.exists(""));
}

TEST_F(Paths, MakedirsCreatesAllMissingParents) {
  os.makedirs(directory / "a/b/c");
  EXPECT_TRUE(os.exists(directory / "a/b/c"));
  os.makedirs(directory / "a/b/d");
  os.makedirs(directory / "x");
  EXPECT_TRUE(os.exists(directory / "a/b/d"));
  EXPECT_TRUE(os.exists(directory / "x"));
}

TEST_F(Paths, MakedirsGoesThroughALinkedParent) {
  directory.makeDirectory("real");
  directory.makeLink("linked", directory / "real");
  os.makedirs(directory / "linked/new");
  EXPECT_TRUE(os.exists(directory / "real/new"));
}

TEST_F(Paths, MakedirsLeavesThePermissionsToTheUmask) {
  const mode_t former = umask(027);
  os.makedirs(directory / "a/b");
  umask(former);
  EXPECT_EQ(modeOf("a"), 0750U);
  EXPECT_EQ(modeOf("a/b"), 0750U);
}

TEST_F(Paths, ChmodSetsAllBits) {
  directory.write("script.sh", "");
  for (const int mode : {0755, 0600, 0, 04711}) {
    os.chmod(directory / "script.sh", mode);
    EXPECT_EQ(modeOf("script.sh"), static_cast<mode_t>(mode));
  }
}

/// A call on a path that fails: the errno, its text, and the path that the error names.
struct Failing {
  const char* what;
  const char* path;
  const char* named;
  const char* reason;
  void (*call)(NativeSystem& os, const std::string& path);
};

void makedirs(NativeSystem& os, const std::string& path) {
  os.makedirs(path);
}
void remove(NativeSystem& os, const std::string& path) {
  os.remove(path);
}
void chmod(NativeSystem& os, const std::string& path) {
  os.chmod(path, 0755);
}
void fileSize(NativeSystem& os, const std::string& path) {
  os.fileSize(path);
}
void listdir(NativeSystem& os, const std::string& path) {
  os.listdir(path);
}
void open(NativeSystem& os, const std::string& path) {
  os.open(path);
}

constexpr const char* kMissing = "No such file or directory";
constexpr const char* kNoDirectory = "Not a directory";
constexpr const char* kIsDirectory = "Is a directory";
constexpr const char* kThere = "File exists";

constexpr Failing kFailing[] = {
    {"open", "missing", "missing", kMissing, open},
    {"open", "dangling", "dangling", kMissing, open},
    {"open", "folder", "folder", kIsDirectory, open},
    {"open", "file/below", "file/below", kNoDirectory, open},
    {"listdir", "missing", "missing", kMissing, listdir},
    {"listdir", "file", "file", kNoDirectory, listdir},
    {"fileSize", "missing", "missing", kMissing, fileSize},
    {"fileSize", "dangling", "dangling", kMissing, fileSize},
    {"remove", "missing", "missing", kMissing, remove},
    {"remove", "folder", "folder", kIsDirectory, remove},
    {"chmod", "missing", "missing", kMissing, chmod},
    {"chmod", "dangling", "dangling", kMissing, chmod},
    {"makedirs", "folder", "folder", kThere, makedirs},
    {"makedirs", "file", "file", kThere, makedirs},
    {"makedirs", "dangling", "dangling", kThere, makedirs},
    {"makedirs", "file/below", "file/below", kNoDirectory, makedirs},
    {"makedirs", "file/below/deep", "file/below", kNoDirectory, makedirs},
};

TEST_F(Paths, FailingCallsRaiseTheReasonAndThePath) {
  directory.write("file", "content");
  directory.makeDirectory("folder/inside");
  directory.makeLink("dangling", directory / "nowhere");
  for (const Failing& one : kFailing) {
    EXPECT_EQ(raised([&] { one.call(os, directory / one.path); }),
              one.reason + (": '" + (directory / one.named)) + "'")
        << one.what << " " << one.path;
  }
  EXPECT_EQ(directory.read("file"), "content");
  EXPECT_TRUE(os.exists(directory / "folder/inside"));
}

TEST_F(Paths, ModuleSeesAFailingCallAsAnOsError) {
  SettingsFile settings(directory / "settings");
  const plain::Host host(os, settings);
  EXPECT_EQ(raised([&] { host.named("listdir")({std::string_view("/none")}); }),
            "2 OSError: [Errno 2] No such file or directory: '/none'");
}

TEST_F(Paths, MakedirsGivesTheReasonOfTheCreationThatFailed) {
  directory.makeLink("dangling", directory / "nowhere");
  EXPECT_EQ(raised([&] { os.makedirs(directory / "dangling/below"); }),
            "File exists: '" + (directory / "dangling") + "'");
}

TEST_F(Paths, MakedirsTakesATrailingSlash) {
  EXPECT_EQ(raised([&] { os.makedirs(directory / "a/b/"); }), "nothing");
  EXPECT_TRUE(os.exists(directory / "a/b"));
}

TEST_F(Paths, RemoveTakesTheLinkNotItsTarget) {
  directory.write("file", "content");
  directory.makeLink("link", directory / "file");
  os.remove(directory / "link");
  EXPECT_FALSE(os.exists(directory / "link"));
  EXPECT_TRUE(os.exists(directory / "file"));
}

/// Sets the time zone while it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* zone) {
    if (const char* former = getenv("TZ")) former_ = former;
    set(zone);
  }
  ~TimeZone() { set(former_.empty() ? nullptr : former_.c_str()); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  static void set(const char* zone) {
    zone ? setenv("TZ", zone, 1) : unsetenv("TZ");
    tzset();
  }
  std::string former_;
};

/// Returns the minute of `time`, counted from 1970, taken as if it were UTC.
long long minuteOf(const plain::LocalTime& time) {
  std::tm fields{};
  fields.tm_year = time.tm_year - 1900;
  fields.tm_mon = time.tm_mon - 1;
  fields.tm_mday = time.tm_mday;
  fields.tm_hour = time.tm_hour;
  fields.tm_min = time.tm_min;
  return timegm(&fields) / 60;
}

/// A zone of POSIX form and its distance to UTC in minutes, to the east.
struct Zone {
  const char* name;
  int minutes;
};

constexpr Zone kZones[] = {
    {"UTC0", 0}, {"CET-1", 60}, {"IST-5:30", 330}, {"EST5", -300}, {"NZT-13", 780}};

TEST_F(Paths, LocaltimeIsNowInTheZoneWithYearInFullAndMonthFromOne) {
  for (const Zone& zone : kZones) {
    const TimeZone set(zone.name);
    const long long before = std::time(nullptr) / 60 + zone.minutes;
    const long long now = minuteOf(os.localtime());
    const long long after = std::time(nullptr) / 60 + zone.minutes;
    EXPECT_LE(before, now) << zone.name;
    EXPECT_LE(now, after) << zone.name;
  }
}

}  // namespace
}  // namespace native
