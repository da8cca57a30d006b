#pragma once

#include <sys/types.h>

#include <iosfwd>
#include <optional>
#include <string>

namespace command_test {

/// As whom a scenario runs the command.
enum class Account { root, ordinary };

/// "AsRoot" or "AsUser", for the names of tests.
std::string accountName(Account account);
void PrintTo(Account account, std::ostream* output);

/// Says why no scenario can run as `account` here; nothing when it can.
std::optional<std::string> whyUnavailable(Account account);

/// While it lives, the test program makes files as `account` does, and its processes are that
/// account's. A test program that is not root acts as itself.
class ActingAs {
 public:
  explicit ActingAs(Account account);
  ~ActingAs();
  ActingAs(const ActingAs&) = delete;
  ActingAs& operator=(const ActingAs&) = delete;
};

/// Makes this process, a child of the test program, for good what that acts as.
void becomeForGood(uid_t user, gid_t group);

}  // namespace command_test
