#include "host/receiver/Sessions.h"

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/receiver/PackageCommands.h"

namespace receiver {
namespace {

class DialogProxy : public host::OpenedDialog {
 public:
  explicit DialogProxy(Reference dialog) : dialog_(std::move(dialog)) {}
  void setTitle(const std::string& title) override { invoke<"setTitle">(dialog_, title); }

 private:
  Reference dialog_;
};

/// Adds to a call what opens each kind of dialog.
struct Opening {
  const Names& names;
  Arguments& arguments;

  void operator()(const host::MessageBox& box) const {
    const Reference message_box = names.get<"MessageBox">();
    arguments.add(message_box).add(box.text);
    if (box.type != host::MessageBox::TYPE_YESNO) {
      const bool is_error = box.type == host::MessageBox::TYPE_ERROR;
      arguments.add(is_error ? attribute<"TYPE_ERROR">(message_box)
                             : attribute<"TYPE_INFO">(message_box));
    }
    if (box.timeout != 0) arguments.add<"timeout">(box.timeout);
  }

  void operator()(const host::ChoiceBox& box) const {
    arguments.add(names.get<"ChoiceBox">()).add<"title">(box.title).add<"list">(box.list);
  }

  void operator()(const host::Console& console) const {
    arguments.add(names.get<"Console">())
        .add<"title">(console.title)
        .add<"cmdlist">(console.cmdlist);
  }

  void operator()(const host::Ipkg& ipkg) const {
    arguments.add(names.get<"Ipkg">()).add<"cmdList">(packageCommands(names, ipkg.cmdList));
  }

  void operator()(const host::ScreenClass& screen) const {
    arguments.add(names.get(toObject(screen.name).get()));
    for (const host::Value& argument : screen.arguments) arguments.add(argument);
  }
};

}  // namespace

std::unique_ptr<host::OpenedDialog> ScreenSession::open(const host::Dialog& dialog) {
  return opened("open", {}, dialog);
}

std::unique_ptr<host::OpenedDialog> ScreenSession::openWithCallback(const host::Answer& callback,
                                                                    const host::Dialog& dialog) {
  return opened("openWithCallback", Arguments().add(methodOf(callback)), dialog);
}

std::unique_ptr<host::OpenedDialog> ScreenSession::opened(const char* operation,
                                                          Arguments arguments,
                                                          const host::Dialog& dialog) {
  const Reference session = attribute<"session">(peer_.self());
  std::visit(Opening{names_, arguments}, dialog);
  return std::make_unique<DialogProxy>(arguments.passTo(attribute(session.get(), operation)));
}

}  // namespace receiver
