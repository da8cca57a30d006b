#include "desk/tree/Contents.h"

#include "desk/tree/ChannelData.h"
#include "desk/tree/Files.h"
#include "desk/tree/Packages.h"
#include "desk/tree/Pictures.h"
#include "desk/tree/factory.h"
#include "desk/tree/media.h"
#include "desk/tree/used.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

/// Directories that the files do not bring with them.
constexpr const char* kDirectories[] = {"home/root", "sys", "tmp", "var/lib/opkg/lists", "var/log"};

constexpr struct {
  const char* link;
  const char* target;
} kLinks[] = {
    {"etc/resolv.conf", "/var/run/resolv.conf"},
};

constexpr const char* kMediaMounts[] = {"media/hdd", "media/usb", "media/net/autofs/nas"};

/// A share that cannot be read, not even by root: a plain file in the place of its directory.
constexpr const char* kUnreadableShare = "media/net/autonet/attic";

constexpr Rgb kGrey = 0x808890;
constexpr Rgb kAmber = 0xf0a020;

/// The pictures shown while the receiver is busy: wait1.png, wait2.png ...
Files spinner(int pictures, Rgb colour) {
  Files files;
  for (int i = 1; i <= pictures; ++i)
    files.push_back({"usr/share/enigma2/skin_default/spinner/wait" + std::to_string(i) + ".png",
                     disc(static_cast<unsigned>(8 + 2 * i), colour)});
  return files;
}

/// The still pictures of the radio and of the start, as video data.
Files stills(unsigned seed) {
  const std::string sequence_header("\x00\x00\x01\xb3", 4);
  return {{"usr/share/enigma2/radio.mvi", sequence_header + noise(seed, 9000)},
          {"usr/share/vuplus-bootlogo/bootlogo.mvi", sequence_header + noise(seed + 1, 12000)},
          {"usr/share/vuplus-bootlogo/backdrop.mvi", sequence_header + noise(seed + 2, 7000)}};
}

}  // namespace

void layFactoryFiles(const fs::path& tree, const std::string& model) {
  for (const char* directory : kDirectories) fs::create_directories(tree / directory);
  write(tree, unpack(embedded::factory));
  write(tree, factoryChannelData());
  write(tree, imagePackages());
  write(tree, feed());
  write(tree, spinner(4, kGrey));
  write(tree, stills(10));
  write(tree, {{"dev/null", ""}, {"proc/stb/info/model", model + "\n"}});
  for (const auto& [link, target] : kLinks) fs::create_symlink(target, tree / link);
}

void layUsedFiles(const fs::path& tree) {
  write(tree, unpack(embedded::used));
  write(tree, usedChannelData());
  write(tree, usedPackages());
  write(tree, spinner(7, kAmber));
  write(tree, {{"usr/share/enigma2/AtileHD/preview/preview_infobar_Mine.png", disc(24, kAmber)}});
  write(tree, stills(20));
}

void layMedia(const fs::path& tree) {
  for (const char* medium : kMediaMounts) fs::create_directories(tree / medium);
  write(tree, {{kUnreadableShare, ""}});
  write(tree, unpack(embedded::media));
  write(tree, localPackages());
}

}  // namespace desk
