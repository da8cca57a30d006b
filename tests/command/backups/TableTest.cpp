#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "command/output/Table.h"

namespace output {
namespace {

TEST(Table, ColumnsAreAsWideAsTheirWidestCellAndNumbersStandRight) {
  Table table({{"NAME"}, {"SIZE", true}, {"NOTE"}});
  table.add({"a", "1", ""});
  table.add({"h\xc3\xa9llo", "12345", "x"});
  std::ostringstream out;
  table.print(out);
  EXPECT_EQ(out.str(),
            "NAME    SIZE  NOTE\n"
            "a          1\n"
            "h\xc3\xa9llo  12345  x\n");
}

TEST(Count, OneThingHasNoS) {
  EXPECT_EQ(counted(0, "backup"), "0 backups");
  EXPECT_EQ(counted(1, "backup"), "1 backup");
  EXPECT_EQ(counted(2, "backup"), "2 backups");
}

TEST(Size, IsShownInUnitsOf1024) {
  struct Case {
    long long bytes;
    const char* text;
  };
  constexpr Case kCases[] = {
      {0, "0 B"},
      {1023, "1023 B"},
      {1024, "1.0 KiB"},
      {16452, "16.1 KiB"},
      {1024 * 1024 - 1, "1.0 MiB"},
      {1536LL * 1024 * 1024, "1.5 GiB"},
      {5LL << 40, "5.0 TiB"},
  };
  for (const Case& one : kCases) EXPECT_EQ(sizeText(one.bytes), one.text);
}

}  // namespace
}  // namespace output
