#include "command/archive/Places.h"

#include <fnmatch.h>

#include <algorithm>

#include "command/archive/ByteLocale.h"
#include "command/archive/Paths.h"

namespace tarball {

Places::Wildcard::Wildcard(std::string_view text)
    : pattern(text), plain(std::min(text.find_first_of("*?[\\"), text.size())) {}

Places::Places(const std::vector<std::string>& patterns, const std::vector<std::string>& exclusions)
    : exclusions_(exclusions.begin(), exclusions.end()) {
  for (const std::string& pattern : patterns) {
    const std::vector<std::string_view> components = componentsOf(pattern);
    patterns_.emplace_back(components.begin(), components.end());
  }
}

bool Places::hold(std::string_view path) const {
  const ByteLocale bytes;
  const std::vector<std::string_view> components = componentsOf(path);
  if (std::ranges::count(components, "..") > 0) return false;
  return std::ranges::any_of(patterns_,
                             [&](const Pattern& pattern) { return names(pattern, components); });
}

bool Places::excluded(std::string_view path) const {
  const ByteLocale bytes;
  const std::string member = joined(componentsOf(path));
  std::size_t start = 0;
  do {
    const std::string_view rest = std::string_view(member).substr(start);
    if (std::ranges::any_of(exclusions_, [rest](const Wildcard& exclusion) {
          return matches(exclusion, rest, FNM_LEADING_DIR);
        })) {
      return true;
    }
    start = member.find('/', start) + 1;
  } while (start > 0);
  return false;
}

/// Whether `text` matches; `flags` are those of fnmatch().
bool Places::matches(const Wildcard& wildcard, std::string_view text, int flags) {
  const std::string_view plain = std::string_view(wildcard.pattern).substr(0, wildcard.plain);
  if (!text.starts_with(plain)) return false;
  const bool same = plain.size() == text.size() && plain.size() == wildcard.pattern.size();
  return same || fnmatch(wildcard.pattern.c_str(), std::string(text).c_str(), flags) == 0;
}

/// Whether the pattern names the path of these components, or a directory on it.
bool Places::names(const Pattern& pattern, const std::vector<std::string_view>& components) {
  return pattern.size() <= components.size() &&
         std::equal(pattern.begin(), pattern.end(), components.begin(),
                    [](const Wildcard& wildcard, std::string_view name) {
                      return matches(wildcard, name, FNM_PERIOD);
                    });
}

}  // namespace tarball
