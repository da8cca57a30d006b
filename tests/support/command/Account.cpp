#include "tests/support/command/Account.h"

#include <grp.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdlib>
#include <ostream>
#include <system_error>

#include "tests/support/command/Process.h"

namespace command_test {
namespace {

constexpr uid_t kOrdinaryUser = 65534;
constexpr gid_t kOrdinaryGroup = 65534;

void require(int result, const char* what) {
  if (result != 0) throw std::system_error(errno, std::generic_category(), what);
}

std::optional<std::string> whyNoUserNamespace() {
  const ActingAs user(Account::ordinary);
  const Outcome probe = run({"unshare", "--map-root-user", "true"});
  if (probe.status == 0) return std::nullopt;
  return "this machine gives an ordinary user no user namespace: " + probe.errors;
}

}  // namespace

std::string accountName(Account account) {
  return account == Account::root ? "AsRoot" : "AsUser";
}

void PrintTo(Account account, std::ostream* output) {
  *output << accountName(account);
}

std::optional<std::string> whyUnavailable(Account account) {
  if (account == Account::ordinary) return whyNoUserNamespace();
  if (getuid() != 0) return "the tests do not run as root";
  return std::nullopt;
}

ActingAs::ActingAs(Account account) {
  if (account == Account::root || getuid() != 0) return;
  require(setegid(kOrdinaryGroup), "setegid");
  require(seteuid(kOrdinaryUser), "seteuid");
}

ActingAs::~ActingAs() {
  if (seteuid(getuid()) != 0 || setegid(getgid()) != 0) std::abort();
  prctl(PR_SET_DUMPABLE, 1);
}

void becomeForGood(uid_t user, gid_t group) {
  if (getuid() == user) return;
  require(seteuid(getuid()), "seteuid");
  require(setgroups(0, nullptr), "setgroups");
  require(setgid(group), "setgid");
  require(setuid(user), "setuid");
  // Otherwise the files of this process under /proc stay root's.
  require(prctl(PR_SET_DUMPABLE, 1), "prctl");
}

}  // namespace command_test
