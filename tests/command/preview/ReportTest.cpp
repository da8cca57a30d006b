#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>
#include <vector>

#include "command/preview/JsonReport.h"
#include "command/preview/TextReport.h"
#include "tests/command/preview/Told.h"

namespace preview_test {
namespace {

using preview::Action;
using tarball::Type;

using Members = std::vector<tarball::Member>;

std::string textOf(preview::Preview preview, const Members& members = {}, bool escape = false) {
  std::ostringstream out;
  preview::TextReport report(out, escape);
  for (const tarball::Member& member : members) report.add(member);
  preview.members = members.size();
  preview.unpacked = 10240;
  report.finish(preview);
  return out.str();
}

struct ReportTest : testing::Test {
  ReportTest() {
    setenv("TZ", "UTC", 1);
    tzset();
  }
};

TEST_F(ReportTest, MembersAreShownWithModeSizeTimePathAndLink) {
  EXPECT_EQ(
      textOf({},
             {
                 {.path = "etc/dir/",
                  .type = Type::kDirectory,
                  .mode = 01777,
                  .modified = 1709622240,
                  .link = ""},
                 {.path = "etc/file",
                  .type = Type::kFile,
                  .size = 2048,
                  .mode = 04755,
                  .modified = 0,
                  .link = ""},
                 {.path = "etc/link", .type = Type::kSymbolicLink, .mode = 0777, .link = "file"},
                 {.path = "etc/hard", .type = Type::kHardLink, .mode = 0640, .link = "etc/file"},
                 {.path = "a\nb\xff\x1b\xc2\x9b", .type = Type::kFifo, .mode = 02640, .link = ""},
                 {.path = "etc/when",
                  .type = Type::kFile,
                  .mode = 0,
                  .modified = INT64_MAX,
                  .link = ""},
             }),
      "MODE           SIZE  TIME                 PATH\n"
      "drwxrwxrwt      0 B  2024-03-05 07:04     etc/dir/\n"
      "-rwsr-xr-x  2.0 KiB  1970-01-01 00:00     etc/file\n"
      "lrwxrwxrwx      0 B  1970-01-01 00:00     etc/link -> file\n"
      "hrw-r-----      0 B  1970-01-01 00:00     etc/hard -> etc/file\n"
      "prw-r-S---      0 B  1970-01-01 00:00     a\\x0ab\\xff\\x1b\\xc2\\x9b\n"
      "----------      0 B  9223372036854775807  etc/when\n"
      "6 members, 10.0 KiB unpacked\n"
      "what a restore would do on a receiver is shown with --against DIR\n");
}

/// What a restore of `archive` does on a receiver.
preview::Preview restored(preview::Changes changes, const std::string& refusal = "") {
  preview::Preview preview;
  preview.restore.emplace(preview::Restore{.receiver = "box",
                                           .rehearsal = {.model = "solo2",
                                                         .medium = {base::Root("/"), "", "/media"},
                                                         .archive = "/media/archive",
                                                         .refusal = refusal,
                                                         .commands = {"one", "two\nlines"},
                                                         .plan = {}},
                                           .changes = std::move(changes),
                                           .differences = {}});
  return preview;
}

preview::State file(std::uint64_t size, unsigned mode = 0644) {
  return {.type = Type::kFile, .size = size, .mode = mode, .link = ""};
}

TEST_F(ReportTest, ChangesAreShownWithTheirTotalsAndTheCommands) {
  const preview::State link = {.type = Type::kSymbolicLink, .size = 0, .mode = 0, .link = "x"};
  EXPECT_EQ(textOf(restored({
                {"/new", Action::add, {}, file(5)},
                {"/mode", Action::change, file(5), file(5, 0755)},
                {"/link", Action::change, link, file(7)},
                {"/old", Action::remove, file(2048), {}},
                {"/back", Action::remove_again, {}, {}},
                {"/secret", Action::unreadable, {}, file(1)},
            })),
            "0 members, 10.0 KiB unpacked\n"
            "\n"
            "on box, a solo2, as /media/archive:\n"
            "ACTION                   OLD            NEW  PATH\n"
            "add                        -            5 B  /new\n"
            "change         5 B rw-r--r--  5 B rwxr-xr-x  /mode\n"
            "change                  link            7 B  /link\n"
            "delete               2.0 KiB              -  /old\n"
            "removed again              -              -  /back\n"
            "unreadable                 -            1 B  /secret\n"
            "\n"
            "TOTAL          PATHS      OLD   NEW\n"
            "add                1      0 B   5 B\n"
            "change             2      5 B  12 B\n"
            "delete             1  2.0 KiB   0 B\n"
            "removed again      1      0 B   0 B\n"
            "unreadable         1      0 B   1 B\n"
            "\n"
            "the restore runs (what commands but rm and tar change is not shown above):\n"
            "  one\n"
            "  two\\x0alines\n");
}

TEST_F(ReportTest, RefusedRestoreShowsTheReasonAlone) {
  EXPECT_EQ(textOf(restored({}, "the reason")),
            "0 members, 10.0 KiB unpacked\n\non box, a solo2, as /media/archive:\nthe reason\n");
}

/// Returns the JSON of a preview.
nlohmann::ordered_json jsonOf(preview::Preview preview, const Members& members) {
  std::ostringstream out;
  preview::JsonReport report("archive", out);
  for (const tarball::Member& member : members) report.add(member);
  preview.members = members.size();
  preview.unpacked = 10240;
  report.finish(preview);
  return nlohmann::ordered_json::parse(out.str());
}

TEST_F(ReportTest, JsonHoldsTheSame) {
  preview::Preview preview = restored({{"/\xff", Action::change, file(5), file(6, 0755)}});
  preview.damage = "cut off";
  preview.restore->rehearsal.plan.torn = {"/media/a b"};
  nlohmann::ordered_json json = jsonOf(
      std::move(preview),
      {{.path = "\xff", .type = Type::kFile, .size = 6, .mode = 0755, .modified = 9, .link = ""}});
  EXPECT_EQ(json["restore"]["totals"]["change"].dump(), R"({"paths":1,"old_size":5,"new_size":6})");
  json["restore"].erase("totals");
  EXPECT_EQ(
      json.dump(),
      R"({"file":"archive","members":[{"path":"\\xff","type":"file","mode":"0755","size":6,)"
      R"("modified":9,"uid":0,"gid":0,"link":null}],"count":1,"unpacked":10240,"damage":"cut off",)"
      R"("restore":{"receiver":"box","model":"solo2","archive":"/media/archive","refused":null,)"
      R"("not_unpacked":["/media/a b"],"changes":[{"action":"change","path":"/\\xff",)"
      R"("old":{"type":"file","size":5,"mode":"0644","link":null},)"
      R"("new":{"type":"file","size":6,"mode":"0755","link":null}}],)"
      R"("commands":["one","two\nlines"]}})");
}

TEST_F(ReportTest, JsonOfNothingHasNoMembersAndNoRestore) {
  EXPECT_EQ(jsonOf({}, {}).dump(), R"({"file":"archive","members":[],"count":0,"unpacked":10240,)"
                                   R"("damage":null,"restore":null})");
}

/// What a restore does that deletes a text and a file that is none.
struct DifferenceReportTest : ReportTest {
  DifferenceReportTest() {
    files.write("/x", "a\tb\x1b[m\r\n\xff");
    files.write("/y\n", std::string("\0", 1));
  }

