#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

Json package(const std::string& name, const char* state) {
  return {{"name", name}, {"state", state}};
}

Json installation(const Json& packages, bool running = true) {
  return frame({{"screen", "Ipkg"}, {"packages", packages}, {"running", running}});
}

/// Returns `count` packages, the first `done` of them installed and the next on its way.
Json manyPackages(int count, int done) {
  Json packages = Json::array();
  for (int index = 0; index < count; ++index) {
    packages.push_back(package("package-" + std::to_string(index), index < done    ? "done"
                                                                   : index == done ? "running"
                                                                                   : "waiting"));
  }
  return packages;
}

TEST(PackagesView, EveryStateHasItsSignAndTheProgressCountsWhatIsOver) {
  const Json packages = Json::array({package("one", "done"), package("two", "failed"),
                                     package("three", "running"), package("four", "waiting")});
  EXPECT_EQ(pictureOf(installation(packages)), R"(
┌─ Ipkg ───────────────────────────────────────────────────────┐
│ ✓ done     one                                               │
│ ✗ failed   two                                               │
│ ▶ running  three                                             │
│   waiting  four                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│ ████████████████████████████░░░░░░░░░░░░░░░░░░░░░░░░░░░░ 2/4 │
└──────────────────────────────────────────────────── running ─┘

 l Log   ? Help
)");
  EXPECT_EQ(pictureOf(installation(packages), kTerminal, ascii()), R"(
+- Ipkg -------------------------------------------------------+
| + done     one                                               |
| x failed   two                                               |
| > running  three                                             |
|   waiting  four                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
| ############################............................ 2/4 |
+---------------------------------------------------- running -+

 l Log   ? Help
)");
}

TEST(PackagesView, StatesHaveInksOfTheirOwn) {
  Television television(utf8());
  television.show(
      installation(Json::array({package("one", "done"), package("two", "failed"),
                                package("three", "running"), package("four", "waiting")})),
      kStart);
  const Canvas canvas = television.picture(kTerminal, kStart).canvas;
  EXPECT_EQ(inInk(canvas, 1, Ink::green), "  ✓ done");
  EXPECT_EQ(inInk(canvas, 2, Ink::error), "  ✗ failed");
  EXPECT_EQ(inInk(canvas, 3, Ink::notice), "  ▶ running");
  EXPECT_EQ(inInk(canvas, 4, Ink::description), "    waiting");
}

TEST(PackagesView, NoPackagesAreAllDone) {
  EXPECT_EQ(pictureOf(installation(Json::array(), false)), R"(
┌─ Ipkg ───────────────────────────────────────────────────────┐
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│ ████████████████████████████████████████████████████████ 0/0 │
└─────────────────────────────────────────────────── finished ─┘

 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(PackagesView, LongNameIsCut) {
  EXPECT_EQ(pictureOf(installation(
                Json::array({package("package-" + std::string(40, 'x'), "done")}), false)),
            R"(
┌─ Ipkg ───────────────────────────────────────────────────────┐
│ ✓ done     package-xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx  │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│ ████████████████████████████████████████████████████████ 1/1 │
└─────────────────────────────────────────────────── finished ─┘

 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(PackagesView, RunningPackageStaysInSight) {
  EXPECT_EQ(pictureOf(installation(manyPackages(40, 20))), R"(
┌─ Ipkg ───────────────────────────────────────────────────────┐
│ ✓ done     package-7                                         │
│ ✓ done     package-8                                         │
│ ✓ done     package-9                                         │
│ ✓ done     package-10                                        │
│ ✓ done     package-11                                        │
│ ✓ done     package-12                                        │
│ ✓ done     package-13                                        │
│ ✓ done     package-14                                        │
│ ✓ done     package-15                                        │
│ ✓ done     package-16                                        │
│ ✓ done     package-17                                        │
│ ✓ done     package-18                                        │
│ ✓ done     package-19                                        │
│ ▶ running  package-20                                        │
│                                                              │
│ ███████████████████████████░░░░░░░░░░░░░░░░░░░░░░░░░░░ 20/40 │
└──────────────────────────────────────────────────── running ─┘

 l Log   ? Help
)");
}

TEST(PackagesView, ProgressGrowsWithEveryPackage) {
  std::vector<std::string> bars;
  for (const int done : {0, 1, 7, 8}) {
    Television television(ascii());
    television.show(installation(manyPackages(8, done)), kStart);
    bars.push_back(television.picture(kTerminal, kStart).canvas.line(16));
  }
  EXPECT_EQ(bars, (std::vector<std::string>{
                      "| ........................................................ 0/8 |",
                      "| #######................................................. 1/8 |",
                      "| #################################################....... 7/8 |",
                      "| ######################################################## 8/8 |",
                  }));
}

TEST(PackagesView, ViewerWhoScrollsBackStaysThere) {
  Television television(utf8());
  const auto top = [&](int done) {
    television.show(installation(manyPackages(40, done)), kStart);
    const std::string line = television.picture(kTerminal, kStart).canvas.line(1);
    const std::size_t name = line.find("package-");
    return line.substr(name, line.find(' ', name) - name);
  };
  EXPECT_EQ(top(20), "package-7");
  EXPECT_EQ(television.take("up"), "");
  EXPECT_EQ(top(30), "package-6");
}

TEST(PackagesView, ViewerCanLookAtTheEndWhileTheFirstIsRunning) {
  Television television(utf8());
  television.show(installation(manyPackages(40, 0)), kStart);
  const auto line = [&](int row) { return television.picture(kTerminal, kStart).canvas.line(row); };
  EXPECT_NE(line(1).find("package-0"), std::string::npos);
  television.take(action::kLast);
  EXPECT_NE(line(14).find("package-39"), std::string::npos);
}

}  // namespace
}  // namespace desk::terminal
