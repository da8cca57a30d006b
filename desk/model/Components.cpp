#include "desk/model/Components.h"

#include <utility>

#include "base/Escape.h"

namespace desk {

ListWidget::ListWidget(const host::Object& rows, Show show) : plain::ListWidget(rows), show_(show) {
  setList(rows);
}

void ListWidget::setList(const host::Object& new_rows) {
  std::vector<Row> shown;
  for (const host::Object& row : plain::itemsOf(new_rows)) shown.push_back(show_(row));
  plain::ListWidget::setList(new_rows);
  setRows(std::move(shown));
}

host::Object ListWidget::invoke(std::string_view name, host::Arguments arguments) {
  cursor = static_cast<std::size_t>(selected());
  return plain::ListWidget::invoke(name, arguments);
}

Row rowOfTuple(const host::Object& tuple) {
  const std::vector<host::Object>& items = plain::itemsOf(tuple);
  const auto shown = [](const host::Object& text) {
    return base::escapeInvalidUtf8(plain::textOf(text));
  };
  const bool has_picture = items.size() > 3 && !items[3].isNone();
  return {.text = shown(items.at(1)),
          .description = shown(items.at(2)),
          .picture = has_picture ? shown(items[3]) : ""};
}

Row rowOfName(const host::Object& name) {
  return {base::escapeInvalidUtf8(plain::textOf(name))};
}

}  // namespace desk
