#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Root.h"
#include "command/preview/Change.h"
#include "command/preview/Content.h"

namespace preview {

/// When all differences together are larger than this, in bytes, no further one is shown. Those
/// that a later member of the same path replaces count as well.
inline constexpr std::size_t kMostText = 16 * 1024 * 1024;

/// The difference that a restore makes to one file.
struct Difference {
  std::string path;
  std::string text;         ///< unified, with its two header lines
  std::string_view reason;  ///< why there is no text, a literal; "" when there is

  bool operator==(const Difference&) const = default;
};

/// The difference of every file whose content a restore changes, brings or deletes. What has only
/// other permissions makes none. The texts wait in a nameless temporary file.
class Differences {
 public:
  /// `receiver` is the directory of its files. Raises base::SystemError.
  explicit Differences(const std::filesystem::path& receiver);

  /// Takes what a member changes as soon as the forecast has said it, with the member's content.
  /// The change outlives this; what it is in the end decides. Raises base::SystemError, and what
  /// reading the content raises.
  void take(const Change& change, Content& content);

  /// Calls `show` with every difference: first of what is brought or changed, by its members, then
  /// of what is deleted. To be called once, with all changes. Raises base::SystemError.
  void show(const Changes& changes, const std::function<void(const Difference&)>& show);

 private:
  /// A difference that was taken.
  struct Entry {
    const Change* change;
    std::uint64_t member;  ///< the change's at that time
    std::size_t size;      ///< of the text
    std::string_view reason;
  };

  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::optional<Difference> find(const Change& change, Content* content);
  std::string textOf(const Change& change, Content* content) const;

  base::Root receiver_;
  std::unique_ptr<std::FILE, Close> texts_;  ///< those of the entries, one after another
  std::vector<Entry> entries_;
  std::size_t room_ = kMostText;
};

}  // namespace preview
