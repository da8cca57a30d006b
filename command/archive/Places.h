#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarball {

/// The places that one kind of backup may hold. Members are meant by their paths in the archive,
/// which have no "/" before them.
class Places {
 public:
  /// `patterns`: shell patterns of absolute paths, such as "/etc/CC*": what they name is backed up,
  /// with everything below it. `exclusions`: patterns of members that are left out all the same,
  /// such as "etc/enigma2/*.tv", with everything below them. As tar has it, "*" there also stands
  /// for "/", and the pattern may begin at any directory of a member's path.
  Places(const std::vector<std::string>& patterns, const std::vector<std::string>& exclusions);

  /// Whether such a backup may hold this member: one of the patterns names it, or a directory that
  /// it lies in. Never with ".." in its path.
  bool hold(std::string_view path) const;

  /// Whether such a backup leaves this member out.
  bool excluded(std::string_view path) const;

 private:
  /// A pattern and how many characters it has before its first wildcard.
  struct Wildcard {
    explicit Wildcard(std::string_view text);

    std::string pattern;
    std::size_t plain;
  };

  using Pattern = std::vector<Wildcard>;  // one for every component

  static bool matches(const Wildcard& wildcard, std::string_view text, int flags);
  static bool names(const Pattern& pattern, const std::vector<std::string_view>& components);

  std::vector<Pattern> patterns_;
  std::vector<Wildcard> exclusions_;
};

}  // namespace tarball
