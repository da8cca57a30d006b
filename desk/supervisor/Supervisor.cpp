#include "desk/supervisor/Supervisor.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace desk {
Supervisor::Supervisor(std::function<void(Channel)> run_gui, const Records& records,
                       EventListener& listener)
    : run_gui_(std::move(run_gui)), listener_(listener), log_(records.log), trace_(records.trace) {
  start();
}

Supervisor::~Supervisor() {
  if (unanswered_.empty()) {
    stop();
  } else {
    kill();
  }
}

void Supervisor::start() {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::runtime_error(std::string("cannot make a socket: ") + std::strerror(errno));
  }
  base::Descriptor ours(ends[0]);
  base::Descriptor theirs(ends[1]);
  gui_ = fork();
  if (gui_ < 0) {
    throw std::runtime_error(std::string("cannot start the GUI: ") + std::strerror(errno));
  }
  if (gui_ == 0) {
    ours.reset();
    try {
      run_gui_(Channel(std::move(theirs)));
    } catch (...) {
      _exit(EXIT_FAILURE);  // what is to be undone is the parent's
    }
  }
  channel_.emplace(std::move(ours));
  reader_ = {};
  unanswered_ = {Word()};
  has_shown_a_frame_ = false;
}

/// Lets the GUI see that nobody will send a word any more, and waits for its end. It may still be
/// sending, and ends only when that is taken.
void Supervisor::stop() {
  if (channel_) {
    shutdown(channel_->descriptor(), SHUT_WR);
    while (channel_->receive()) {
    }
  }
  waitForEnd();
}

void Supervisor::kill() {
  channel_.reset();
  waitForEnd();
}

/// Returns the status of a GUI that is about to end (wait(2)), 0 when there is none.
int Supervisor::waitForEnd() {
  int status = 0;
  while (gui_ > 0 && waitpid(gui_, &status, 0) < 0 && errno == EINTR) {
  }
  gui_ = 0;
  return status;
}

void Supervisor::send(const Word& word) {
  unanswered_.push_back(word);
  channel_->send(jsonOf(Request{word}));
}

std::optional<Report> Supervisor::receive() {
  const std::optional<std::string> line = channel_->receive();
  if (!line) {
    requireKilled();
    startAgain();
    return std::nullopt;
  }
  return std::visit([this](auto&& report) { return this->take(std::move(report)); },
                    reader_.parse(*line));
}

std::optional<Report> Supervisor::take(FrameReport report) {
  // The first frame of a new GUI answers the word that has ended the old one.
  if (report.cause == FrameReport::Cause::word) report.frame.word = takeAnsweredWord();
  return report;
}

std::optional<Report> Supervisor::take(RowMissing report) {
  takeAnsweredWord();
  return report;
}

std::optional<Report> Supervisor::take(Changed report) {
  return report;
}

std::optional<Report> Supervisor::take(const LogLine& line) {
  log_.append(line.text);
  listener_.onLogLine(line.text);
  return std::nullopt;
}

std::optional<Report> Supervisor::take(const CommandStart& command) {
  trace_.append(command.text);
  listener_.onCommand(command.text);
  return std::nullopt;
}

std::optional<Report> Supervisor::take(const UncaughtError& error) {
  log_.append("error: " + error.text);
  listener_.onEvent({Event::Kind::error, error.text});
  return std::nullopt;
}

std::optional<Report> Supervisor::take(const Fatal& fatal) {
  throw std::runtime_error(fatal.text);
}

/// Takes the word that has been answered off those that wait.
Word Supervisor::takeAnsweredWord() {
  if (unanswered_.empty()) throw ProtocolError("an answer to no word");
  Word word = std::move(unanswered_.front());
  unanswered_.pop_front();
  has_shown_a_frame_ = true;
  return word;
}

/// Starts the GUI after a kill. Words that it has not answered are gone with it; "wait" stands for
/// the word that has ended it when there was none.
void Supervisor::startAgain() {
  listener_.onEvent({Event::Kind::gui_killed});
  const Word word = unanswered_.empty() ? Word{Word::Kind::wait, "wait"} : unanswered_.front();
  start();
  unanswered_ = {word};
  listener_.onEvent({Event::Kind::gui_started});
}

/// Takes leave of a GUI that has ended. Raises std::runtime_error unless a kill has ended it after
/// its first frame.
void Supervisor::requireKilled() {
  const int status = waitForEnd();
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) {
    if (has_shown_a_frame_) return;
    throw std::runtime_error("the GUI was killed before it had opened its menu");
  }
  if (WIFSIGNALED(status)) {
    throw std::runtime_error(std::string("the GUI has crashed: ") + strsignal(WTERMSIG(status)));
  }
  throw std::runtime_error("the GUI has ended with status " + std::to_string(WEXITSTATUS(status)));
}

}  // namespace desk
