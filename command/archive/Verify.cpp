#include "command/archive/Verify.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <tuple>
#include <unordered_map>

#include "command/archive/Paths.h"

namespace tarball {
namespace {

bool isAbsolute(const Member& member) {
  return member.path.starts_with('/');
}

bool hasParentDirectory(const Member& member) {
  return std::ranges::count(componentsOf(member.path), "..") > 0;
}

/// One program looks for other formats line by line before it takes a file for a tar archive.
bool hasLineBreak(const Member& member) {
  return (member.path + member.link).find('\n') != std::string::npos;
}

/// One program cannot read such a time.
bool isBefore1970(const Member& member) {
  return member.modified < 0;
}

/// Programs differ in what a directory hands on to those that they make in it.
bool isSetGroupIdDirectory(const Member& member) {
  return member.type == Type::kDirectory && (member.mode & (S_ISUID | S_ISGID)) != 0;
}

bool isSpecial(const Member& member) {
  return member.type == Type::kDevice || member.type == Type::kFifo;
}

bool hasTooLongName(const Member& member) {
  return std::ranges::any_of(componentsOf(member.path),
                             [](std::string_view name) { return name.size() > NAME_MAX; });
}

/// Whether the path has more directories than any receiver's. What is looked up for each of them
/// would take a time that grows with their number squared.
bool isTooDeep(const Member& member) {
  constexpr int kMostDirectories = 100;
  return std::ranges::count(member.path, '/') > kMostDirectories;
}

/// Returns where a symbolic link leads, followed from its directory, as a path from the root;
/// nothing when it climbs above that.
std::optional<std::string> targetOf(const Member& member) {
  std::vector<std::string_view> names;
  if (!member.link.starts_with('/')) names = componentsOf(member.path);
  if (!names.empty()) names.pop_back();
  for (const std::string_view name : componentsOf(member.link)) {
    if (name != "..") {
      names.push_back(name);
    } else if (names.empty()) {
      return std::nullopt;
    } else {
      names.pop_back();
    }
  }
  return joined(names);
}

bool climbsOut(const Member& member) {
  return member.type == Type::kSymbolicLink && !targetOf(member);
}

bool setsUserOrGroup(const Member& member) {
  return member.type == Type::kFile && (member.mode & (S_ISUID | S_ISGID)) != 0;
}

/// Whether a link leads into a directory of which nothing outlasts a restart.
bool isVolatileLink(const Member& member) {
  constexpr std::string_view kVolatile[] = {"run/", "tmp/", "var/run/", "var/tmp/",
                                            "var/volatile/"};
  const std::string target = targetOf(member).value_or("");
  return member.type == Type::kSymbolicLink &&
         std::ranges::any_of(kVolatile, [&](auto start) { return target.starts_with(start); });
}

/// What no member of a backup is, by itself.
constexpr struct {
  bool (*applies)(const Member& member);
  const char* what;
} kRules[] = {
    {isAbsolute, "absolute path"},
    {hasParentDirectory, "\"..\" in the path"},
    {hasLineBreak, "line break in the path or the link's target"},
    {isBefore1970, "time before 1970"},
    {isSetGroupIdDirectory, "set-user-ID or set-group-ID directory"},
    {isSpecial, "device, FIFO or other special file"},
    {hasTooLongName, "name longer than any file's"},
    {climbsOut, "link that leads out of the tree"},
};

/// Makes the verdict, member by member.
class Inspection {
 public:
  explicit Inspection(const Rules& rules) : rules_(rules) {}

  Verdict verdict;

  void inspect(const Member& member) {
    ++verdict.members;
    if (isTooDeep(member)) return find("deeper than any file", member.path);
    for (const auto& [applies, what] : kRules) {
      if (applies(member)) find(what, member.path);
    }
    if (!rules_.places.hold(member.path)) find("not a place of this backup", member.path);
    if (rules_.places.excluded(member.path)) note("left out by this backup", member.path);
    if (setsUserOrGroup(member)) note("set-user-ID or set-group-ID", member.path);
    const std::string path = joined(componentsOf(member.path));
    inspectRestore(member, path);
    if (member.type == Type::kHardLink) inspectHardLink(member);
    const Brought brought{verdict.members, member.type, member.mode, member.uid, member.gid};
    if (!brought_.try_emplace(path, brought).second) {
      find("in the archive more than once", member.path);
    }
  }

