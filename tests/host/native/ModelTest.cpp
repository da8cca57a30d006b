#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/native/Model.h"
#include "host/native/NativeSystem.h"
#include "host/native/OsError.h"
#include "tests/support/Raised.h"

namespace native {
namespace {

/// An operating system whose one file is the model's.
class ModelFile : public NativeSystem {
 public:
  explicit ModelFile(std::vector<std::string> lines) : lines_(std::move(lines)) {}
  std::vector<std::string> open(const std::string& path) override {
    if (path != "/proc/stb/info/model") throw osError(ENOENT, path);
    return lines_;
  }

 private:
  std::vector<std::string> lines_;
};

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
    ModelFile os(one.lines);
    EXPECT_EQ(readModel(os), one.model);
  }
}

TEST(Model, IsOfCharactersThatAShellTakesAsTheyStand) {
  for (const char* name : {"solo2", "ultimo4k", "A-1+"}) EXPECT_TRUE(isModel(name)) << name;
  for (const char* name : {"", "a b", "../x", "box;reboot", "a_b", "a.b", "\xff", "$x", "a\n"}) {
    EXPECT_FALSE(isModel(name)) << name;
  }
}

TEST(Model, MissingFileRaises) {
  struct Empty : NativeSystem {
    std::vector<std::string> open(const std::string& path) override { throw osError(ENOENT, path); }
  } os;
  EXPECT_EQ(support::raised([&] { readModel(os); }),
            "2 OSError: [Errno 2] No such file or directory: '/proc/stb/info/model'");
}

}  // namespace
}  // namespace native
