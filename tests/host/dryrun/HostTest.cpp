#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/dryrun/Host.h"
#include "tests/support/TemporaryDirectory.h"

namespace dryrun {
namespace {

using host::operator""_t;

struct HostTest : testing::Test {
  HostTest() {
    receiver.makeDirectory("proc/stb/info");
    receiver.write("proc/stb/info/model", "uno\n");
  }

  support::TemporaryDirectory receiver;
  System system{base::Root(receiver.path())};
  Host host{system, "", receiver / "settings"};
};

TEST_F(HostTest, ModelIsTheOneThatItsFilesNameUnlessOneIsGiven) {
  EXPECT_EQ(host.model(), "uno");
  EXPECT_EQ(Host(system, "duo2", "").model(), "duo2");
}

TEST_F(HostTest, DialogsAndPackageCommandsAreCountedAndDoNothing) {
  const host::Object box = host.named("MessageBox");
  const host::Object ipkg = host.named("IpkgComponent")();
  EXPECT_EQ(host.takeRequests(), 0U);
  host.session().call("open"_t, {box, "one"_t});
  host.session().call("openWithCallback"_t, {ipkg, box, "two"_t})["setTitle"_t]({"title"_t});
  ipkg["startCmd"_t]({host.named("IpkgComponent").get("CMD_UPDATE"_t)});
  EXPECT_EQ(host.takeRequests(), 3U);
  EXPECT_EQ(host.takeRequests(), 0U);
  EXPECT_EQ(system.takeCommands(), std::vector<std::string>{});
}

TEST_F(HostTest, LogLinesAreWrittenDownAndNotPrinted) {
  testing::internal::CaptureStdout();
  host.named("print")({"a line"_t});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(host.log(), std::vector<std::string>{"a line"});
}

}  // namespace
}  // namespace dryrun
