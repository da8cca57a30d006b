#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/SystemError.h"
#include "command/backups/Catalogue.h"
#include "command/backups/Outdated.h"
#include "tests/support/TemporaryDirectory.h"

namespace backups {
namespace {

using Lines = std::vector<std::string>;

/// A medium with a backup directory.
struct CatalogueTest : testing::Test {
  CatalogueTest() { medium.makeDirectory("qor-stowline"); }

  void add(const std::string& name, std::size_t size = 20000) {
    medium.write("qor-stowline/" + name, std::string(size, 'x'));
  }

  Catalogue read(const std::string& model = "") const {
    return readCatalogue(medium.path(), model);
  }

  Lines outdatedFor(const std::string& model) const {
    Catalogue catalogue = read();
    markOutdated(catalogue, model);
    Lines names;
    const auto add = [&](const File& file) {
      if (file.is_outdated) names.push_back(file.name);
    };
    for (const BackupSet& set : catalogue.sets) {
      add(set.file);
      std::ranges::for_each(set.companions, add);
    }
    std::ranges::for_each(catalogue.others, add);
    return names;
  }

  /// Returns a line for each set: kind, name, what is kept, companions, and what becomes of it.
  Lines setsFor(const std::string& model) const {
    constexpr const char* kWords[] = {"yes",     "too small", "other model",
                                      "no file", "odd name",  "unreadable"};
    Lines lines;
    for (const BackupSet& set : read(model).sets) {
      std::string line = std::string(set.kind->word) + " " + set.file.name + " keeps:";
      for (const std::string& file : set.keeps) line += " " + file;
      line += " with:";
      for (const File& file : set.companions) line += " " + file.name;
      lines.push_back(line + " " + kWords[static_cast<int>(set.restore)]);
    }
    return lines;
  }

