#include "desk/tree/ReceiverTree.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>
#include <vector>

#include "desk/tree/Files.h"
#include "desk/tree/Tools.h"
#include "desk/tree/TreeLock.h"
#include "desk/tree/factory.h"
#include "desk/tree/media.h"
#include "desk/tree/used.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

constexpr const char* kModels[] = {"solo",  "duo",  "uno",    "ultimo",
                                   "solo2", "duo2", "solose", "zero"};

/// The file that marks a directory as a receiver tree, and its lines: the format, the model and,
/// while a flash is under way, kIncomplete.
constexpr const char* kMarker = ".stowline-receiver";
constexpr const char* kFormat = "stowline receiver tree 1";
constexpr const char* kIncomplete = "incomplete";

constexpr const char* kMedia = "media";

struct Marker {
  std::string model;
  bool complete;
};

std::string command(const char* verb, const fs::path& dir) {
  return "'stowline receiver " + std::string(verb) + " " + dir.string() + "'";
}

bool isModel(const std::string& text) {
  return std::ranges::find(kModels, text) != std::end(kModels);
}

void requireModel(const std::string& model) {
  if (isModel(model)) return;
  std::string line = "no model '" + model + "': name one of";
  for (const char* name : kModels) line.append(" ").append(name);
  throw TreeError(line);
}

/// Whatever the path looks like: links, ".." and bind mounts all end at the same directory.
void requireNotRoot(const fs::path& dir) {
  if (fs::exists(dir) && fs::equivalent(dir, "/"))
    throw TreeError(
        inQuotes(dir) +
        " is this machine's own root directory: name one that is for the receiver tree");
}

void requireEmpty(const fs::path& dir) {
  if (!fs::exists(dir)) return;
  if (!fs::is_directory(dir) || !fs::is_empty(dir))
    throw TreeError(inQuotes(dir) + " is there already: name a new or an empty directory");
}

/// Reads the marker; a link in its place does not count.
Marker requireMarker(const fs::path& dir) {
  requireNotRoot(dir);
  const fs::path path = dir / kMarker;
  std::string format;
  std::string model;
  std::string state;
  if (fs::is_regular_file(fs::symlink_status(path))) {
    std::istringstream lines(read(path));
    std::getline(lines, format);
    std::getline(lines, model);
    std::getline(lines, state);
  }
  if (format != kFormat || !isModel(model))
    throw TreeError(inQuotes(dir) +
                    " is not a receiver tree: 'stowline receiver new DIR' lays one " +
                    "out in a new or an empty directory");
  return {model, state.empty()};
}

/// Replaces the marker in one step, so that there is always one to be read.
void writeMarker(const fs::path& dir, const Marker& marker) {
  const std::string name = std::string(kMarker) + ".new";
  const std::string state = marker.complete ? "" : std::string(kIncomplete) + "\n";
  write(dir / name, std::string(kFormat) + "\n" + marker.model + "\n" + state);
  fs::rename(dir / name, dir / kMarker);
}

/// The path as the mount table means it: it writes blanks and their like as "\040".
std::string unescaped(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 3 >= text.size()) {
      result += text[i];
      continue;
    }
    result += static_cast<char>(std::stoi(text.substr(i + 1, 3), nullptr, 8));
    i += 3;
  }
  return result;
}

bool isBelow(const fs::path& path, const fs::path& dir) {
  return path.string().starts_with(dir.string() + "/");
}

/// What is mounted below the tree belongs to somebody else; a flash spares what is below /media and
/// refuses the rest.
void requireNoMounts(const fs::path& dir) {
  const fs::path tree = fs::canonical(dir);
  std::ifstream table("/proc/self/mountinfo");
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    std::string mount_point;
    for (int field = 1; field <= 5; ++field) fields >> mount_point;
    mount_point = unescaped(mount_point);
    if (isBelow(mount_point, tree) && mount_point != tree / kMedia &&
        !isBelow(mount_point, tree / kMedia))
      throw TreeError(inQuotes(mount_point) + " is a mount point: unmount it before the flash");
  }
}

void removeAllBut(const fs::path& dir, const std::vector<std::string>& kept) {
  const std::vector<fs::directory_entry> entries(fs::directory_iterator(dir), {});
  for (const fs::directory_entry& entry : entries)
    if (std::ranges::find(kept, entry.path().filename().string()) == kept.end())
      fs::remove_all(entry.path());
}

void layFactory(const fs::path& dir, const std::string& model) {
  unpack(embedded::factory, dir);
  write(dir / "proc/stb/info/model", model + "\n");
  copyTools(dir);
}

/// Runs the steps; what the file system refuses becomes one line for the user.
void orTreeError(const char* what, const fs::path& dir, const std::function<void()>& steps) {
  try {
    steps();
  } catch (const fs::filesystem_error& error) {
    throw TreeError("cannot " + std::string(what) + " " + inQuotes(dir) + ": " +
                    inQuotes(error.path1()) + ": " + error.code().message());
  }
}

/// Empties a directory that was empty before, or was not there.
void clear(const fs::path& dir, bool was_there) {
  std::error_code ignored;
  if (!was_there) {
    fs::remove_all(dir, ignored);
    return;
  }
  for (const auto& entry : fs::directory_iterator(dir, ignored))
    fs::remove_all(entry.path(), ignored);
}

void layOutInto(const fs::path& dir, const std::string& model) {
  fs::create_directories(dir);
  layFactory(dir, model);
  unpack(embedded::used, dir);
  unpack(embedded::media, dir);
  writeMarker(dir, {model, true});
}

void flashTree(const fs::path& dir) {
  const std::string model = requireMarker(dir).model;
  const TreeLock lock(dir);
  requireMachineTools();
  requireNoMounts(dir);
  writeMarker(dir, {model, false});
  removeAllBut(dir, {kMarker, kMedia});
  layFactory(dir, model);
  writeMarker(dir, {model, true});
}

}  // namespace

std::vector<std::string> models() {
  return {std::begin(kModels), std::end(kModels)};
}

void layOut(const fs::path& dir, const std::string& model) {
  requireModel(model);
  orTreeError("lay out a receiver tree in", dir, [&] {
    requireNotRoot(dir);
    requireEmpty(dir);
    requireMachineTools();
    const bool was_there = fs::exists(dir);
    try {
      layOutInto(dir, model);
    } catch (...) {
      clear(dir, was_there);
      throw;
    }
  });
}

void flash(const fs::path& dir) {
  orTreeError("flash", dir, [&] { flashTree(dir); });
}

void requireTree(const fs::path& dir) {
  orTreeError("use", dir, [&] {
    if (!requireMarker(dir).complete)
      throw TreeError("the flash of " + inQuotes(dir) + " broke off: repeat " +
                      command("flash", dir));
    requireTools(dir);
  });
}

}  // namespace desk
