#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "desk/frontend/FrontEnd.h"

namespace desk {

/// How frames are printed: as pictures of a terminal, or as one JSON object a line.
enum class FrameFormat { text, json };

/// A front end that presses the keys of a script and prints what a viewer would see: the first
/// frame, then one after every word.
class ScriptFrontEnd : public FrontEnd {
 public:
  /// `take` may be given to get every frame, too.
  ScriptFrontEnd(FrameFormat format, std::vector<Word> words, std::ostream& output,
                 std::function<void(const Frame& frame)> take = {})
      : format_(format), words_(std::move(words)), output_(output), take_(std::move(take)) {}

  bool isLive() const override { return false; }
  void show(const Frame& frame, bool is_answer) override;
  std::optional<Word> nextWord() override;

  /// Raises std::runtime_error.
  void onMissingRow(const Word& word) override;

  void onEvent(const Event& event) override;
  void onLogLine(const std::string& /*line*/) override {}
  void onCommand(const std::string& /*command*/) override {}

 private:
  FrameFormat format_;
  std::vector<Word> words_;
  std::size_t next_ = 0;
  std::ostream& output_;
  std::function<void(const Frame&)> take_;
};

}  // namespace desk
