#pragma once

#include <string>
#include <vector>

#include "desk/model/RowList.h"
#include "host/include/Widgets.h"

namespace desk {

/// A widget that shows one text.
struct TextWidget {
  std::string shown;
};

class StaticText : public host::StaticText, public TextWidget {
 public:
  void setText(const std::string& text) override { shown = text; }
};

class Label : public host::Label, public TextWidget {
 public:
  void setText(const std::string& text) override { shown = text; }
};

/// The menu's list. It shows a tuple's second item, with the third as its description and the
/// fourth as its picture.
class List : public host::List, public RowList {
 public:
  void setList(const host::Value::List& entries) override;
  host::Value getCurrent() override;

 private:
  host::Value::List entries_;
};

class MenuList : public host::MenuList, public RowList {
 public:
  void setList(const std::vector<std::string>& rows) override;
  host::Value getCurrent() override;

 private:
  std::vector<std::string> names_;
};

class ActionMap : public host::ActionMap {
 public:
  explicit ActionMap(host::ActionMapping its_mapping) : mapping(std::move(its_mapping)) {}

  /// Calls what the map binds to `key`. Returns whether it binds anything.
  bool handleKey(const std::string& key) const;

  const host::ActionMapping mapping;
};

}  // namespace desk
