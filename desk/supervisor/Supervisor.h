#pragma once

#include <sys/types.h>

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "desk/gui/Channel.h"
#include "desk/supervisor/Record.h"

namespace desk {

/// Where a front end hears of what happens between frames.
class Events {
 public:
  virtual ~Events() = default;

  /// `event`: {"event": "gui-killed"}, {"event": "gui-started"} or {"event": "error", "text":
  /// TEXT}.
  virtual void onEvent(const Channel::Message& event) = 0;

  /// The module has printed `line`.
  virtual void onLogLine(const std::string& /*line*/) {}

  /// `command` is about to run in a shell of the receiver.
  virtual void onCommand(const std::string& /*command*/) {}
};

/// Where the supervisor writes what the module prints and runs; empty paths for nowhere.
struct Records {
  std::filesystem::path log;
  std::filesystem::path trace;
};

/// Runs a GUI process and starts it again when a command in it kills it, as a receiver's init does.
class Supervisor {
 public:
  /// Starts the GUI: `run_gui` is called in a process of its own with its end of the channel and
  /// does not return. It ends at once when the other end is closed. Raises std::runtime_error when
  /// a record cannot be written.
  Supervisor(std::function<void(Channel)> run_gui, const Records& records, Events& events);

  /// Ends the GUI, with the command that it is running for a word.
  ~Supervisor();
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;

  /// Waits for the first frame. Raises as receive() does.
  Channel::Message firstFrame();

  /// Hands `word` to the GUI and waits for the frame that follows, from a new GUI's main menu when
  /// the word has ended this one. Returns nothing when the word selects a row that is not there.
  /// Raises as receive() does.
  std::optional<Channel::Message> press(const std::string& word);

  /// What poll(2) has to watch for the GUI. It changes when the GUI is started again.
  int descriptor() const { return channel_->descriptor(); }

  /// Whether receive() has a message without waiting for one.
  bool hasMessage() const { return channel_->hasRead(); }

  /// Hands `word` to the GUI; receive() has the answer later.
  void send(const std::string& word);

  /// Asks for a "shown" message.
  void show() { channel_->send({{"show", true}}); }

  /// How many words wait for their answer. The GUI's start counts as one until its first frame.
  std::size_t unanswered() const { return unanswered_.size(); }

  /// Waits for one message of the GUI and does with it what is to be done: keeps records, tells
  /// events, starts the GUI again when a kill has ended it. Returns it when it is the front end's:
  /// a "frame", "missing", "changed", "shown" or "idle". Raises std::runtime_error when the GUI
  /// could not run, has crashed, or was killed before its first frame.
  std::optional<Channel::Message> receive();

  /// Ends the GUI at once, with the command that it is running.
  void kill();

 private:
  void start();
  void stop();
  int waitForEnd();
  void requireKilled();
  void startAgain();
  std::optional<Channel::Message> nextAnswer();
  void completeRows(Channel::Message& frame);
  void answer(Channel::Message& message);
  void record(const Channel::Message& message);

  std::function<void(Channel)> run_gui_;
  Events& events_;
  Record log_;
  Record trace_;
  std::optional<Channel> channel_;
  std::deque<std::string> unanswered_;
  bool has_shown_a_frame_ = false;
  Channel::Message rows_;
  pid_t gui_ = 0;
};

}  // namespace desk
