#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>

#include "tests/support/command/Account.h"
#include "tests/support/command/Frames.h"
#include "tests/support/command/Receiver.h"

namespace command_test {

/// A scenario on a receiver that has been in use, as the account that a derived fixture names.
class ReceiverTest : public testing::Test {
 protected:
  /// Lays the receiver out, or skips the test where the account is not to be had.
  void layOut(Account account) {
    if (const auto reason = whyUnavailable(account)) GTEST_SKIP() << *reason;
    acting_.emplace(account);
    receiver_.emplace();
  }

  Receiver& receiver() { return *receiver_; }

 private:
  std::optional<ActingAs> acting_;
  std::optional<Receiver> receiver_;
};

/// A scenario that runs as whoever runs the tests, unless a derived fixture names another account.
class DeskTest : public ReceiverTest {
 protected:
  void SetUp() override { layOut(account()); }
  virtual Account account() const { return getuid() == 0 ? Account::root : Account::ordinary; }
};

/// A scenario in which the account matters: it runs once as root and once as an ordinary user.
class EveryAccountTest : public ReceiverTest, public testing::WithParamInterface<Account> {
 protected:
  void SetUp() override { layOut(GetParam()); }
};

inline const auto kAccounts = testing::Values(Account::root, Account::ordinary);

inline std::string nameOfAccount(const testing::TestParamInfo<Account>& info) {
  return accountName(info.param);
}

}  // namespace command_test
