#include <gtest/gtest.h>

#include "tests/support/RecordingHost.h"

namespace support {
namespace {

struct RecordingHostTest : ::testing::Test {
  Record record;
  FailingJournal journal{record};
  RecordingHost host{journal};
};

const host::Error kFull("OSError", "[Errno 28] No space left on device", 28);

TEST_F(RecordingHostTest, WritesOneLineForEveryOperationWithAllItsArguments) {
  host.os().system("echo \"a\\b\"\t");
  host.system.addFile("/a");
  host.os().chmod("/a", 0644);
  host.print("two\nlines");
  EXPECT_EQ(record.take(),
            "os.system(\"echo \\\"a\\\\b\\\"\\t\")\n"
            "os.chmod(\"/a\", 0644)\n"
            "print(\"two\\nlines\")\n");
}

TEST_F(RecordingHostTest, RaisesAtTheChosenOperationOnlyAndAfterItWasRecorded) {
  journal.failAt(1, kFull);
  host.os().makedirs("/a");
  EXPECT_THROW(host.os().makedirs("/b"), host::Error);
  host.os().makedirs("/c");
  EXPECT_EQ(record.take(), "os.makedirs(\"/a\")\nos.makedirs(\"/b\")\nos.makedirs(\"/c\")\n");
  EXPECT_TRUE(host.system.has("/a"));
  EXPECT_FALSE(host.system.has("/b"));
  EXPECT_TRUE(host.system.has("/c"));
}

TEST_F(RecordingHostTest, RaisesAtEveryOperationThatReadsAsChosen) {
  journal.failOn("fileExists(\"/a\")", kFull);
  EXPECT_FALSE(host.fileExists("/b"));
  EXPECT_THROW(host.fileExists("/a"), host::Error);
  EXPECT_THROW(host.fileExists("/a"), host::Error);
}

TEST_F(RecordingHostTest, RaisesForPathsThatAreNotThere) {
  EXPECT_THROW(host.os().open("/a"), host::Error);
  EXPECT_THROW(host.os().listdir("/a"), host::Error);
  EXPECT_THROW(host.os().fileSize("/a"), host::Error);
  EXPECT_THROW(host.os().remove("/a"), host::Error);
  EXPECT_THROW(host.os().chmod("/a", 0644), host::Error);
}

TEST_F(RecordingHostTest, RemovesAFileFromItsDirectory) {
  host.system.addDirectory("/d", {"b"});
  host.system.addFile("/d/a");
  host.system.addFile("/d/c");
  host.os().remove("/d/a");
  EXPECT_EQ(host.os().listdir("/d"), (std::vector<std::string>{"b", "c"}));
}

}  // namespace
}  // namespace support
