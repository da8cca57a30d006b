#include <sys/stat.h>

#include <cstdlib>

#include "desk/model/Host.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk {
namespace {

using host::operator""_t;
using State = Package::State;

/// A package manager in PATH that does what the test's shell script says; "$1 $2" are the
/// operation and the package.
struct Packages : SessionTest {
  Packages() : former_path_(getenv("PATH")) {
    setenv("PATH", (directory.path() + ":" + former_path_).c_str(), 1);
    setOpkg("case $2 in bad*) exit 1;; killed*) kill -9 $$;; esac");
  }
  ~Packages() override { setenv("PATH", former_path_.c_str(), 1); }

  void setOpkg(const std::string& script) {
    directory.write("opkg", "#!/bin/sh\n" + script + "\n");
    ASSERT_EQ(chmod((directory / "opkg").c_str(), 0755), 0);
  }

  void install(const Lines& names) { session.open(Ipkg{.packages = names}, note("closed")); }

  /// Begins a feed update, of whose end these listeners take note. Returns the component.
  host::Object update(const Lines& listeners) {
    const Host host(jobs, notes);
    host::Object component = host.named("IpkgComponent")();
    for (const std::string& name : listeners) component["addCallback"_t]({note(name)});
    component["startCmd"_t]({host.named("IpkgComponent").get("CMD_UPDATE"_t)});
    return component;
  }

  const support::TemporaryDirectory directory;
  const Gate gate;

 private:
  std::string former_path_;
};

TEST_F(Packages, AreInstalledInOrderWhateverBecomesOfEach) {
  install({"one", "bad-two", "/media/hdd/three.ipk", "killed-four", "five"});
  runToEnd(jobs);
  EXPECT_EQ(notes.lines,
            (Lines{"command: opkg install one", "command: opkg install bad-two",
                   "command: opkg install /media/hdd/three.ipk",
                   "command: opkg install killed-four", "command: opkg install five"}));
  EXPECT_EQ(shown<PackagesContent>(),
            (PackagesContent{.packages = {{"one", State::done},
                                          {"bad-two", State::failed},
                                          {"/media/hdd/three.ipk", State::done},
                                          {"killed-four", State::failed},
                                          {"five", State::done}}}));
}

TEST_F(Packages, ShowWhichOneRunsAndWhichWait) {
  setOpkg("[ $2 != two ] || " + gate.wait());
  install({"one", "two", "three"});
  EXPECT_EQ(
      shown<PackagesContent>(),
      (PackagesContent{
          .packages = {{"one", State::running}, {"two", State::waiting}, {"three", State::waiting}},
          .is_running = true}));
  while (shown<PackagesContent>().packages[0].state == State::running) waitForJob(jobs);
  EXPECT_EQ(
      shown<PackagesContent>(),
      (PackagesContent{
          .packages = {{"one", State::done}, {"two", State::running}, {"three", State::waiting}},
          .is_running = true}));
  gate.open();
  runToEnd(jobs);
}

TEST_F(Packages, ScreenClosesByOkOrExitAloneAndNotBeforeTheLastIsDone) {
  setOpkg(gate.wait());
  for (const char* key : {"ok", "exit"}) {
    install({"one"});
    press({"ok", "exit", "red"});
    EXPECT_EQ(top(), "Ipkg");
    gate.open();
    runToEnd(jobs);
    press({"red", "down"});
    EXPECT_EQ(top(), "Ipkg");
    press({key});
    EXPECT_EQ(top(), "");
  }
}

TEST_F(Packages, WithoutPackagesTheScreenIsDoneAtOnce) {
  install({});
  EXPECT_EQ(shown<PackagesContent>(), PackagesContent());
  press({"exit"});
  EXPECT_EQ(notes.lines, Lines{"closed: None"});
}

TEST_F(Packages, OddBytesOfANameAreShownEscapedAndHandedOnAsTheyStand) {
  setOpkg("[ \"$2\" = \"$(printf 'a b\\377')\" ]");
  install({"a b\xff"});
  runToEnd(jobs);
  EXPECT_EQ(shown<PackagesContent>().packages, (std::vector<Package>{{"a b\\xff", State::done}}));
}

TEST_F(Packages, ManagerThatVanishesMidwayFailsTheRestAndTheScreenCanBeClosed) {
  setOpkg("/bin/rm " + (directory / "opkg"));
  // Another opkg of this machine shall not be found instead.
  setenv("PATH", directory.path().c_str(), 1);
  install({"one", "two", "three"});
  try {
    runToEnd(jobs);
  } catch (const std::exception&) {
    // Whether the error reaches the host as well is not looked at here.
  }
  EXPECT_FALSE(shown<PackagesContent>().is_running);
  press({"exit"});
  EXPECT_EQ(top(), "");
}

TEST_F(Packages, FeedUpdateReportsItsEndToEveryListener) {
  for (const std::string end : {"DONE", "ERROR"}) {
    setOpkg(end == "DONE" ? "[ \"$*\" = update ]" : "exit 1");
    const host::Object component = update({"first", "second"});
    runToEnd(jobs);
    EXPECT_EQ(notes.lines,
              (Lines{"command: opkg update", "first: EVENT_" + end, "second: EVENT_" + end}));
    notes.lines.clear();
  }
}

TEST_F(Packages, FeedUpdateOfAGoneComponentReportsToNobody) {
  setOpkg(gate.wait());
  update({"gone"});
  gate.open();
  runToEnd(jobs);
  EXPECT_EQ(notes.lines, Lines{"command: opkg update"});
}

}  // namespace
}  // namespace desk
