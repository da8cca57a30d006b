#pragma once

#include "desk/model/RowList.h"
#include "host/plain/Widgets.h"

namespace desk {

/// A list of the framework, as a viewer sees it.
class ListWidget : public plain::ListWidget, public RowList {
 public:
  /// Returns what is shown of one of its rows.
  using Show = Row (*)(const host::Object& row);
  ListWidget(const host::Object& rows, Show show);

  void setList(const host::Object& new_rows) override;
  host::Object invoke(std::string_view name, host::Arguments arguments) override;

 private:
  const Show show_;
};

/// The menu's list shows a tuple's second item, with the third as its description and the fourth as
/// its picture; any other list shows names.
Row rowOfTuple(const host::Object& tuple);
Row rowOfName(const host::Object& name);

}  // namespace desk