  preview::Preview deleted() const {
    preview::Preview preview =
        restored({{"/x", Action::remove, file(9), {}}, {"/y\n", Action::remove, file(1), {}}});
    preview.restore->differences.emplace(files.path());
    return preview;
  }

  Files files;
};

TEST_F(DifferenceReportTest, DifferencesAreEscapedOnATerminalAndWrittenAsTheyAreElsewhere) {
  const std::string header = "--- /x\n+++ /dev/null\n@@ -1,2 +0,0 @@\n";
  const std::string none = "\\ No newline at end of file\n# /y\\x0a: not a text\n";
  const std::string plain = "\n" + header + "-a\tb\x1b[m\r\n-\xff\n" + none;
  const std::string escaped = "\n" + header + "-a\tb\\x1b[m\\x0d\n-\\xff\n" + none;
  EXPECT_TRUE(textOf(deleted()).ends_with(plain));
  EXPECT_TRUE(textOf(deleted(), {}, true).ends_with(escaped));
}

TEST_F(DifferenceReportTest, DifferencesAreInTheJson) {
  EXPECT_EQ(jsonOf(deleted(), {})["restore"]["differences"].dump(),
            R"([{"path":"/x","diff":"--- /x\n+++ /dev/null\n@@ -1,2 +0,0 @@\n)"
            R"(-a\tb\u001b[m\r\n-\\xff\n\\ No newline at end of file\n","unshown":null},)"
            R"({"path":"/y\n","diff":null,"unshown":"not a text"}])");
}

}  // namespace
}  // namespace preview_test
