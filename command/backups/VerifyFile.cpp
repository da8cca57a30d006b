#include "command/backups/VerifyFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <string_view>

#include "base/Descriptor.h"
#include "base/Files.h"
#include "base/SystemError.h"
#include "command/archive/Paths.h"
#include "plugin/src/StowlineHelpScreen.h"

namespace backups {
namespace {

/// The most bytes of a list of packages: no receiver has so many.
constexpr std::size_t kMostOfList = 1024 * 1024;

/// Whether `line` is the name of a package (deb-control(5), "Package") with its newline.
bool isPackageLine(std::string_view line) {
  if (!line.ends_with('\n')) return false;
  line.remove_suffix(1);
  constexpr std::string_view kCharacters =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-._";
  return !line.empty() && line.find_first_not_of(kCharacters) == std::string_view::npos;
}

void find(tarball::Verdict& verdict, const char* what, const std::string& line) {
  ++verdict.found;
  if (verdict.findings.size() < tarball::kMostFindings) {
    verdict.findings.push_back({what, tarball::shownPath(line)});
  }
}

tarball::Verdict verifyList(const std::string& path) {
  const base::Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!file) throw base::SystemError(errno, path);
  tarball::Verdict verdict;
  std::string text(kMostOfList + 1, '\0');
  text.resize(base::readSome(file.number(), text.data(), text.size(), path));
  if (text.empty()) {
    verdict.notes.push_back({"no package", ""});
    verdict.noted = 1;
  }
  if (text.size() > kMostOfList) find(verdict, "too long for a list of packages", "");
  verdict.unpacked = text.size();
  for (const std::string& line : base::linesOf(text)) {
    ++verdict.members;
    if (!isPackageLine(line)) find(verdict, "not the name of a package", line);
  }
  return verdict;
}

std::vector<std::string> membersOf(const std::vector<host::Text>& files) {
  std::vector<std::string> members;
  members.reserve(files.size());
  for (const host::Text file : files) members.emplace_back(file.characters().substr(1));
  return members;
}

/// Returns what an archive of a kind may hold. Of a configuration that is the same for all
/// versions: its name can be changed.
tarball::Rules rulesOf(const Kind& kind) {
  tarball::Rules rules{.places = placesOf(kind)};
  if (!kind.is_confirmed && &kind != &kUnknown) return rules;
  const stowline::OwnFiles own = stowline::ownFilesOfRestores();
  rules.written = membersOf(own.written);
  rules.linked = membersOf(own.linked);
  rules.reserved = membersOf(own.reserved);
  return rules;
}

constexpr const char* kTwoArchives =
    "two archives of user files: links of one could be in the other's way";

/// Whether there can be such a file. Raises base::SystemError when that cannot be told.
bool isThere(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return true;
  if (errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG) return false;
  throw base::SystemError(errno, path);
}

}  // namespace

tarball::Verdict verifyFile(const std::string& path, const Kind& kind,
                            const tarball::BeginProgress& begin) {
  if (kind.is_list) return verifyList(path);
  tarball::Reader reader(path, begin);
  return tarball::verify(reader, rulesOf(kind));
}

std::string firstFinding(const tarball::Verdict& verdict) {
  if (verdict.sound()) return "";
  const auto& [what, member] = verdict.findings.front();
  return member.empty() ? what : what + ": " + member;
}

std::string whyNotGood(const std::string& path, const Kind& kind,
                       const tarball::BeginProgress& begin) {
  std::string place;  // what tells the companion that is looked at from its archive
  try {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) throw base::SystemError(errno, path);
    if (!isLargeEnough(kind, status.st_size)) return "too small to be restored";
    std::string reason = firstFinding(verifyFile(path, kind, begin));
    if (!reason.empty()) return reason;
    bool has_companion = false;
    for (const char* ending : kind.companions) {
      place = std::string(ending) + ": ";
      if (!isThere(path + ending)) continue;
      if (has_companion) return kTwoArchives;
      has_companion = true;
      reason = firstFinding(verifyFile(path + ending, kUserFiles, begin));
      if (!reason.empty()) return place + reason;
    }
    return "";
  } catch (const base::SystemError& error) {
    return place + error.code().message();
  }
}

}  // namespace backups
