#include "desk/model/Boxes.h"

#include <utility>

#include "base/Escape.h"

namespace desk {

MessageBoxLayer::MessageBoxLayer(MessageBox box) : Layer("MessageBox"), box_(std::move(box)) {
  if (isQuestion()) answers_.setRows({{"yes"}, {"no"}});
}

void MessageBoxLayer::handleKey(const std::string& key) {
  if (key == "exit") {
    close(false);
  } else if (key == "ok") {
    close(answers_.selected() == 0);
  } else {
    answers_.handleKey(key);
  }
}

void MessageBoxLayer::letTimeOutPass() {
  if (box_.timeout > 0) handleKey("ok");
}

RowList* MessageBoxLayer::rowList() {
  return isQuestion() ? &answers_ : nullptr;
}

Content MessageBoxLayer::content() const {
  return MessageContent{
      .type = box_.type, .text = base::escapeInvalidUtf8(box_.text), .timeout = box_.timeout};
}

ChoiceBoxLayer::ChoiceBoxLayer(const ChoiceBox& box)
    : Layer("ChoiceBox"), question_(box.title), choices_(box.list) {
  std::vector<Row> rows;
  for (const host::Object& choice : choices_) {
    rows.push_back({base::escapeInvalidUtf8(plain::textOf(choice.item(0)))});
  }
  rows_.setRows(std::move(rows));
}

Content ChoiceBoxLayer::content() const {
  return ChoiceContent{base::escapeInvalidUtf8(question_)};
}

void ChoiceBoxLayer::handleKey(const std::string& key) {
  if (key == "exit" || (key == "ok" && choices_.empty())) {
    close({});
  } else if (key == "ok") {
    close(choices_[static_cast<std::size_t>(rows_.selected())]);
  } else {
    rows_.handleKey(key);
  }
}

}  // namespace desk
