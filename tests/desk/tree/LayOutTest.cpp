#include <glob.h>
#include <sys/resource.h>

#include <csignal>
#include <sstream>

#include "tests/desk/tree/TreeFixture.h"
#include "tests/support/Commands.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

class LayOut : public Directory {
 protected:
  const fs::path tree_ = dir_ / "tree";
};

std::size_t matches(const fs::path& tree, const std::string& pattern) {
  glob_t found;
  const int result = glob((tree.string() + pattern).c_str(), 0, nullptr, &found);
  const std::size_t count = result == 0 ? found.gl_pathc : 0;
  globfree(&found);
  return count;
}

TEST_F(LayOut, TreeKnowsItsModel) {
  for (const char* model : {"solo", "duo", "uno", "ultimo", "solo2", "duo2", "solose", "zero"}) {
    const fs::path tree = dir_ / model;
    layOut(tree, model);
    requireTree(tree);
    EXPECT_EQ(read(tree / "proc/stb/info/model"), std::string(model) + "\n");
    EXPECT_EQ(read(tree / ".stowline-receiver"),
              "stowline receiver tree 1\n" + std::string(model) + "\n");
  }
}

TEST_F(LayOut, EmptyDirectoryWillDo) {
  fs::create_directory(tree_);
  layOut(tree_, "solo2");
  requireTree(tree_);
}

TEST_F(LayOut, TwoTreesAreEqual) {
  layOut(tree_, "duo2");
  layOut(dir_ / "other", "duo2");
  EXPECT_EQ(snapshot(tree_), snapshot(dir_ / "other"));
}

TEST_F(LayOut, UsedReceiverHasEveryPlaceThatABackupLooksFor) {
  layOut(tree_, "solo2");
  for (const char* file : support::kChannelFiles) EXPECT_GT(matches(tree_, file), 0U) << file;
  for (const char* place : support::kConfigurationPlaces) {
    EXPECT_GT(matches(tree_, place), 0U) << place;
  }
  for (const char* excluded : support::kConfigurationExclusions) {
    EXPECT_GT(matches(tree_, std::string("/") + excluded), 0U) << excluded;
  }
}

TEST_F(LayOut, UsedReceiverHasAVideoWindowLocalPackagesAndAScript) {
  layOut(tree_, "solo2");
  for (const char* pattern :
       {"/proc/stb/vmpeg/0/dst_left", "/proc/stb/vmpeg/0/dst_top", "/proc/stb/vmpeg/0/dst_width",
        "/proc/stb/vmpeg/0/dst_height", "/media/hdd/qor-stowline/plugins/*.ipk",
        "/media/hdd/qor-stowline/restore_hello.sh"}) {
    EXPECT_GT(matches(tree_, pattern), 0U) << pattern;
  }
}

TEST_F(LayOut, ServiceDatabaseHoldsSeveralHundredServices) {
  layOut(tree_, "solo2");
  std::istringstream lines(read(tree_ / "etc/enigma2/lamedb"));
  int providers = 0;  // one line for each service
  for (std::string line; std::getline(lines, line);) providers += line.starts_with("p:");
  EXPECT_GE(providers, 500);
  EXPECT_LE(providers, 1500);
}

TEST_F(LayOut, EveryBouquetOfTheListsIsThere) {
  layOut(tree_, "solo2");
  for (const char* list : {"bouquets.tv", "bouquets.radio"}) {
    std::istringstream lines(read(tree_ / "etc/enigma2" / list));
    int bouquets = 0;
    for (std::string line; std::getline(lines, line);) {
      const std::size_t begin = line.find('"');
      if (begin == std::string::npos) continue;
      const std::string name = line.substr(begin + 1, line.rfind('"') - begin - 1);
      EXPECT_GT(fs::file_size(tree_ / "etc/enigma2" / name), 200U) << name;
      ++bouquets;
    }
    EXPECT_GE(bouquets, 2) << list;
  }
}

