#include "desk/model/Dialogs.h"

namespace desk {
namespace {

std::string textOrNothing(const host::Object& object) {
  return object.isNone() ? "" : plain::textOf(object);
}

MessageBox messageBox(const plain::Dialog& asked) {
  using Type = MessageContent::Type;
  const std::string type =
      asked.arguments.size() > 1 ? plain::nodeOf(asked.arguments[1]).str() : "TYPE_YESNO";
  const auto* const timeout = plain::as<plain::Number>(asked.keyword("timeout"));
  return {.text = plain::textOf(asked.arguments.at(0)),
          .type = type == "TYPE_INFO"    ? Type::info
                  : type == "TYPE_ERROR" ? Type::error
                                         : Type::yesno,
          .timeout = timeout ? static_cast<int>(timeout->number) : 0};
}

Ipkg packages(const plain::Dialog& asked) {
  using host::operator""_t;
  Ipkg ipkg;
  for (const host::Object& command : plain::itemsOf(asked.keyword("cmdList"))) {
    ipkg.packages.push_back(plain::textOf(command.item(1).item("package"_t)));
  }
  return ipkg;
}

}  // namespace

Dialog dialogOf(const plain::Dialog& asked) {
  if (asked.name == "MessageBox") return messageBox(asked);
  if (asked.name == "ChoiceBox") {
    return ChoiceBox{.title = textOrNothing(asked.keyword("title")),
                     .list = plain::itemsOf(asked.keyword("list"))};
  }
  if (asked.name == "Console") {
    return Console{.title = textOrNothing(asked.keyword("title")),
                   .cmdlist = plain::textsOf(asked.keyword("cmdlist"))};
  }
  if (asked.name == "Ipkg") return packages(asked);
  return ModuleScreen{.name = asked.name, .type = asked.type, .arguments = asked.arguments};
}

}  // namespace desk
