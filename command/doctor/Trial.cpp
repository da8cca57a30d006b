#include "command/doctor/Trial.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "base/Files.h"
#include "base/SystemError.h"

namespace doctor {
namespace {

namespace fs = std::filesystem;

constexpr const char* kName = "tar";

/// A directory that goes with all that is in it.
class Scratch {
 public:
  Scratch() {
    std::string path = "/tmp/stowline-XXXXXX";
    if (!mkdtemp(path.data())) throw base::SystemError(errno, "/tmp");
    path_ = path;
  }
  ~Scratch() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

/// A file of the trial, and its permissions.
struct TrialFile {
  const char* name;
  unsigned mode;
};

/// The second name is longer than a header of the archive holds, as those of bouquets can be.
constexpr TrialFile kFiles[] = {
    {"private", 0600},
    {"userbouquet.a_name_that_is_longer_than_the_hundred_bytes_which_the_header_of_an_archive_"
     "holds_"
     "for_it_and_has_an_\xC3\xA4.tv",
     0644},
    {"below/script", 0755},
};
constexpr const char* kLeftOut = "left_out";

void makeFiles(const fs::path& directory) {
  fs::create_directories(directory / "below");
  for (const TrialFile& file : kFiles) {
    std::ofstream(directory / file.name) << file.name;
    fs::permissions(directory / file.name, static_cast<fs::perms>(file.mode));
  }
  std::ofstream(directory / kLeftOut) << kLeftOut;
  fs::create_symlink("below/script", directory / "link");
  fs::create_symlink("nowhere", directory / "link_to_nothing");
  fs::create_hard_link(directory / "private", directory / "second_name");
}

/// Returns what lies at `path`: its type with its permissions, and its content or target.
std::string entryText(const fs::path& path) {
  const fs::file_status status = fs::symlink_status(path);
  if (status.type() == fs::file_type::symlink) return "link to " + fs::read_symlink(path).string();
  char mode[16];
  std::snprintf(mode, sizeof mode, "%03o", static_cast<unsigned>(status.permissions()));
  if (status.type() == fs::file_type::directory) return std::string("directory of mode ") + mode;
  return "file of mode " + std::string(mode) + ", link count " +
         std::to_string(fs::hard_link_count(path)) + ", '" + base::readFile(path) + "'";
}

using Tree = std::map<std::string, std::string>;

/// Returns what lies below `directory`, by its path there.
Tree treeOf(const fs::path& directory) {
  Tree tree;
  std::error_code none;
  for (fs::recursive_directory_iterator at(directory, none), end; at != end; ++at) {
    tree[at->path().lexically_relative(directory)] = entryText(at->path());
  }
  return tree;
}

/// Returns the first difference between what was archived and what came back, "" for none.
std::string differenceOf(const Tree& before, const Tree& after) {
  constexpr const char* kNothing = "nothing";
  for (const auto& [name, entry] : before) {
    const auto found = after.find(name);
    const std::string now = found == after.end() ? kNothing : found->second;
    if (now != entry) return name + " was " + entry + " and comes back as " + now;
  }
  for (const auto& [name, entry] : after) {
    if (!before.contains(name)) return name + " was " + kNothing + " and comes back as " + entry;
  }
  return "";
}

/// Runs a command. Returns what it said last when it fails, in brackets.
std::string run(scheduled::System& os, const std::string& command) {
  if (os.system(command) == 0) return "";
  const std::string said = os.whyFailed("tar");
  return said.empty() ? "" : " (" + said + ")";
}

}  // namespace

Check checkArchiving(scheduled::System& os) {
  const Scratch scratch;
  const fs::path files = scratch.path() / "files";
  const fs::path unpacked = scratch.path() / "unpacked";
  const std::string archive = scratch.path() / "archive.tar.gz";
  makeFiles(files);
  fs::create_directory(unpacked);
  Tree before = treeOf(files);
  std::string said = run(os, "tar czf " + archive + " " + files.string() + "/* --exclude " +
                                 files.string().substr(1) + "/left*");
  said += run(os, "tar -xzf " + archive + " -C " + unpacked.string());
  const Tree after = treeOf(unpacked / files.relative_path());
  const bool is_excluded = !after.contains(kLeftOut);
  if (is_excluded) before.erase(kLeftOut);
  const std::string difference = differenceOf(before, after);
  if (after.empty()) return {kName, State::failed, "nothing comes back" + said};
  if (!difference.empty()) return {kName, State::failed, difference + said};
  if (is_excluded) return {kName, State::ok, "brings back what it archives"};
  return {
      kName, State::warning,
      "exclusions after the file list are not honoured: configuration backups will hold channel "
      "data and keys"};
}

}  // namespace doctor