TEST_F(LayOut, SkinsHavePackagedAndOtherFiles) {
  layOut(tree_, "solo2");
  const auto packaged = [&](const char* package) {
    return read(tree_ / "var/lib/opkg/info" / (std::string(package) + ".list"));
  };
  const std::string atile = packaged("enigma2-plugin-skin-atile");
  const std::string vfd = packaged("enigma2-plugin-systemplugins-vfdskinselector");
  for (const auto& [list, file, expected] :
       {std::tuple{&atile, "/usr/share/enigma2/AtileHD/colors_atile_Blue.xml", true},
        {&atile, "/usr/share/enigma2/AtileHD/colors_atile_Harbour.xml", false},
        {&atile, "/usr/share/enigma2/AtileHD/font_atile_Roboto.xml", true},
        {&atile, "/usr/share/enigma2/AtileHD/font_atile_Large.xml", false},
        {&atile, "/usr/share/enigma2/AtileHD/allScreens/skin_infobar_Clock.xml", true},
        {&atile, "/usr/share/enigma2/AtileHD/allScreens/skin_infobar_Mine.xml", false},
        {&atile, "/usr/share/enigma2/AtileHD/preview/preview_infobar_Clock.png", true},
        {&atile, "/usr/share/enigma2/AtileHD/preview/preview_infobar_Mine.png", false},
        {&vfd, "/usr/share/enigma2/vfd_skin/skin_vfd_Big.xml", true},
        {&vfd, "/usr/share/enigma2/vfd_skin/skin_vfd_Kitchen.xml", false}}) {
    EXPECT_TRUE(fs::exists(tree_.string() + file)) << file;
    EXPECT_EQ(list->find(std::string(file) + "\n") != std::string::npos, expected) << file;
  }
}

TEST_F(LayOut, MountTableNamesTheMediaThatAreThere) {
  layOut(tree_, "solo2");
  std::istringstream lines(read(tree_ / "proc/mounts"));
  std::vector<std::string> media;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    std::string device;
    std::string mount_point;
    fields >> device >> mount_point;
    if (mount_point.starts_with("/media/")) media.push_back(mount_point);
  }
  EXPECT_EQ(media, (std::vector<std::string>{"/media/hdd", "/media/usb", "/media/net",
                                             "/media/net/autofs", "/media/net/autofs/nas",
                                             "/media/net/autonet", "/media/net/autonet/attic"}));
  for (const std::string& medium : media)
    EXPECT_TRUE(fs::exists(tree_.string() + medium)) << medium;
}

TEST_F(LayOut, NobodyCanListTheUnreadableShare) {
  layOut(tree_, "solo2");
  std::error_code error;
  const fs::directory_iterator unreadable(tree_ / "media/net/autonet/attic", error);
  EXPECT_EQ(error, std::errc::not_a_directory);
  const fs::directory_iterator reachable(tree_ / "media/net/autofs/nas", error);
  EXPECT_FALSE(error);
}

/// Lets no file grow beyond `bytes` while it lives: a medium that is too small.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    (void)std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    (void)std::signal(SIGXFSZ, SIG_DFL);
  }

 private:
  rlimit before_{};
};

TEST_F(LayOut, FailureHalfWayLeavesNothingBehind) {
  const auto layOutWithoutSpace = [&] {
    const FileSizeLimit limit(5000);
    return refusal([&] { layOut(tree_, "solo2"); });
  };
  const std::string line = layOutWithoutSpace();
  EXPECT_TRUE(line.starts_with("cannot lay out a receiver tree in '" + tree_.string() + "': '"))
      << line;
  EXPECT_TRUE(line.ends_with(": File too large")) << line;
  EXPECT_FALSE(fs::exists(tree_));

  fs::create_directory(tree_);
  EXPECT_EQ(layOutWithoutSpace(), line);
  EXPECT_TRUE(fs::is_empty(tree_));
}

TEST_F(LayOut, FlashThatBrokeOffLeavesAnIncompleteTreeThatCanBeFlashedAgain) {
  layOut(tree_, "uno");
  const Snapshot media = snapshot(tree_ / "media");
  {
    const FileSizeLimit limit(100000);  // less than the tools need
    const std::string line = refusal([&] { flash(tree_); });
    EXPECT_TRUE(line.starts_with("cannot flash '" + tree_.string() + "': '")) << line;
  }
  EXPECT_EQ(refusal([&] { requireTree(tree_); }),
            "the flash of '" + tree_.string() + "' broke off: repeat 'stowline receiver flash " +
                tree_.string() + "'");
  EXPECT_EQ(snapshot(tree_ / "media"), media);

  flash(tree_);
  requireTree(tree_);
  EXPECT_EQ(read(tree_ / "proc/stb/info/model"), "uno\n");
}

}  // namespace
}  // namespace desk
