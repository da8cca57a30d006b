#pragma once

#include <memory>
#include <string>
#include <vector>

namespace desk {

/// What a viewer sees of one row: its text and, where it has them, its description and the path of
/// its picture.
struct Row {
  std::string text;
  std::string description = {};
  std::string picture = {};
};

/// Rows as they are shown at one time.
using Rows = std::vector<Row>;

/// Rows with a cursor, which stays within them.
class RowList {
 public:
  const Rows& rows() const { return *rows_; }

  /// Returns the rows for longer than they are shown: equal pointers mean that nothing has changed.
  std::shared_ptr<const Rows> sharedRows() const { return rows_; }

  int selected() const { return selected_; }

  /// Replaces the rows; the cursor keeps its place as far as there are rows.
  void setRows(Rows rows);

  /// Puts the cursor on row `index`, or as near to it as there are rows.
  void select(int index);

  /// Moves the cursor as the direction key `key` does: a row up or down, a page left or right.
  /// Returns whether it is a direction key.
  bool handleKey(const std::string& key);

 private:
  std::shared_ptr<const Rows> rows_ = std::make_shared<const Rows>();
  int selected_ = 0;
};

}  // namespace desk
