#include "Sessions.h"

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "PackageCommands.h"

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
  std::vector<Reference>& arguments;
  Keywords& keywords;

  void operator()(const host::MessageBox& box) const {
    const Reference message_box = names.get<"MessageBox">();
    arguments.push_back(message_box);
    arguments.push_back(toObject(box.text));
    if (box.type != host::MessageBox::TYPE_YESNO) {
      const bool is_error = box.type == host::MessageBox::TYPE_ERROR;
      arguments.push_back(is_error ? attribute<"TYPE_ERROR">(message_box)
                                   : attribute<"TYPE_INFO">(message_box));
    }
    if (box.timeout != 0) keywords.add<"timeout">(box.timeout);
  }

  void operator()(const host::ChoiceBox& box) const {
    arguments.push_back(names.get<"ChoiceBox">());
    keywords.add<"title">(box.title).add<"list">(box.list);
  }

  void operator()(const host::Console& console) const {
    arguments.push_back(names.get<"Console">());
    keywords.add<"title">(console.title).add<"cmdlist">(console.cmdlist);
  }

  void operator()(const host::Ipkg& ipkg) const {
    arguments.push_back(names.get<"Ipkg">());
    keywords.add<"cmdList">(packageCommands(names, ipkg.cmdList));
  }

  void operator()(const host::ScreenClass& screen) const {
    arguments.push_back(names.get(toObject(screen.name).get()));
    for (const host::Value& argument : screen.arguments) arguments.push_back(toObject(argument));
  }
};

}  // namespace

std::unique_ptr<host::OpenedDialog> ScreenSession::open(const host::Dialog& dialog) {
  return opened("open", {}, dialog);
}

std::unique_ptr<host::OpenedDialog> ScreenSession::openWithCallback(const host::Answer& callback,
                                                                    const host::Dialog& dialog) {
  return opened("openWithCallback", {methodOf(callback)}, dialog);
}

std::unique_ptr<host::OpenedDialog> ScreenSession::opened(const char* operation,
                                                          std::vector<Reference> first,
                                                          const host::Dialog& dialog) {
  const Reference session = attribute<"session">(peer_.self());
  std::vector<Reference> arguments = std::move(first);
  Keywords keywords;
  std::visit(Opening{names_, arguments, keywords}, dialog);
  return std::make_unique<DialogProxy>(
      callWith(attribute(session.get(), operation), arguments, keywords));
}

}  // namespace receiver
