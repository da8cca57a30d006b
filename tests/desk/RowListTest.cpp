#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "desk/model/RowList.h"

namespace desk {
namespace {

std::vector<Row> rows(int count) {
  std::vector<Row> result;
  for (int number = 0; number < count; ++number) result.push_back({std::to_string(number), ""});
  return result;
}

/// A key and how far it moves the cursor.
struct Move {
  const char* key;
  int distance;
};

constexpr Move kMoves[] = {{"up", -1}, {"down", 1}, {"left", -10}, {"right", 10}};

TEST(RowList, DirectionKeysMoveByRowsAndPagesWithinTheRows) {
  for (const int count : {1, 2, 9, 10, 11, 25}) {
    for (int start = 0; start < count; ++start) {
      for (const Move& move : kMoves) {
        RowList list;
        list.setRows(rows(count));
        list.select(start);
        EXPECT_TRUE(list.handleKey(move.key));
        EXPECT_EQ(list.selected(), std::clamp(start + move.distance, 0, count - 1))
            << count << " rows, from " << start << " by " << move.key;
      }
    }
  }
}

TEST(RowList, OtherKeysAreNotItsOwn) {
  RowList list;
  list.setRows(rows(3));
  list.select(1);
  for (const char* key : {"ok", "exit", "red", "1", ""}) EXPECT_FALSE(list.handleKey(key)) << key;
  EXPECT_EQ(list.selected(), 1);
}

TEST(RowList, SelectTakesTheNearestRow) {
  RowList list;
  list.setRows(rows(3));
  list.select(7);
  EXPECT_EQ(list.selected(), 2);
  list.select(-7);
  EXPECT_EQ(list.selected(), 0);
}

TEST(RowList, NewRowsKeepTheCursorAsFarAsThereAreRows) {
  RowList list;
  list.setRows(rows(5));
  list.select(3);
  list.setRows(rows(8));
  EXPECT_EQ(list.selected(), 3);
  list.setRows(rows(2));
  EXPECT_EQ(list.selected(), 1);
  list.setRows({});
  EXPECT_EQ(list.selected(), 0);
  list.setRows(rows(5));
  EXPECT_EQ(list.selected(), 0);
}

TEST(RowList, EmptyListTakesDirectionKeysWithoutHarm) {
  RowList list;
  for (const Move& move : kMoves) {
    EXPECT_TRUE(list.handleKey(move.key));
    EXPECT_EQ(list.selected(), 0);
  }
}

}  // namespace
}  // namespace desk
