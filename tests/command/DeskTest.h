#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "tests/command/Account.h"
#include "tests/command/Frames.h"
#include "tests/command/Receiver.h"

namespace command_test {

/// A scenario on a receiver that has been in use, as an account that a derived fixture names.
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

/// A scenario that runs once as root and once as an ordinary user.
class DeskTest : public ReceiverTest, public testing::WithParamInterface<Account> {
 protected:
  void SetUp() override { layOut(GetParam()); }
};

inline const auto kAccounts = testing::Values(Account::root, Account::ordinary);

inline std::string nameOfAccount(const testing::TestParamInfo<Account>& info) {
  return accountName(info.param);
}

}  // namespace command_test
