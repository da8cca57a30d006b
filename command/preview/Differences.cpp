#include "command/preview/Differences.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "base/Escape.h"
#include "base/Files.h"
#include "base/SystemError.h"
#include "command/preview/UnifiedDiff.h"
namespace preview {
namespace {

/// Why a file's difference is not shown.
struct Unshown {
  const char* reason;
};

constexpr Unshown kTooLarge{"larger than 256 KiB"};
constexpr Unshown kUnreadable{"unreadable"};
constexpr Unshown kNoText{"not a text"};
constexpr Unshown kNoFile{"not a file on both sides"};
constexpr Unshown kTooMany{"too many lines to compare"};
constexpr Unshown kNoRoom{"too much to show after the others"};

/// Returns the content of a member. Raises what the reader raises, and Unshown.
std::string contentOf(tarball::Reader& reader) {
  std::string content;
  for (auto bytes = reader.read(); !bytes.empty(); bytes = reader.read()) {
    if (content.size() + bytes.size() > kLargestText) throw kTooLarge;
    content += bytes;
  }
  return content;
}

/// Returns the content of a receiver's file. Raises base::SystemError, and Unshown.
std::string contentOf(const base::Root& receiver, const std::string& path) {
  const base::Descriptor file = receiver.open(path);
  auto content = base::readAtMost(file.number(), kLargestText, path);
  if (!content) throw kTooLarge;
  return std::move(*content);
}

void requireText(const std::string& content) {
  if (content.find('\0') != std::string::npos) throw kNoText;
}

/// Returns the header line of one side; tools need a tab behind a name with blanks.
std::string header(const char* mark, const Change& change, bool is_there) {
  const std::string name = is_there ? base::escapeControls(change.path) : "/dev/null";
  return mark + name + (name.find(' ') == std::string::npos ? "\n" : "\t\n");
}

/// Makes the differences one by one.
class Finder {
 public:
  Finder(const Preview& preview, const std::function<void(const Difference&)>& take)
      : preview_(preview), receiver_(preview.restore->receiver), take_(take) {
    for (const Change& change : preview.restore->changes) {
      if (change.member != 0) deciding_[change.member] = &change;
    }
  }

  void findBrought() {
    std::uint64_t number = 0;
    readArchives(preview_.file, *preview_.restore,
                 [&](const tarball::Member&, tarball::Reader& reader) {
                   const auto found = deciding_.find(++number);
                   if (found == deciding_.end()) return;
                   const Action action = found->second->action;
                   if (action == Action::add || action == Action::change) {
                     make(*found->second, &reader);
                   }
                 });
  }

  void findDeleted() {
    for (const Change& change : preview_.restore->changes) {
      if (change.action == Action::remove || change.action == Action::remove_again) {
        make(change, nullptr);
      }
    }
  }

 private:
  /// Makes the difference of a change, whose new content is about to be read, if there is any.
  void make(const Change& change, tarball::Reader* reader) {
    if (!isFile(change.before) && !isFile(change.after)) return;
    Difference difference{.path = change.path, .text = "", .reason = ""};
    try {
      difference.text = textOf(change, reader);
      if (difference.text.empty()) return;
      room_ -= std::min(room_, difference.text.size());
    } catch (const Unshown& unshown) {
      difference.reason = unshown.reason;
    } catch (const base::SystemError&) {
      difference.reason = kUnreadable.reason;
    }
    take_(difference);
  }

  std::string textOf(const Change& change, tarball::Reader* reader) const {
    if (room_ == 0) throw kNoRoom;
    for (const auto& side : {change.before, change.after}) {
      if (side && !isFile(side)) throw kNoFile;
      if (side && side->size > kLargestText) throw kTooLarge;
    }
    const std::string after = change.after ? contentOf(*reader) : "";
    const std::string before = change.before ? contentOf(receiver_, change.path) : "";
    requireText(before);
    requireText(after);
    const auto hunks = unifiedHunks(before, after);
    if (!hunks) throw kTooMany;
    if (hunks->empty()) return "";
    return header("--- ", change, change.before.has_value()) +
           header("+++ ", change, change.after.has_value()) + *hunks;
  }

  const Preview& preview_;
  const base::Root receiver_;
  const std::function<void(const Difference&)>& take_;
  std::unordered_map<std::uint64_t, const Change*> deciding_;  ///< changes by their members
  std::size_t room_ = kMostText;
};

}  // namespace

void findDifferences(const Preview& preview, const std::function<void(const Difference&)>& take) {
  Finder finder(preview, take);
  finder.findBrought();
  finder.findDeleted();
}

}  // namespace preview
