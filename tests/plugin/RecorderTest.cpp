#include <gtest/gtest.h>

#include "tests/support/Raised.h"
#include "tests/support/Recorder.h"

namespace support {
namespace {

using host::operator""_t;

struct RecorderTest : ::testing::Test {
  host::Object call(const char* function, host::Arguments arguments) {
    return host.named(function)(arguments);
  }

  Record record;
  FailingJournal journal{record};
  Recorder host{journal};
};

TEST_F(RecorderTest, WritesOneLineForEveryOperationWithAllItsArguments) {
  call("system", {"echo \"a\\b\"\t"_t});
  host.system.addFile("/a");
  call("chmod", {"/a"_t, 0644});
  call("print", {"two\nlines"_t});
  EXPECT_EQ(record.take(),
            "os.system(\"echo \\\"a\\\\b\\\"\\t\")\n"
            "os.chmod(\"/a\", 0644)\n"
            "print(\"two\\nlines\")\n");
}

TEST_F(RecorderTest, RaisesAtEveryOperationThatReadsAsChosen) {
  journal.failOn("fileExists(\"/a\")", {"OSError", "odd", 5});
  EXPECT_EQ(described(call("fileExists", {"/b"_t})), "False");
  EXPECT_THROW(call("fileExists", {"/a"_t}), plain::Error);
  EXPECT_THROW(call("fileExists", {"/a"_t}), plain::Error);
}

TEST_F(RecorderTest, RaisesForPathsThatAreNotThere) {
  for (const char* function : {"open", "listdir", "os_stat", "remove", "chmod"}) {
    const auto use = [&] { call(function, {"/a"_t, 0644}); };
    EXPECT_EQ(raised(use), "2 OSError: [Errno 2] No such file or directory: '/a'");
  }
}

}  // namespace
}  // namespace support
