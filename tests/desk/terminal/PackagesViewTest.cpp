#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

using State = Package::State;

LayerView installation(const std::vector<Package>& packages, bool is_running = true) {
  return {.screen = "Ipkg",
          .content = PackagesContent{.packages = packages, .is_running = is_running}};
}

/// Returns `count` packages, the first `done` of them installed and the next on its way.
std::vector<Package> manyPackages(int count, int done) {
  std::vector<Package> packages;
  for (int index = 0; index < count; ++index) {
    packages.push_back({"package-" + std::to_string(index), index < done    ? State::done
                                                            : index == done ? State::running
                                                                            : State::waiting});
  }
  return packages;
}

TEST(PackagesView, EveryStateHasItsSignAndInkAndTheProgressCountsWhatIsOver) {
  const LayerView packages = installation({{"one", State::done},
                                           {"two", State::failed},
                                           {"three", State::running},
                                           {"four", State::waiting}});
  EXPECT_EQ(boxOf(packages),
            (Lines{"0,0 64x18 Ipkg, running", "1  ✓ done     one", "2  ✗ failed   two",
                   "3  ▶ running  three", "4    waiting  four",
                   "16  ████████████████████████████░░░░░░░░░░░░░░░░░░░░░░░░░░░░ 2/4"}));
  EXPECT_EQ(boxOf(packages, kTerminal, ascii()),
            (Lines{"0,0 64x18 Ipkg, running", "1  + done     one", "2  x failed   two",
                   "3  > running  three", "4    waiting  four",
                   "16  ############################............................ 2/4"}));
  const Canvas canvas = canvasOf(packages);
  EXPECT_EQ(inInk(canvas, 1, Ink::green), "  ✓ done");
  EXPECT_EQ(inInk(canvas, 2, Ink::error), "  ✗ failed");
  EXPECT_EQ(inInk(canvas, 3, Ink::notice), "  ▶ running");
  EXPECT_EQ(inInk(canvas, 4, Ink::description), "    waiting");
}

TEST(PackagesView, NoPackagesAreAllDone) {
  EXPECT_EQ(boxOf(installation({}, false), kTerminal, ascii()),
            (Lines{"0,0 64x18 Ipkg, finished",
                   "16  ######################################################## 0/0"}));
}

TEST(PackagesView, OfALongNameTheEndIsShown) {
  const std::string fits = "package-" + std::string(41, 'x');
  EXPECT_EQ(boxOf(installation({{fits, State::done}, {"a" + fits, State::done}}, false)),
            (Lines{"0,0 64x18 Ipkg, finished", "1  ✓ done     " + fits,
                   "2  ✓ done     …" + fits.substr(1),
                   "16  ████████████████████████████████████████████████████████ 2/2"}));
}

TEST(PackagesView, ProgressGrowsWithEveryPackage) {
  Lines bars;
  for (const int done : {0, 1, 7, 8}) {
    bars.push_back(boxOf(installation(manyPackages(8, done)), kTerminal, ascii()).back());
  }
  EXPECT_EQ(bars, (Lines{
                      "16  ........................................................ 0/8",
                      "16  #######................................................. 1/8",
                      "16  #################################################....... 7/8",
                      "16  ######################################################## 8/8",
                  }));
}

TEST(PackagesView, RunningPackageStaysInSightUntilAViewerMovesAway) {
  Television television(utf8());
  /// Returns the first package that is shown, the last one and what stands below.
  const auto ends = [&](int done) {
    television.show(frame(installation(manyPackages(40, done))));
    const Lines box = boxes(television.picture(kTerminal, kAtStart).canvas).at(0);
    return Lines{box.at(1), box.at(14), box.at(15).substr(0, 3)};
  };
  EXPECT_EQ(ends(20), (Lines{"1  ✓ done     package-7", "14  ▶ running  package-20", "16 "}));
  EXPECT_EQ(television.take("up"), "");
  EXPECT_EQ(ends(30), (Lines{"1  ✓ done     package-6", "14  ✓ done     package-19", "16 "}));
  television.take(action::kLast);
  EXPECT_EQ(ends(0), (Lines{"1    waiting  package-26", "14    waiting  package-39", "16 "}));
}

}  // namespace
}  // namespace desk::terminal
