#pragma once

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

/// Rows with a cursor, which stays within them.
class RowList {
 public:
  const std::vector<Row>& rows() const { return rows_; }
  int selected() const { return selected_; }

  /// Replaces the rows; the cursor keeps its place as far as there are rows.
  void setRows(std::vector<Row> rows);

  /// Puts the cursor on row `index`, or as near to it as there are rows.
  void select(int index);

  /// Moves the cursor as the direction key `key` does: a row up or down, a page left or right.
  /// Returns whether it is a direction key.
  bool handleKey(const std::string& key);

 private:
  std::vector<Row> rows_;
  int selected_ = 0;
};

}  // namespace desk
