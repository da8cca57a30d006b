#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "command/output/JsonWriter.h"

namespace output {
namespace {

TEST(JsonWriter, PrintsMembersAndItemsALineEach) {
  std::ostringstream out;
  JsonWriter json(out);
  json.openObject();
  json.add("name", "a\"b");
  json.openList("empty");
  json.close();
  json.openList("list");
  json.addItem(1);
  json.addItem({{"x", 2}, {"y", nullptr}});
  json.close();
  json.openObject("object");
  json.openList("inner");
  json.addItem("z");
  json.close();
  json.add("last", true);
  json.close();
  json.close();
  EXPECT_EQ(out.str(), R"({
  "name": "a\"b",
  "empty": [],
  "list": [
    1,
    {"x":2,"y":null}
  ],
  "object": {
    "inner": [
      "z"
    ],
    "last": true
  }
}
)");
}

}  // namespace
}  // namespace output
