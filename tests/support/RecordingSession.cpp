#include "tests/support/RecordingSession.h"

namespace support {
namespace {

class RecordingDialog : public host::OpenedDialog {
 public:
  explicit RecordingDialog(Journal& journal) : journal_(journal) {}
  void setTitle(const std::string& title) override {
    journal_.note("dialog.setTitle(" + quoted(title) + ")");
  }

 private:
  Journal& journal_;
};

/// Returns the type as an argument; a question is what a box is when no type is given.
std::string typeArgument(host::MessageBox::Type type) {
  switch (type) {
    case host::MessageBox::TYPE_YESNO:
      return "";
    case host::MessageBox::TYPE_INFO:
      return ", TYPE_INFO";
    case host::MessageBox::TYPE_ERROR:
      return ", TYPE_ERROR";
  }
  return ", unknown type";
}

std::string commandName(host::IpkgCommand command) {
  return command == host::IpkgCommand::CMD_INSTALL ? "CMD_INSTALL" : "CMD_UPDATE";
}

std::string arguments(const host::MessageBox& box) {
  return "MessageBox, " + quoted(box.text) + typeArgument(box.type) +
         (box.timeout ? ", timeout=" + std::to_string(box.timeout) : "");
}

std::string arguments(const host::ChoiceBox& box) {
  return "ChoiceBox, title=" + quoted(box.title) + ", list=" + bracketed(box.list);
}

std::string arguments(const host::Console& console) {
  return "Console, title=" + quoted(console.title) + ", cmdlist=" + bracketed(console.cmdlist);
}

std::string arguments(const host::Ipkg& screen) {
  std::string commands;
  for (const host::PackageCommand& command : screen.cmdList) {
    commands += (commands.empty() ? "(" : ", (") + commandName(command.command) +
                ", {\"package\": " + quoted(command.package) + "})";
  }
  return "Ipkg, cmdList=[" + commands + "]";
}

std::string arguments(const host::ScreenClass& screen) {
  std::string text = screen.name;
  for (const host::Value& argument : screen.arguments) text += ", " + described(argument);
  return text;
}

std::string describedDialog(const host::Dialog& dialog) {
  return std::visit([](const auto& kind) { return arguments(kind); }, dialog);
}

}  // namespace

void RecordingSession::answer(const host::Value& result) {
  const host::Answer callback = callback_.value();
  callback_.reset();
  callback.call(result);
}

std::unique_ptr<host::OpenedDialog> RecordingSession::open(const host::Dialog& dialog) {
  journal_.note("session.open(" + describedDialog(dialog) + ")");
  opened.push_back(dialog);
  return std::make_unique<RecordingDialog>(journal_);
}

std::unique_ptr<host::OpenedDialog> RecordingSession::openWithCallback(const host::Answer& callback,
                                                                       const host::Dialog& dialog) {
  journal_.note("session.openWithCallback(" + callback.name + ", " + describedDialog(dialog) + ")");
  opened.push_back(dialog);
  callback_ = callback;
  return std::make_unique<RecordingDialog>(journal_);
}

}  // namespace support
