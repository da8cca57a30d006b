#include "tests/plugin/RestoreListTest.h"

namespace stowline {
namespace {

using namespace expected;

struct PersonalScript : RestoreListTest {
  /// Opens the list with one script on a USB stick and selects it.
  void selectScript() {
    setMedium("/media/usb");
    host.system.addDirectory("/media/usb/qor-stowline");
    host.system.addFile("/media/usb/qor-stowline/restore_net.sh");
    openList("personalscript");
    peer().press("ok");
  }
};

TEST_F(PersonalScript, TranslatesTheQuestionWithoutTheName) {
  host.translations = {{"Are you sure you want to run\nfollowing script:\n", "Skript: "}};
  selectScript();
  EXPECT_EQ(std::get<host::MessageBox>(session.lastOpened()).text, "Skript: restore_net.sh");
}

TEST_F(PersonalScript, RunsInTheConsoleWhichTakesTheListWithIt) {
  selectScript();
  record.take();
  session.answer(true);
  EXPECT_EQ(record.take(), block(R"(
os.chmod("/media/usb/qor-stowline/restore_net.sh", 0755)
_("QOR Stowline is running personal script ...")
session.openWithCallback(keyCancel, Console, title="QOR Stowline is running personal script ...", cmdlist=["/media/usb/qor-stowline/./restore_net.sh"])
)"));
  EXPECT_EQ(list().cmdlist, std::vector<std::string>{"/media/usb/qor-stowline/./restore_net.sh"});
  EXPECT_FALSE(list().exe);
  session.answer();
  EXPECT_EQ(record.take(), "close()\n");
}

TEST_F(PersonalScript, AnyAnswerButYesLeavesTheListOpenAndUnchanged) {
  for (const host::Value& answer :
       {host::Value(false), host::Value(), host::Value("yes"), host::Value(2)}) {
    SCOPED_TRACE(described(answer));
    selectScript();
    record.take();
    session.answer(answer);
    EXPECT_EQ(record.take(), "");
    EXPECT_TRUE(list().cmdlist.empty());
  }
  list().runScript();
  EXPECT_EQ(record.take(), "");
}

}  // namespace
}  // namespace stowline
