#pragma once

#include <string>

#include "desk/protocol/Frame.h"

namespace desk {

/// Rows with a cursor, which stays within them.
class RowList {
 public:
  const Rows& rows() const { return *rows_; }

  /// Returns the rows for longer than they are shown.
  SharedRows sharedRows() const { return rows_; }

  int selected() const { return selected_; }

  /// Replaces the rows; the cursor keeps its place as far as there are rows.
  void setRows(Rows rows);

  /// Puts the cursor on row `index`, or as near to it as there are rows.
  void select(int index);

  /// Moves the cursor as the direction key `key` does: a row up or down, a page left or right.
  /// Returns whether it is a direction key.
  bool handleKey(const std::string& key);

 private:
  SharedRows rows_ = noRows();
  int selected_ = 0;
};

}  // namespace desk
