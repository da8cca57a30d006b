#include "command/archive/Verify.h"

#include <algorithm>
#include <climits>
#include <functional>
#include <unordered_set>

#include "command/archive/BroughtLinks.h"
#include "command/archive/Paths.h"

namespace tarball {
namespace {

bool isEmpty(const Member& member) {
  return member.path.empty();
}

bool isAbsolute(const Member& member) {
  return member.path.starts_with('/');
}

bool hasParentDirectory(const Member& member) {
  return std::ranges::count(componentsOf(member.path), "..") > 0;
}

bool isTooLong(const Member& member) {
  return member.path.size() >= PATH_MAX || member.link.size() >= PATH_MAX;
}

bool hasLineBreak(const Member& member) {
  return member.path.find('\n') != std::string::npos;
}

bool isSparse(const Member& member) {
  return member.type == Type::kSparseFile;
}

bool isSpecial(const Member& member) {
  return member.type == Type::kDevice || member.type == Type::kFifo || member.type == Type::kOther;
}

bool isLinkToNowhere(const Member& member) {
  return member.type == Type::kSymbolicLink && member.link.empty();
}

/// Whether a symbolic link, followed from its directory, climbs above the root of the tree.
bool climbsOut(const Member& member) {
  if (member.type != Type::kSymbolicLink) return false;
  std::size_t depth = componentsOf(member.path).size();
  depth = member.link.starts_with('/') || depth == 0 ? 0 : depth - 1;
  for (const std::string_view name : componentsOf(member.link)) {
    if (name == ".." && depth == 0) return true;
    depth = name == ".." ? depth - 1 : depth + 1;
  }
  return false;
}

/// What no member of a backup is, by itself.
constexpr struct {
  bool (*applies)(const Member& member);
  const char* what;
} kRules[] = {
    {isEmpty, "empty path"},
    {isAbsolute, "absolute path"},
    {hasParentDirectory, "\"..\" in the path"},
    {isTooLong, "path longer than any file's"},
    {hasLineBreak, "line break in the path"},
    {isSparse, "sparse file"},
    {isSpecial, "device, FIFO or other special file"},
    {isLinkToNowhere, "link without a target"},
    {climbsOut, "link that leads out of the tree"},
};

/// Makes the verdict, member by member.
class Inspection {
 public:
  explicit Inspection(const Places& places) : places_(places) {}

  Verdict verdict;

  void inspect(const Member& member) {
    ++verdict.members;
    for (const auto& [applies, what] : kRules) {
      if (applies(member)) find(what, member);
    }
    if (!places_.hold(member.path)) find("not a place of this backup", member);
    if (places_.excluded(member.path)) note("left out by this backup", member);
    if (!isTooLong(member)) inspectLinks(member);
  }

  void find(const std::string& what, const Member& member = {}) {
    ++verdict.found;
    keep(verdict.findings, what, member);
  }

  /// Takes note of the damage that ends the reading, whatever has been found before.
  void end(const Damaged& damage) {
    if (verdict.findings.size() == kMostFindings) verdict.findings.pop_back();
    ++verdict.found;
    verdict.findings.push_back({damage.what(), ""});
    verdict.is_damaged = true;
  }

 private:
  void note(const std::string& what, const Member& member) {
    ++verdict.noted;
    keep(verdict.notes, what, member);
  }

  static void keep(std::vector<Finding>& findings, const std::string& what, const Member& member) {
    if (findings.size() < kMostFindings) findings.push_back({what, shownPath(member.path)});
  }

  /// Looks at what the member does by the links that the archive has brought before it.
  void inspectLinks(const Member& member) {
    const std::string path = joined(componentsOf(member.path));
    const std::string target = joined(componentsOf(member.link));
    const bool hard = member.type == Type::kHardLink;
    const bool symbolic = member.type == Type::kSymbolicLink || (hard && brought_.contains(target));
    const bool is_elsewhere = hard && (member.link.starts_with('/') || !places_.hold(member.link));
    const bool is_through = brought_.leadTo(path) || (hard && brought_.leadTo(target));
    if (is_elsewhere) find("hard link to another place than this backup's", member);
    if (is_through) find("path through a link of the archive", member);
    if (hard && !is_elsewhere && !is_through &&
        !files_.contains(std::hash<std::string>()(target))) {
      find("hard link to no earlier file of the archive", member);
    }
    if (member.type != Type::kDirectory) files_.insert(std::hash<std::string>()(path));
    if (!symbolic && brought_.contains(path)) find("in the place of a link of the archive", member);
    if (symbolic && !brought_.add(path)) find("more links than can be remembered", member);
  }

  const Places& places_;
  BroughtLinks brought_;
  std::unordered_set<std::size_t> files_;  ///< hashes of the paths of what is no directory
};

}  // namespace

Verdict verify(Reader& reader, const Places& places) {
  Inspection inspection(places);
  try {
    while (const std::optional<Member> member = reader.next()) inspection.inspect(*member);
    if (inspection.verdict.members == 0) inspection.find("no member");
  } catch (const Damaged& damage) {
    inspection.end(damage);
  }
  inspection.verdict.unpacked = reader.unpacked();
  return inspection.verdict;
}

}  // namespace tarball
