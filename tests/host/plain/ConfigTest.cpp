#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

#include "host/plain/Config.h"
#include "tests/support/Raised.h"
#include "tests/support/Recorder.h"

namespace plain {
namespace {

using host::operator""_t;
using Values = std::map<std::string, std::optional<std::string>>;

const std::string kPath = "config.plugins.qorpanel.stowline.backuprestorepath";

struct Config : testing::Test {
  Object branch() const { return config["plugins"_t]["qorpanel"_t]["stowline"_t]; }
  Object text() const { return branch()["backuprestorepath"_t]; }
  std::string value() const { return textOf(text()["value"_t]); }

  /// Attaches the branch, and its setting, afresh, as a load does.
  void attachBranch() const {
    config["plugins"_t]["qorpanel"_t]["stowline"_t] = make<ConfigSection>(settings);
  }
  void load() const {
    attachBranch();
    branch()["backuprestorepath"_t] = make<ConfigText>("/media/hdd/"_t);
  }

  /// Returns what is stored of the tree.
  Values stored() {
    config["save"_t]();
    return settings.values;
  }

  mutable support::MemorySettings settings;
  const Object config = newConfig(settings);
};

TEST_F(Config, FreshSettingHasItsStoredValueOrTheDefault) {
  load();
  EXPECT_EQ(value(), "/media/hdd/");
  settings.values[kPath] = "/media/usb";
  text()["value"_t] = "/media/unsaved"_t;
  EXPECT_EQ(value(), "/media/unsaved");
  load();
  EXPECT_EQ(value(), "/media/usb");
}

TEST_F(Config, OnlySavedValuesAreStored) {
  load();
  text()["value"_t] = "/media/usb"_t;
  EXPECT_EQ(stored(), (Values{{kPath, std::nullopt}}));
  branch()["save"_t]();
  EXPECT_EQ(settings.values, (Values{{kPath, std::nullopt}}));
  EXPECT_EQ(stored(), (Values{{kPath, "/media/usb"}}));
}

TEST_F(Config, UnsavedChangeKeepsTheStoredValue) {
  settings.values[kPath] = "/media/usb";
  load();
  text()["value"_t] = "/media/cf"_t;
  EXPECT_EQ(stored(), (Values{{kPath, "/media/usb"}}));
}

TEST_F(Config, DefaultIsStoredAsNothing) {
  settings.values[kPath] = "/media/usb";
  load();
  text()["value"_t] = "/media/hdd/"_t;
  text()["save"_t]();
  EXPECT_EQ(stored(), (Values{{kPath, std::nullopt}}));
}

TEST_F(Config, FreshBranchIsEmpty) {
  load();
  attachBranch();
  EXPECT_EQ(stored(), Values{});
  EXPECT_EQ(support::raised([&] { text(); }),
            "0 AttributeError: 'ConfigSubsection' object has no attribute 'backuprestorepath'");
}

}  // namespace
}  // namespace plain
