#include "desk/supervisor/Supervisor.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace desk {
Supervisor::Supervisor(std::function<void(Channel)> run_gui, const Records& records, Events& events)
    : run_gui_(std::move(run_gui)), events_(events), log_(records.log), trace_(records.trace) {
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
  native::Descriptor ours(ends[0]);
  native::Descriptor theirs(ends[1]);
  gui_ = fork();
  if (gui_ < 0) {
    throw std::runtime_error(std::string("cannot start the GUI: ") + std::strerror(errno));
  }
  if (gui_ == 0) {
    ours.reset();
    run_gui_(Channel(std::move(theirs)));
  }
  channel_.emplace(std::move(ours));
  unanswered_ = {""};
  has_shown_a_frame_ = false;
}

/// Lets the GUI see that nobody will send a word any more, and waits for its end.
void Supervisor::stop() {
  if (channel_) shutdown(channel_->descriptor(), SHUT_WR);
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

Channel::Message Supervisor::firstFrame() {
  return nextAnswer().value();
}

std::optional<Channel::Message> Supervisor::press(const std::string& word) {
  send(word);
  return nextAnswer();
}

void Supervisor::send(const std::string& word) {
  unanswered_.push_back(word);
  channel_->send({{"word", word}});
}

/// Waits for the answer to a word: its frame, or nothing when the row is missing.
std::optional<Channel::Message> Supervisor::nextAnswer() {
  for (;;) {
    std::optional<Channel::Message> message = receive();
    if (message && message->contains("frame")) return std::move(message->at("frame"));
    if (message && message->contains("missing")) return std::nullopt;
  }
}

std::optional<Channel::Message> Supervisor::receive() {
  std::optional<Channel::Message> message = channel_->receive();
  if (!message) {
    requireKilled();
    startAgain();
    return std::nullopt;
  }
  for (const char* kind : {"frame", "shown", "idle"}) {
    if (message->contains(kind)) completeRows(message->at(kind));
  }
  if (message->contains("frame") || message->contains("missing")) {
    answer(*message);
    return message;
  }
  if (message->contains("changed") || message->contains("shown") || message->contains("idle")) {
    return message;
  }
  record(*message);
  return std::nullopt;
}

/// Puts the rows of the frame before into one that has left them out.
void Supervisor::completeRows(Channel::Message& frame) {
  if (frame.at("rows").is_null()) {
    frame["rows"] = rows_;
  } else {
    rows_ = frame.at("rows");
  }
}

/// Takes the word that `message` answers off those that wait. A frame carries this word: the first
/// one of a new GUI the word that has ended the old one.
void Supervisor::answer(Channel::Message& message) {
  if (message.contains("frame")) message["frame"]["key"] = unanswered_.front();
  unanswered_.pop_front();
  has_shown_a_frame_ = true;
}

/// Starts the GUI after a kill. Words that it has not answered are gone with it; "wait" stands for
/// the word that has ended it when there was none.
void Supervisor::startAgain() {
  events_.onEvent({{"event", "gui-killed"}});
  const std::string word = unanswered_.empty() ? "wait" : unanswered_.front();
  start();
  unanswered_ = {word};
  events_.onEvent({{"event", "gui-started"}});
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

void Supervisor::record(const Channel::Message& message) {
  if (message.contains("log")) {
    log_.append(message.at("log"));
    events_.onLogLine(message.at("log"));
  }
  if (message.contains("command")) {
    trace_.append(message.at("command"));
    events_.onCommand(message.at("command"));
  }
  if (message.contains("error")) {
    log_.append("error: " + message.at("error").get<std::string>());
    events_.onEvent({{"event", "error"}, {"text", message.at("error")}});
  }
  if (message.contains("fatal")) throw std::runtime_error(message.at("fatal").get<std::string>());
}

}  // namespace desk
