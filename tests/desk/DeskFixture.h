#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "base/Descriptor.h"
#include "desk/model/Jobs.h"
#include "desk/model/Observer.h"
#include "desk/model/Session.h"
#include "desk/protocol/Json.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk {

/// Keeps what the observer is told, and what the test itself adds, one line each.
class Notes : public Observer {
 public:
  void onLogLine(const std::string& line) override { lines.push_back("log: " + line); }
  void onCommand(const std::string& command) override { lines.push_back("command: " + command); }
  void onError(const std::string& text) override { lines.push_back("error: " + text); }

  std::vector<std::string> lines;
};

using Lines = std::vector<std::string>;

/// Returns the word that is written so, the opening for "".
Word word(const std::string& text);

/// Waits for the next thing that a job does, and reports it. Raises std::runtime_error when a
/// minute has passed.
void waitForJob(Jobs& jobs);

/// Waits until nothing is running.
void runToEnd(Jobs& jobs);

/// Lets a failed test show a layer's content, of whatever kind.
template <class Kind>
requires std::is_constructible_v<Content, Kind>
void PrintTo(const Kind& content, std::ostream* output) {
  *output << jsonOf(Frame{.layers = {LayerView{.content = content}}});
}

/// Returns the texts of the rows.
Lines rowsOf(Layer& layer);

/// Holds shell commands up until the test lets them go on.
class Gate {
 public:
  Gate();

  /// Returns the shell command that waits here.
  std::string wait() const { return "read line < " + pipe_; }

  /// Lets one command go on.
  void open() const;

 private:
  support::TemporaryDirectory directory_;
  std::string pipe_;
  base::Descriptor end_;
};

/// A session without a receiver around it.
struct SessionTest : testing::Test {
  /// Presses keys one after the other; closed dialogs go as after any event.
  void press(const std::vector<std::string>& keys);
  void settle();

  /// Returns what only the kind of layer shows that is on top.
  template <class Kind>
  Kind shown() const {
    return std::get<Kind>(session.top()->content());
  }

  /// Returns a callback that takes note of the answer as "NAME: ANSWER".
  host::Object note(const std::string& name);

  /// Returns the class name of the layer on top, "" when everything is closed.
  std::string top() const { return session.top() ? session.top()->className() : ""; }

  Notes notes;
  Jobs jobs;
  Session session{jobs, notes};
};

}  // namespace desk
