#pragma once

#include <string>

#include "desk/model/Dialogs.h"
#include "desk/model/Layer.h"

namespace desk {

/// A message or a yes/no question. Exit answers no; ok answers yes unless the cursor is on no.
class MessageBoxLayer : public Layer {
 public:
  explicit MessageBoxLayer(MessageBox box);

  void handleKey(const std::string& key) override;
  void letTimeOutPass() override;
  RowList* rowList() override;
  Content content() const override;

 private:
  bool isQuestion() const { return box_.type == MessageContent::Type::yesno; }

  MessageBox box_;
  RowList answers_;
};

/// A choice among tuples. Exit leaves it with nothing, as does ok when there is nothing to choose.
class ChoiceBoxLayer : public Layer {
 public:
  explicit ChoiceBoxLayer(const ChoiceBox& box);

  void handleKey(const std::string& key) override;
  RowList* rowList() override { return &rows_; }
  Content content() const override;

 private:
  std::string question_;
  std::vector<host::Object> choices_;
  RowList rows_;
};

}  // namespace desk
