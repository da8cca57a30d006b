#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "desk/protocol/Word.h"

namespace desk {

/// What a viewer sees of one row: its text and, where it has them, its description and the path of
/// its picture.
struct Row {
  std::string text;
  std::string description = {};
  std::string picture = {};

  friend bool operator==(const Row&, const Row&) = default;
};

/// Rows as they are shown at one time. Equal pointers mean that nothing has changed.
using Rows = std::vector<Row>;
using SharedRows = std::shared_ptr<const Rows>;

/// Returns the rows of what has no list.
inline const SharedRows& noRows() {
  static const SharedRows kNone = std::make_shared<const Rows>();
  return kNone;
}

/// What one of the module's screens shows besides its rows.
struct ScreenContent {
  std::map<std::string, std::string> texts = {};  ///< of its text widgets, by name
  std::string list = {};                          ///< the name of its list widget, "" for none
  std::string skin = {};                          ///< a layout of its own in XML, "" for none

  friend bool operator==(const ScreenContent&, const ScreenContent&) = default;
};

/// A message or a yes/no question.
struct MessageContent {
  enum class Type { info, error, yesno };

  Type type = Type::info;
  std::string text = {};
  int timeout = 0;  ///< seconds, 0 for none

  friend bool operator==(const MessageContent&, const MessageContent&) = default;
};

/// A choice among rows.
struct ChoiceContent {
  std::string question = {};

  friend bool operator==(const ChoiceContent&, const ChoiceContent&) = default;
};

/// Commands that run one after the other.
struct ConsoleContent {
  std::string output = {};    ///< the end of it
  std::uint64_t dropped = 0;  ///< how many bytes came before that
  bool is_running = false;

  friend bool operator==(const ConsoleContent&, const ConsoleContent&) = default;
};

struct Package {
  enum class State { waiting, running, done, failed };

  std::string name;
  State state;

  friend bool operator==(const Package&, const Package&) = default;
};

/// Packages that are installed one after the other.
struct PackagesContent {
  std::vector<Package> packages = {};
  bool is_running = false;

  friend bool operator==(const PackagesContent&, const PackagesContent&) = default;
};

using Content =
    std::variant<ScreenContent, MessageContent, ChoiceContent, ConsoleContent, PackagesContent>;

/// A screen or dialog as a viewer sees it.
struct LayerView {
  std::uint64_t id = 0;     ///< no other layer of the same GUI process has it
  std::string screen = {};  ///< the name of its class
  std::string title = {};
  SharedRows rows = noRows();
  std::size_t selected = 0;  ///< the index of the row with the cursor
  Content content = {};

  /// Returns the content if it is of this kind, null otherwise.
  template <class Kind>
  const Kind* as() const {
    return std::get_if<Kind>(&content);
  }

  friend bool operator==(const LayerView& a, const LayerView& b) {
    return a.id == b.id && a.screen == b.screen && a.title == b.title && *a.rows == *b.rows &&
           a.selected == b.selected && a.content == b.content;
  }
};

/// What a viewer sees after a word: the screen or dialog on top, and those beneath it.
struct Frame {
  Word word = {};
  std::vector<LayerView> layers = {};  ///< the one on top is the last

  /// Returns the layer on top; null when the menu is closed.
  const LayerView* top() const { return layers.empty() ? nullptr : &layers.back(); }

  friend bool operator==(const Frame&, const Frame&) = default;
};

/// Returns the time-out of the box on top, in seconds; nothing where there is none.
inline std::optional<int> timeoutOf(const Frame& frame) {
  const LayerView* const top = frame.top();
  const auto* const message = top ? top->as<MessageContent>() : nullptr;
  return message && message->timeout > 0 ? std::optional(message->timeout) : std::nullopt;
}

}  // namespace desk