  /// Looks at the members together: what is below a path comes after it, and that is a directory.
  void inspectPaths() {
    std::vector<const std::pair<const std::string, Brought>*> members;
    for (const auto& member : brought_) members.push_back(&member);
    // With "/" before all other characters, what is below a path follows it at once.
    const auto rank = [](char character) { return character == '/' ? 0 : 1 + (character & 0xff); };
    std::ranges::sort(members, [rank](const auto* one, const auto* other) {
      return std::ranges::lexicographical_compare(one->first, other->first, {}, rank, rank);
    });
    std::vector<const std::pair<const std::string, Brought>*> above;
    for (const auto* member : members) {
      const auto& [path, brought] = *member;
      while (!above.empty() && !isBelow(path, above.back()->first)) above.pop_back();
      if (!above.empty()) {
        const Brought& nearest = above.back()->second;
        if (nearest.type != Type::kDirectory) find("below a file or link of the archive", path);
        if (nearest.number > brought.number) find("before a directory that it is in", path);
      }
      above.push_back(member);
    }
  }

  void find(const std::string& what, const std::string& path = "") {
    ++verdict.found;
    keep(verdict.findings, what, path);
  }

  /// Takes note of the damage that ends the reading, whatever has been found before.
  void end(const Damaged& damage) {
    if (verdict.findings.size() == kMostFindings) verdict.findings.pop_back();
    ++verdict.found;
    verdict.findings.push_back({damage.what(), ""});
    verdict.is_damaged = true;
  }

 private:
  void note(const std::string& what, const std::string& path) {
    ++verdict.noted;
    keep(verdict.notes, what, path);
  }

  static void keep(std::vector<Finding>& findings, const std::string& what,
                   const std::string& path) {
    if (findings.size() < kMostFindings) findings.push_back({what, shownPath(path)});
  }

  /// Looks at what the restore does with the member beside unpacking it.
  void inspectRestore(const Member& member, const std::string& path) {
    const std::string target = joined(componentsOf(member.link));
    for (const std::string& file : rules_.written) {
      const bool may_be_link = std::ranges::count(rules_.linked, file) > 0;
      const bool is_plain = member.type == Type::kFile || (may_be_link && isVolatileLink(member));
      if (isBelow(path, file) || (path == file && !is_plain)) {
        find("no plain file, though the restore writes to it", member.path);
      }
      if (member.type == Type::kHardLink && target == file) {
        find("hard link to what the restore writes to", member.path);
      }
    }
    for (const std::string& file : rules_.reserved) {
      if (path == file || isBelow(path, file)) find("used by the restore itself", member.path);
    }
  }

  /// A hard link is to a file that the archive has brought before, and says the same of it.
  void inspectHardLink(const Member& member) {
    const auto target = brought_.find(joined(componentsOf(member.link)));
    if (member.link.starts_with('/') || !rules_.places.hold(member.link)) {
      find("hard link to another place than this backup's", member.path);
    } else if (target == brought_.end() || !isFile(target->second.type)) {
      find("hard link to no earlier file of the archive", member.path);
    } else if (const Brought& file = target->second;
               std::tie(file.mode, file.uid, file.gid) !=
               std::tie(member.mode, member.uid, member.gid)) {
      find("hard link with another mode or owner than its file", member.path);
    }
  }

  static bool isBelow(std::string_view path, std::string_view top) {
    return path.size() > top.size() && path.starts_with(top) && path[top.size()] == '/';
  }

  static bool isFile(Type type) { return type == Type::kFile || type == Type::kHardLink; }

  /// What there is at a path when the members so far have been unpacked.
  struct Brought {
    std::uint64_t number;  ///< of the member
    Type type;
    unsigned mode;
    std::int64_t uid;
    std::int64_t gid;
  };

  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  const Rules& rules_;
  std::unordered_map<std::string, Brought, Hash, std::equal_to<>> brought_;  ///< by path
};

}  // namespace

Verdict verify(Reader& reader, const Rules& rules) {
  Inspection inspection(rules);
  std::optional<Damaged> damage;
  try {
    while (const std::optional<Member> member = reader.next()) inspection.inspect(*member);
    if (inspection.verdict.members == 0) inspection.find("no member");
  } catch (const Damaged& found) {
    damage = found;
  }
  inspection.inspectPaths();
  if (damage) inspection.end(*damage);
  inspection.verdict.unpacked = reader.unpacked();
  return inspection.verdict;
}

}  // namespace tarball
