#include <sys/stat.h>

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "desk/model/Opkg.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk {
namespace {

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

  void install(const Lines& names) {
    host::Ipkg ipkg;
    for (const std::string& name : names) {
      ipkg.cmdList.push_back({host::IpkgCommand::CMD_INSTALL, name});
    }
    session.openWithCallback(note("closed"), ipkg);
  }

  /// Returns what the package screen shows.
  Json shown() const { return Json::parse(shownBy(*session.top())); }

  /// Returns a callback that takes note of an event.
  host::IpkgCallback listener(const std::string& name) {
    return {nullptr, name, [this, name](host::IpkgEvent event, const host::Value&) {
              const bool done = event == host::IpkgEvent::EVENT_DONE;
              const bool failed = event == host::IpkgEvent::EVENT_ERROR;
              notes.lines.push_back(name + (done ? " done" : failed ? " failed" : " other"));
            }};
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
  EXPECT_EQ(shown(), Json::parse(R"({
    "packages": [{"name": "one", "state": "done"},
                 {"name": "bad-two", "state": "failed"},
                 {"name": "/media/hdd/three.ipk", "state": "done"},
                 {"name": "killed-four", "state": "failed"},
                 {"name": "five", "state": "done"}],
    "running": false})"));
}

TEST_F(Packages, ShowWhichOneRunsAndWhichWait) {
  setOpkg("[ $2 != two ] || " + gate.wait());
  install({"one", "two", "three"});
  EXPECT_EQ(shown(), Json::parse(R"({
    "packages": [{"name": "one", "state": "running"},
                 {"name": "two", "state": "waiting"},
                 {"name": "three", "state": "waiting"}],
    "running": true})"));
  while (shown()["packages"][0]["state"] == "running") waitForJob(jobs);
  EXPECT_EQ(shown(), Json::parse(R"({
    "packages": [{"name": "one", "state": "done"},
                 {"name": "two", "state": "running"},
                 {"name": "three", "state": "waiting"}],
    "running": true})"));
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
  EXPECT_EQ(shown(), Json::parse(R"({"packages": [], "running": false})"));
  press({"exit"});
  EXPECT_EQ(notes.lines, Lines{"closed: None"});
}

TEST_F(Packages, OddBytesOfANameAreShownEscapedAndHandedOnAsTheyStand) {
  setOpkg("[ \"$2\" = \"$(printf 'a b\\377')\" ]");
  install({"a b\xff"});
  runToEnd(jobs);
  EXPECT_EQ(shown()["packages"], Json::parse(R"([{"name": "a b\\xff", "state": "done"}])"));
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
  EXPECT_EQ(shown()["running"], false);
  press({"exit"});
  EXPECT_EQ(top(), "");
}

TEST_F(Packages, FeedUpdateReportsItsEndToEveryListener) {
  for (const char* end : {"done", "failed"}) {
    setOpkg(end == std::string("done") ? "[ \"$*\" = update ]" : "exit 1");
    IpkgComponent component(jobs, notes);
    component.addCallback(listener("first"));
    component.addCallback(listener("second"));
    component.startCmd(host::IpkgCommand::CMD_UPDATE);
    runToEnd(jobs);
    EXPECT_EQ(notes.lines, (Lines{"command: opkg update", std::string("first ") + end,
                                  std::string("second ") + end}));
    notes.lines.clear();
  }
}

TEST_F(Packages, FeedUpdateOfAGoneComponentReportsToNobody) {
  setOpkg(gate.wait());
  {
    IpkgComponent component(jobs, notes);
    component.addCallback(listener("gone"));
    component.startCmd(host::IpkgCommand::CMD_UPDATE);
  }
  gate.open();
  runToEnd(jobs);
  EXPECT_EQ(notes.lines, Lines{"command: opkg update"});
}

}  // namespace
}  // namespace desk
