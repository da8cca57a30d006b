#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/plain/Model.h"
#include "tests/support/MemorySystem.h"
#include "tests/support/Raised.h"

namespace plain {
namespace {

/// The lines of the model's file and the model that they name.
struct Case {
  std::vector<std::string> lines;
  const char* model;
};

const Case kCases[] = {
    {{"solo2\n"}, "solo2"}, {{"duo"}, "duo"}, {{"solo2\n", "more\n"}, "solo2"},
    {{"zero \n"}, "zero "}, {{}, ""},         {{"\n"}, ""},
};

TEST(Model, IsTheFirstLineWithoutItsEnd) {
  for (const Case& one : kCases) {
    support::MemorySystem system;
    system.addText("/proc/stb/info/model", one.lines);
    EXPECT_EQ(readModel(system), one.model);
  }
}

TEST(Model, IsOfCharactersThatAShellTakesAsTheyStand) {
  for (const char* name : {"solo2", "ultimo4k", "A-1+"}) EXPECT_TRUE(isModel(name)) << name;
  for (const char* name : {"", "a b", "../x", "box;reboot", "a_b", "a.b", "\xff", "$x", "a\n"}) {
    EXPECT_FALSE(isModel(name)) << name;
  }
}

TEST(Model, MissingFileRaises) {
  support::MemorySystem system;
  EXPECT_EQ(support::raised([&] { readModel(system); }),
            "No such file or directory: '/proc/stb/info/model'");
}

}  // namespace
}  // namespace plain