  support::TemporaryDirectory medium;
};

TEST_F(CatalogueTest, SetsStandByKindAndAsTheRestoreListOrdersThem) {
  for (const char* name :
       {"settings_20240301_07-04_solo2.tar.gz", "pluginlist_20240301_07-04_solo2.lst",
        "settings_20240305_07-04_solo2.auto.tar.gz", "configuration_my own.tar.gz",
        "configuration_ver_c_20240301_07-04_solo2.tar.gz"}) {
    add(name);
  }
  const Lines all = {
      "settings settings_20240305_07-04_solo2.auto.tar.gz keeps: with: yes",
      "settings settings_20240301_07-04_solo2.tar.gz keeps: with: yes",
      "configuration configuration_ver_c_20240301_07-04_solo2.tar.gz keeps: with: yes",
      "configuration configuration_my own.tar.gz keeps: /etc/samba/smb.conf /etc/fstab "
      "/etc/passwd /etc/shadow with: odd name",
      "plugins pluginlist_20240301_07-04_solo2.lst keeps: with: yes",
  };
  EXPECT_EQ(setsFor("solo2"), all);
  EXPECT_EQ(setsFor(""), all);
}

TEST_F(CatalogueTest, OtherModelsListIsAskedForWhatItListsAlone) {
  add("settings_20240301_07-04_solo.tar.gz");
  add("settings_20240301_07-04_solo2.tar.gz");
  add("settings_any.tar.gz");
  add("settings_20240301_07-04_strange.tar.gz");
  EXPECT_EQ(setsFor("solo"), (Lines{
                                 "settings settings_any.tar.gz keeps: with: yes",
                                 "settings settings_20240301_07-04_strange.tar.gz keeps: with: yes",
                                 "settings settings_20240301_07-04_solo2.tar.gz keeps: with: other "
                                 "model",
                                 "settings settings_20240301_07-04_solo.tar.gz keeps: with: yes",
                             }));
  EXPECT_EQ(setsFor("").size(), 4U);
}

TEST_F(CatalogueTest, SmallArchivesAreListedAndNotRestored) {
  add("settings_20240301_07-04_uno.tar.gz", 9999);
  add("settings_20240302_07-04_uno.tar.gz", 10000);
  add("configuration_ver_b_20240301_07-04_uno.tar.gz", 9999);
  add("configuration_ver_b_20240301_07-04_uno.tar.gz_user_files", 5);
  add("pluginlist_20240301_07-04_uno.lst", 1);
  EXPECT_EQ(
      setsFor("uno"),
      (Lines{
          "settings settings_20240302_07-04_uno.tar.gz keeps: with: yes",
          "settings settings_20240301_07-04_uno.tar.gz keeps: with: too small",
          "configuration configuration_ver_b_20240301_07-04_uno.tar.gz keeps: /etc/samba/smb.conf "
          "with: configuration_ver_b_20240301_07-04_uno.tar.gz_user_files too small",
          "plugins pluginlist_20240301_07-04_uno.lst keeps: with: yes",
      }));
}

TEST_F(CatalogueTest, CompanionsBelongToTheirArchiveAndOtherFilesToNone) {
  const std::string archive = "configuration_ver_c_20240301_07-04_solo2.tar.gz";
  add(archive);
  add(archive + "_user_files", 70);
  add(archive + "_atile_hd", 7);
  add("configuration_ver_c_20240201_07-04_solo2.tar.gz_user_files", 3);
  add("restore_me.sh", 100);
  const Catalogue catalogue = read();
  EXPECT_EQ(setsFor(""), Lines{"configuration " + archive + " keeps: with: " + archive +
                               "_atile_hd " + archive + "_user_files yes"});
  Lines others;
  for (const File& file : catalogue.others) others.push_back(file.name);
  EXPECT_EQ(others,
            (Lines{"configuration_ver_c_20240201_07-04_solo2.tar.gz_user_files", "restore_me.sh"}));
  EXPECT_EQ(catalogue.size, 20077);
}

TEST_F(CatalogueTest, NextScheduledBackupDeletesTheOldestOfFourOfItsModel) {
  for (const char* day : {"01", "02", "03"}) {
    for (const char* model : {"solo2", "duo2"}) {
      const std::string stamp = std::string("_202403") + day + "_07-04_" + model;
      add("settings" + stamp + ".auto.tar.gz");
      add("configuration_ver_c" + stamp + ".auto.tar.gz");
      add("configuration_ver_c" + stamp + ".auto.tar.gz_user_files");
      add("configuration_ver_c" + stamp + ".tar.gz");
    }
  }
  add("pluginlist_20240301_07-04_solo2.auto.lst");
  EXPECT_EQ(outdatedFor("solo2"),
            (Lines{"settings_20240301_07-04_solo2.auto.tar.gz",
                   "configuration_ver_c_20240301_07-04_solo2.auto.tar.gz",
                   "configuration_ver_c_20240301_07-04_solo2.auto.tar.gz_user_files"}));
  EXPECT_EQ(outdatedFor("").size(), 6U);
  EXPECT_EQ(outdatedFor("uno"), Lines{});
}

TEST_F(CatalogueTest, BackupsOfTheNextMinuteAreNotCountedTwiceAndNoneThatIsNotThereIsNamed) {
  for (const char* year : {"2997", "2998", "2999"}) {
    add(std::string("settings_") + year + "0301_07-04_solo2.auto.tar.gz");
  }
  EXPECT_EQ(outdatedFor("solo2"), Lines{});
}

TEST_F(CatalogueTest, ModelsOfNoTagListAlikeAndHaveTheirOwnScheduledBackups) {
  for (const char* model : {"box", "other"}) {
    for (const char* day : {"01", "02", "03"}) {
      add(std::string("settings_202403") + day + "_07-04_" + model + ".auto.tar.gz");
    }
  }
  EXPECT_EQ(outdatedFor(""), (Lines{"settings_20240301_07-04_other.auto.tar.gz",
                                    "settings_20240301_07-04_box.auto.tar.gz"}));
  EXPECT_EQ(outdatedFor("box"), Lines{"settings_20240301_07-04_box.auto.tar.gz"});
  EXPECT_EQ(setsFor("box"), setsFor("other"));
}

TEST_F(CatalogueTest, WhatIsNoFileIsASetThatCannotBeRestored) {
  medium.makeLink("qor-stowline/settings_20240301_07-04_uno.tar.gz", "nowhere");
  medium.makeDirectory("qor-stowline/settings_20240302_07-04_uno.tar.gz");
  EXPECT_EQ(setsFor("uno"),
            (Lines{"settings settings_20240302_07-04_uno.tar.gz keeps: with: no file",
                   "settings settings_20240301_07-04_uno.tar.gz keeps: with: no file"}));
}

TEST_F(CatalogueTest, NothingOnTheMediumIsTouched) {
  for (int day = 1; day <= 5; ++day) {
    add("settings_2024030" + std::to_string(day) + "_07-04_solo2.auto.tar.gz");
  }
  EXPECT_EQ(outdatedFor("solo2").size(), 3U);
  const auto files = std::filesystem::directory_iterator(medium / "qor-stowline");
  EXPECT_EQ(std::distance(begin(files), end(files)), 5);
}

TEST_F(CatalogueTest, MediumWithoutABackupDirectoryIsToldFromOneThatIsNotThere) {
  support::TemporaryDirectory empty;
  EXPECT_THROW(readCatalogue(empty.path(), ""), std::runtime_error);
  EXPECT_FALSE(std::filesystem::exists(empty / "qor-stowline"));
  EXPECT_THROW(readCatalogue(empty / "none", ""), base::SystemError);
}

TEST_F(CatalogueTest, DeletionsOfNamesThatSayNothingAreFoundForEveryModel) {
  for (const char* name : {"a", "b", "c", "d"}) {
    add(std::string("settings_") + name + "_solo2.auto.tar.gz");
  }
  EXPECT_EQ(outdatedFor(""), Lines{"settings_a_solo2.auto.tar.gz"});
  EXPECT_EQ(outdatedFor("solo2"), Lines{"settings_a_solo2.auto.tar.gz"});
}

TEST_F(CatalogueTest, ModelWhoseNameEndsThatOfAnotherDeletesTheOthersToo) {
  add("settings_20240304_07-04_o2.auto.tar.gz");
  for (const char* day : {"01", "02", "03"}) {
    add(std::string("settings_202403") + day + "_07-04_solo2.auto.tar.gz");
  }
  EXPECT_EQ(outdatedFor("solo2"), Lines{"settings_20240301_07-04_solo2.auto.tar.gz"});
  const Lines two = {"settings_20240302_07-04_solo2.auto.tar.gz",
                     "settings_20240301_07-04_solo2.auto.tar.gz"};
  EXPECT_EQ(outdatedFor("o2"), two);
  EXPECT_EQ(outdatedFor(""), two);
}

TEST_F(CatalogueTest, OldestGoOfMoreThanTheEngineIsShownAtOnce) {
  constexpr int kMany = 2500;
  for (int number = 0; number < kMany; ++number) {
    add("pluginlist_" + std::to_string(10000 + number) + "_uno.auto.lst", 0);
  }
  Lines all_but_two;
  for (int number = kMany - 3; number >= 0; --number) {
    all_but_two.push_back("pluginlist_" + std::to_string(10000 + number) + "_uno.auto.lst");
  }
  EXPECT_EQ(outdatedFor("uno"), all_but_two);
}

TEST_F(CatalogueTest, WhatIsNamedAsACompanionGoesWithAnyBackup) {
  for (const char* day : {"01", "02", "03"}) {
    add(std::string("settings_202403") + day + "_07-04_uno.auto.tar.gz");
  }
  add("settings_20240301_07-04_uno.auto.tar.gz_user_files");
  medium.makeLink("qor-stowline/settings_20240301_07-04_uno.auto.tar.gz_atile_hd", "nowhere");
  EXPECT_EQ(outdatedFor("uno"), (Lines{"settings_20240301_07-04_uno.auto.tar.gz",
                                       "settings_20240301_07-04_uno.auto.tar.gz_user_files"}));
}

TEST_F(CatalogueTest, NameThatIsTooLongForACompanionIsASetAsAnyOther) {
  Lines names;
  for (const char number : {'3', '2', '1'}) {
    const std::string ending = "_uno.auto.tar.gz";
    std::string name = std::string("configuration_") + number;
    name += std::string(NAME_MAX - name.size() - ending.size(), 'x') + ending;
    add(name);
    names.push_back(name);
  }
  EXPECT_EQ(read("uno").sets.size(), 3U);
  EXPECT_EQ(outdatedFor("uno"), Lines{names.back()});
}

TEST_F(CatalogueTest, NameThatIsNoTextIsASetAsAnyOther) {
  add("settings_\xff\n.tar.gz");
  EXPECT_EQ(setsFor("solo2"), Lines{"settings settings_\xff\n.tar.gz keeps: with: odd name"});
}

}  // namespace
}  // namespace backups
