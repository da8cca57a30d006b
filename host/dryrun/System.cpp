#include "host/dryrun/System.h"

#include <cerrno>
#include <utility>

#include "base/Files.h"
#include "base/SystemError.h"

namespace dryrun {
namespace {

/// Whether `path` is `directory` or lies below it.
bool isWithin(const std::string& path, const std::string& directory) {
  return path.starts_with(directory) &&
         (path.size() == directory.size() || path[directory.size()] == '/');
}

}  // namespace

/// Where a receiver's path is found: the directory that holds it, null for none, and the path
/// there.
struct System::Place {
  const base::Root* root;
  std::string path;
};

System::Place System::placeOf(const std::string& path) const {
  for (const auto& [mount_point, directory] : mounted_) {
    if (isWithin(path, mount_point)) return {&directory, "/" + path.substr(mount_point.size())};
  }
  return {receiver_ ? &*receiver_ : nullptr, path};
}

void System::mount(const std::string& path, base::Root directory) {
  mounted_.insert_or_assign(path, std::move(directory));
}

int System::system(const std::string& command) {
  commands_.push_back(command);
  return 0;
}

std::vector<std::string> System::popen(const std::string& command) {
  commands_.push_back(command);
  return {};
}

std::vector<std::string> System::open(const std::string& path) {
  const Place place = placeOf(path);
  if (!place.root) return {};
  return base::linesOf(base::readAll(place.root->open(place.path).number(), path));
}

std::vector<std::string> System::listdir(const std::string& path) {
  const Place place = placeOf(path);
  return place.root ? place.root->names(place.path) : std::vector<std::string>();
}

/// Returns what a path names, nothing where that is nothing.
std::optional<System::Status> System::statusOf(const std::string& path) const {
  const Place place = placeOf(path);
  if (!place.root) return Status{.size = 0, .is_file = true};
  const auto status = place.root->status(place.path);
  if (!status) return std::nullopt;
  return Status{.size = status->st_size, .is_file = S_ISREG(status->st_mode)};
}

bool System::isFile(const std::string& path) {
  const auto status = statusOf(path);
  return status && status->is_file;
}

bool System::exists(const std::string& path) {
  try {
    return statusOf(path).has_value();
  } catch (const base::SystemError&) {
    return false;  // as os.path.exists() has it
  }
}

long long System::fileSize(const std::string& path) {
  const auto status = statusOf(path);
  if (!status) throw base::SystemError(ENOENT, path);
  return status->size;
}

plain::LocalTime System::localtime() {
  return native_.localtime();
}

}  // namespace dryrun
