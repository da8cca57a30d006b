#include "tests/plugin/RestoreListTest.h"

namespace stowline {
namespace {

using namespace expected;

struct PersonalScript : RestoreListTest {
  /// Opens the list with one script on a USB stick, selects it, and forgets the operations so far.
  void selectScript() {
    setMedium("/media/usb");
    host.system.addDirectory("/media/usb/qor-stowline");
    host.system.addFile("/media/usb/qor-stowline/restore_net.sh");
    openList("personalscript");
    list().press("ok");
    record.take();
  }
};

TEST_F(PersonalScript, TranslatesTheQuestionWithoutTheName) {
  host.translations = {{"Are you sure you want to run\nfollowing script:\n", "Skript: "}};
  selectScript();
  EXPECT_EQ(described(host.opened.back().arguments.at(0)), "\"Skript: restore_net.sh\"");
}

TEST_F(PersonalScript, RunsInTheConsoleWhichTakesTheListWithIt) {
  selectScript();
  host.answer(true);
  EXPECT_EQ(record.take(), block(R"(
os.chmod("/media/usb/qor-stowline/restore_net.sh", 0755)
_("QOR Stowline is running personal script ...")
session.openWithCallback(keyCancel, Console, title="QOR Stowline is running personal script ...", cmdlist=["/media/usb/qor-stowline/./restore_net.sh"])
)"));
  EXPECT_EQ(list().attribute("cmdlist"), R"(["/media/usb/qor-stowline/./restore_net.sh"])");
  EXPECT_EQ(list().attribute("exe"), "False");
  host.answer();
  EXPECT_EQ(record.take(), "close()\n");
}

TEST_F(PersonalScript, AnyAnswerButYesLeavesTheListOpenAndUnchanged) {
  for (const Object& answer : {Object(false), Object(), Object("yes"_t), Object(2)}) {
    SCOPED_TRACE(described(answer));
    selectScript();
    host.answer(answer);
    EXPECT_EQ(record.take(), "");
    EXPECT_EQ(list().attribute("cmdlist"), "missing");
  }
  list().call("runScript");
  EXPECT_EQ(record.take(), "");
}

}  // namespace
}  // namespace stowline
