#include "command/backups/SetName.h"

#include <algorithm>
#include <string_view>

namespace backups {
namespace {

/// Reads a name from its beginning.
class Scanner {
 public:
  explicit Scanner(std::string_view rest) : rest_(rest) {}

  /// Takes `text`. Returns whether it comes next.
  bool take(std::string_view text) {
    if (!rest_.starts_with(text)) return false;
    rest_.remove_prefix(text.size());
    return true;
  }

  /// Takes `count` digits and returns them, "" when other characters come first.
  std::string_view takeDigits(std::size_t count) {
    const std::string_view digits = rest_.substr(0, count);
    if (digits.size() < count || !std::ranges::all_of(digits, isDigit)) return "";
    rest_.remove_prefix(count);
    return digits;
  }

  /// Takes and returns what comes before the next of `ends`.
  std::string_view takeUpTo(std::string_view ends) {
    const std::string_view taken = rest_.substr(0, rest_.find_first_of(ends));
    rest_.remove_prefix(taken.size());
    return taken;
  }

  bool isAtEnd() const { return rest_.empty(); }

 private:
  static bool isDigit(char character) { return character >= '0' && character <= '9'; }

  std::string_view rest_;
};

/// Takes a stamp as stowline::getDateTime makes them, of a year with four digits. Returns it as
/// "2024-03-05 07:04", "" when there is none.
std::string takeStamp(Scanner& name) {
  struct Part {
    std::size_t digits;
    const char* after;
    const char* shown_after;
  };
  constexpr Part kParts[] = {
      {4, "", "-"}, {2, "", "-"}, {2, "_", " "}, {2, "-", ":"}, {2, "_", ""}};
  std::string time;
  for (const Part& part : kParts) {
    const std::string_view digits = name.takeDigits(part.digits);
    if (digits.empty() || !name.take(part.after)) return "";
    time.append(digits).append(part.shown_after);
  }
  return time;
}

}  // namespace

std::optional<SetName> parseSetName(const std::string& text) {
  Scanner name(text);
  SetName said;
  if (name.take("configuration_")) {
    if (name.take("ver_")) {
      said.version = name.takeUpTo("_");
      name.take("_");
    }
  } else if (!name.take("settings_") && !name.take("pluginlist_")) {
    return std::nullopt;
  }
  said.time = takeStamp(name);
  said.model = name.takeUpTo("._");
  said.is_scheduled = name.take(".auto");
  const bool has_ending = name.take(".tar.gz") || name.take(".lst");
  if (said.time.empty() || said.model.empty() || !has_ending || !name.isAtEnd()) {
    return std::nullopt;
  }
  return said;
}

}  // namespace backups
