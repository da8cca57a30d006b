#pragma once

#include <sys/types.h>

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "desk/protocol/Channel.h"
#include "desk/protocol/Json.h"
#include "desk/supervisor/EventListener.h"
#include "desk/supervisor/Record.h"

namespace desk {

/// Where the supervisor writes what the module prints and runs; empty paths for nowhere.
struct Records {
  std::filesystem::path log;
  std::filesystem::path trace;
};

/// Runs a GUI process and starts it again when a command in it kills it, as a receiver's init does.
class Supervisor {
 public:
  /// Starts the GUI: `run_gui` is called in a process of its own with its end of the channel and
  /// does not return. It ends at once when the other end is closed. `listener` outlives the
  /// supervisor. Raises std::runtime_error when a record cannot be written.
  Supervisor(std::function<void(Channel)> run_gui, const Records& records, EventListener& listener);

  /// Ends the GUI, with the command that it is running for a word.
  ~Supervisor();
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;

  /// What poll(2) has to watch for the GUI. It changes when the GUI is started again.
  int descriptor() const { return channel_->descriptor(); }

  /// Whether receive() has a report without waiting for one.
  bool hasReport() const { return channel_->hasRead(); }

  /// Hands `word` to the GUI; receive() has the answer later.
  void send(const Word& word);

  /// Asks for a frame without a word.
  void requestFrame() { channel_->send(jsonOf(Request())); }

  /// How many words wait for their answer. The GUI's start counts as one until its first frame.
  std::size_t unanswered() const { return unanswered_.size(); }

  /// Waits for one report of the GUI and does with it what is to be done: keeps records, tells the
  /// listener, starts the GUI again when a kill has ended it. Returns a FrameReport, a RowMissing
  /// or a Changed; nothing for any other report. Raises std::runtime_error when the GUI could not
  /// run, has crashed, or was killed before its first frame, and ProtocolError.
  std::optional<Report> receive();

  /// Ends the GUI at once, with the command that it is running.
  void kill();

 private:
  void start();
  void stop();
  int waitForEnd();
  void requireKilled();
  void startAgain();
  std::optional<Report> take(FrameReport report);
  std::optional<Report> take(RowMissing report);
  static std::optional<Report> take(Changed report);
  std::optional<Report> take(const LogLine& line);
  std::optional<Report> take(const CommandStart& command);
  std::optional<Report> take(const UncaughtError& error);
  [[noreturn]] static std::optional<Report> take(const Fatal& fatal);
  Word takeAnsweredWord();

  std::function<void(Channel)> run_gui_;
  EventListener& listener_;
  Record log_;
  Record trace_;
  std::optional<Channel> channel_;
  ReportReader reader_;
  std::deque<Word> unanswered_;
  bool has_shown_a_frame_ = false;
  pid_t gui_ = 0;
};

}  // namespace desk
