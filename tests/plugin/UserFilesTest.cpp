#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {
namespace {

using host::list;
using Paths = std::vector<std::string>;

const std::string kAtile = "/usr/share/enigma2/AtileHD";
const std::string kAtilePackage = "/var/lib/opkg/info/enigma2-plugin-skin-atile.list";
const std::string kVfd = "/usr/share/enigma2/vfd_skin";
const std::string kVfdPackage =
    "/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list";

struct UserFiles : ModuleTest {
  UserFiles() { record.take(); }

  /// Returns the paths that an operation of the engine finds.
  Paths found(const char* operation, host::Arguments arguments = {}) {
    return plain::textsOf(actions.call(operation, arguments));
  }

  Made actions{host.named("BackupActions")({"manual"_t})};
};

TEST_F(UserFiles, AtileSearchesItsThreeDirectoriesForFilesThatItsPackageDoesNotName) {
  host.system.addText(kAtilePackage, {kAtile + "/colors_atile_blue.xml\n",
                                      kAtile + "/allScreens/skin_infobar.xml\n"});
  host.system.addDirectory(kAtile, {"colors_atile_blue.xml", "colors_atile_mine.xml"});
  host.system.addDirectory(kAtile + "/allScreens", {"skin_mine.xml", "skin_infobar.xml"});
  host.system.addDirectory(kAtile + "/preview", {"preview_mine.png"});
  EXPECT_EQ(found("saveAtileUserFiles"),
            (Paths{kAtile + "/colors_atile_mine.xml", kAtile + "/allScreens/skin_mine.xml",
                   kAtile + "/preview/preview_mine.png"}));
  EXPECT_EQ(record.take(), expected::block(R"(
fileExists("/var/lib/opkg/info/enigma2-plugin-skin-atile.list")
open("/var/lib/opkg/info/enigma2-plugin-skin-atile.list")
os_path.exists("/usr/share/enigma2/AtileHD")
os.listdir("/usr/share/enigma2/AtileHD")
os_path.join("/usr/share/enigma2/AtileHD", "colors_atile_blue.xml")
os_path.join("/usr/share/enigma2/AtileHD", "colors_atile_mine.xml")
os_path.exists("/usr/share/enigma2/AtileHD/allScreens")
os.listdir("/usr/share/enigma2/AtileHD/allScreens")
os_path.join("/usr/share/enigma2/AtileHD/allScreens", "skin_mine.xml")
os_path.join("/usr/share/enigma2/AtileHD/allScreens", "skin_infobar.xml")
os_path.exists("/usr/share/enigma2/AtileHD/preview")
os.listdir("/usr/share/enigma2/AtileHD/preview")
os_path.join("/usr/share/enigma2/AtileHD/preview", "preview_mine.png")
)"));
}

TEST_F(UserFiles, VfdSearchesItsOneDirectory) {
  host.system.addText(kVfdPackage, {kVfd + "/skin_vfd.xml\n"});
  host.system.addDirectory(kVfd, {"skin_vfd.xml", "skin_vfd_mine.xml", "readme"});
  EXPECT_EQ(found("saveVFDSkinUserFiles"), (Paths{kVfd + "/skin_vfd_mine.xml"}));
  EXPECT_EQ(record.take(), expected::block(R"(
fileExists("/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list")
open("/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list")
os_path.exists("/usr/share/enigma2/vfd_skin")
os.listdir("/usr/share/enigma2/vfd_skin")
os_path.join("/usr/share/enigma2/vfd_skin", "skin_vfd.xml")
os_path.join("/usr/share/enigma2/vfd_skin", "skin_vfd_mine.xml")
os_path.join("/usr/share/enigma2/vfd_skin", "readme")
)"));
}

struct AtileFile {
  const char* directory;
  const char* name;
  bool is_users;
};

constexpr AtileFile kAtileFiles[] = {
    {"", "colors_atile_mine.xml", true},
    {"", "font_atile_mine.xml", true},
    {"", "skin.xml", false},
    {"", "skin_mine.xml", false},
    {"", "preview_mine.png", false},
    {"", "colors_mine.xml", false},
    {"/allScreens", "skin_mine.xml", true},
    {"/allScreens", "colors_atile_mine.xml", false},
    {"/preview", "preview_mine.png", true},
    {"/preview", "preview_something", true},  // a directory, say; it is archived whole
    {"/preview", "mine.png", false},
};

TEST_F(UserFiles, CountOnlyWhenTheWholePathBeginsWithAPrefix) {
  for (const AtileFile& file : kAtileFiles) {
    const std::string directory = kAtile + file.directory;
    SCOPED_TRACE(directory + "/" + file.name);
    for (const char* other : {"", "/allScreens", "/preview"})
      host.system.addDirectory(kAtile + other);
    host.system.addDirectory(directory, {file.name});
    EXPECT_EQ(found("saveAtileUserFiles"),
              file.is_users ? Paths{directory + "/" + file.name} : Paths{});
  }
}

TEST_F(UserFiles, StayInListingOrder) {
  host.system.addDirectory(kVfd, {"skin_vfd_c", "skin_vfd_a", "skin_vfd_b"});
  EXPECT_EQ(found("saveVFDSkinUserFiles"),
            (Paths{kVfd + "/skin_vfd_c", kVfd + "/skin_vfd_a", kVfd + "/skin_vfd_b"}));
}

struct PackageLine {
  const char* line;
  bool names_the_file;
};

constexpr PackageLine kPackageLines[] = {
    {"/usr/share/enigma2/vfd_skin/skin_vfd_1\n", true},
    {"/usr/share/enigma2/vfd_skin/skin_vfd_1", true},
    {"/usr/share/enigma2/vfd_skin/skin_vfd_1\r\n", true},
    {"/usr/share/enigma2/vfd_skin/skin_vfd_1 \t\v\f\n", true},
    {" /usr/share/enigma2/vfd_skin/skin_vfd_1\n", false},
    {"/usr/share/enigma2/vfd_skin/skin_vfd_11\n", false},
    {"/usr/share/enigma2/vfd_skin/skin_vfd_\n", false},
    {"/usr/share/enigma2/vfd_skin/SKIN_VFD_1\n", false},
    {"\n", false},
};

TEST_F(UserFiles, PackageLinesAreTrimmedAndComparedExactly) {
  host.system.addDirectory(kVfd, {"skin_vfd_1"});
  for (const PackageLine& line : kPackageLines) {
    SCOPED_TRACE(quoted(line.line));
    host.system.addText(kVfdPackage, {line.line});
    EXPECT_EQ(found("saveVFDSkinUserFiles"),
              line.names_the_file ? Paths{} : Paths{kVfd + "/skin_vfd_1"});
  }
}

TEST_F(UserFiles, PackageLinesThatAPrefixWithABlankFindsAreTrimmedToo) {
  host.system.addDirectory("/skin", {"a"});
  host.system.addText("/list", {" /skin/a\n"});
  EXPECT_EQ(found("saveUserFiles", {"/list"_t, list({" /skin/"_t, "/skin/"_t}), list({"/skin"_t})}),
            Paths{});
}

TEST_F(UserFiles, AreFoundOncePerPrefixThatTheyBeginWith) {
  host.system.addDirectory("/skin", {"ab"});
  EXPECT_EQ(found("saveUserFiles",
                  {"/none"_t, list({"/skin/a"_t, "/skin/ab"_t, "/skin/b"_t}), list({"/skin"_t})}),
            (Paths{"/skin/ab", "/skin/ab"}));
}

TEST_F(UserFiles, ComeBySearchDirectory) {
  host.system.addDirectory("/2", {"x"});
  host.system.addDirectory("/1", {"x"});
  EXPECT_EQ(found("saveUserFiles",
                  {"/none"_t, list({"/1"_t, "/2"_t}), list({"/2"_t, "/missing"_t, "/1"_t})}),
            (Paths{"/2/x", "/1/x"}));
}

TEST_F(UserFiles, FullPathsAreThoseOfEveryEntryInListingOrder) {
  host.system.addDirectory("/d", {"b", "a", ".hidden", "two words"});
  EXPECT_EQ(found("listdir_fullpath", {"/d"_t}),
            (Paths{"/d/b", "/d/a", "/d/.hidden", "/d/two words"}));
}

}  // namespace
}  // namespace stowline
