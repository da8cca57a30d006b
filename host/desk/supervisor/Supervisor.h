#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "gui/Channel.h"

namespace desk {

/// Where a front end hears of what happens between frames.
class Events {
 public:
  virtual ~Events() = default;

  /// `event`: {"event": "gui-killed"}, {"event": "gui-started"} or {"event": "error", "text":
  /// TEXT}.
  virtual void onEvent(const Channel::Message& event) = 0;
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
  /// does not return. Raises std::runtime_error when a record cannot be written.
  Supervisor(std::function<void(Channel)> run_gui, const Records& records, Events& events);
  ~Supervisor();
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;

  /// Returns the first frame. Raises std::runtime_error when the GUI could not run or has crashed.
  Channel::Message firstFrame();

  /// Hands `word` to the GUI and returns the frame that follows, from a new GUI's main menu when
  /// the word has ended this one. Returns nothing when the word is "select:TEXT" and no row
  /// contains TEXT. Raises std::runtime_error when the GUI has crashed.
  std::optional<Channel::Message> press(const std::string& word);

 private:
  void start();
  void stop();
  void requireKilled();
  std::optional<Channel::Message> nextAnswer();
  void record(const Channel::Message& message);

  std::function<void(Channel)> run_gui_;
  Events& events_;
  native::Descriptor log_;
  native::Descriptor trace_;
  std::optional<Channel> channel_;
  pid_t gui_ = 0;
};

}  // namespace desk
