#include <gtest/gtest.h>

#include <string>

#include "host/plain/Host.h"
#include "tests/support/Recorder.h"

namespace plain {
namespace {

using host::operator""_t;

/// Two paths and what they join to.
struct Joining {
  const char* directory;
  const char* name;
  const char* joined;
};

constexpr Joining kJoinings[] = {
    {"/a", "b", "/a/b"}, {"/a/", "b", "/a/b"},  {"/a//", "b", "/a//b"},
    {"/", "b", "/b"},    {"", "b", "b"},        {"/a", "/b", "/b"},
    {"", "/b", "/b"},    {"/a", "", "/a/"},     {"/a/", "", "/a/"},
    {"", "", ""},        {"a", "b/c", "a/b/c"}, {"/a", "b\n\xff", "/a/b\n\xff"},
};

TEST(Host, JoinPutsOneSlashBetween) {
  support::MemorySystem system;
  support::MemorySettings settings;
  const Host host(system, settings);
  const Object join = host.named("os_path")["join"_t];
  for (const Joining& one : kJoinings) {
    const Object joined = join({std::string(one.directory), std::string(one.name)});
    EXPECT_EQ(textOf(joined), one.joined) << one.directory << " + " << one.name;
  }
}

}  // namespace
}  // namespace plain
