#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/include/Error.h"
#include "host/look/Host.h"
#include "tests/support/TemporaryDirectory.h"

namespace look {
namespace {

struct HostTest : testing::Test {
  HostTest() {
    receiver.makeDirectory("proc/stb/info");
    receiver.write("proc/stb/info/model", "uno\n");
  }

  support::TemporaryDirectory receiver;
  System system{native::Root(receiver.path())};
  Host host{system, "", receiver / "settings"};
  Peer peer;
};

TEST_F(HostTest, ModelIsTheOneThatItsFilesNameUnlessOneIsGiven) {
  EXPECT_EQ(host.deviceName(), "uno");
  EXPECT_EQ(Host(system, "duo2", "").deviceName(), "duo2");
}

TEST_F(HostTest, DialogsAndLogLinesAreWrittenDown) {
  host.open(host::MessageBox{.text = "one"});
  host.openWithCallback({}, host::MessageBox{.text = "two"})->setTitle("title");
  std::vector<std::string> texts;
  for (const host::Dialog& dialog : host.takeDialogs()) {
    texts.push_back(std::get<host::MessageBox>(dialog).text);
  }
  EXPECT_EQ(texts, (std::vector<std::string>{"one", "two"}));
  EXPECT_TRUE(host.takeDialogs().empty());
  testing::internal::CaptureStdout();
  host.print("a line");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(host.log(), std::vector<std::string>{"a line"});
}

TEST_F(HostTest, PackageManagerIsAskedForNothingButTold) {
  const auto ipkg = host.components().makeIpkgComponent();
  EXPECT_FALSE(host.takePackageCommand());
  ipkg->startCmd(host::IpkgCommand::CMD_UPDATE);
  EXPECT_TRUE(host.takePackageCommand());
  EXPECT_FALSE(host.takePackageCommand());
}

TEST_F(HostTest, CursorStandsWhereItIsPut) {
  const auto list = host.components().makeMenuList({"first", "second"});
  EXPECT_EQ(list->getCurrent(), host::Value("first"));
  std::static_pointer_cast<MenuList>(list)->select(1);
  EXPECT_EQ(list->getCurrent(), host::Value("second"));
  list->setList({"only"});
  EXPECT_TRUE(list->getCurrent().isNothing());
}

TEST_F(HostTest, KeyCallsWhatAScreensMapBindsToIt) {
  std::vector<std::string> pressed;
  const auto note = [&](const std::string& text) {
    return host::Action{nullptr, text, [&pressed, text] { pressed.push_back(text); }};
  };
  peer.setItem("actions", host.components().makeActionMap(
                              {.contexts = {"SetupActions"}, .bindings = {{"ok", note("ok")}}}));
  peer.setItem("colours",
               host.components().makeNumberActionMap(
                   {.contexts = {"ColorActions"}, .bindings = {{"green", note("green")}}}));
  for (const char* key : {"green", "ok", "yellow"}) peer.press(key);
  EXPECT_EQ(pressed, (std::vector<std::string>{"green", "ok"}));
}

TEST_F(HostTest, WidgetOfAnotherKindOrNoneIsAnError) {
  peer.setItem("messagetext", host.components().makeLabel("text"));
  EXPECT_TRUE(peer.label("messagetext"));
  EXPECT_THROW(peer.menuList("messagetext"), host::Error);
  EXPECT_THROW(peer.label("none"), host::Error);
  EXPECT_THROW(peer.callOperation("setStatus", "error"), host::Error);
}

}  // namespace
}  // namespace look
