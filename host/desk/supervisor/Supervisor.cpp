#include "Supervisor.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace desk {
namespace {

/// Opens the record `path` to append to; no command ever sees it.
native::Descriptor openRecord(const std::filesystem::path& path) {
  if (path.empty()) return {};
  native::Descriptor record(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  if (record) return record;
  throw std::runtime_error("cannot write " + path.string() + ": " + std::strerror(errno));
}

/// Appends `text` as one line, whatever it holds.
void appendLine(const native::Descriptor& record, const std::string& text) {
  if (!record) return;
  std::string line;
  for (const char character : text) line += character == '\n' ? "\\n" : std::string(1, character);
  line += '\n';
  if (write(record.number(), line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
    throw std::runtime_error(std::string("cannot write a record: ") + std::strerror(errno));
  }
}

}  // namespace

Supervisor::Supervisor(std::function<void(Channel)> run_gui, const Records& records, Events& events)
    : run_gui_(std::move(run_gui)),
      events_(events),
      log_(openRecord(records.log)),
      trace_(openRecord(records.trace)) {
  start();
}

Supervisor::~Supervisor() {
  stop();
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
}

/// Lets the GUI see that nobody is left, and waits for its end.
void Supervisor::stop() {
  channel_.reset();
  if (gui_ > 0) waitpid(std::exchange(gui_, 0), nullptr, 0);
}

Channel::Message Supervisor::firstFrame() {
  if (auto answer = nextAnswer()) return answer->at("frame");
  requireKilled();
  throw std::runtime_error("the GUI was killed before it had opened its menu");
}

std::optional<Channel::Message> Supervisor::press(const std::string& word) {
  channel_->send({{"word", word}});
  if (auto answer = nextAnswer()) {
    if (answer->contains("missing")) return std::nullopt;
    return answer->at("frame");
  }
  requireKilled();
  events_.onEvent({{"event", "gui-killed"}});
  start();
  events_.onEvent({{"event", "gui-started"}});
  Channel::Message frame = firstFrame();
  frame["key"] = word;
  return frame;
}

/// Returns the next answer to a word, recording what comes before it; nothing when the GUI has
/// ended.
std::optional<Channel::Message> Supervisor::nextAnswer() {
  while (auto message = channel_->receive()) {
    if (message->contains("frame") || message->contains("missing")) return message;
    record(*message);
  }
  return std::nullopt;
}

/// Takes leave of a GUI that has ended. Raises std::runtime_error unless a kill has ended it.
void Supervisor::requireKilled() {
  int status = 0;
  waitpid(std::exchange(gui_, 0), &status, 0);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) return;
  if (WIFSIGNALED(status)) {
    throw std::runtime_error(std::string("the GUI has crashed: ") + strsignal(WTERMSIG(status)));
  }
  throw std::runtime_error("the GUI has ended with status " + std::to_string(WEXITSTATUS(status)));
}

void Supervisor::record(const Channel::Message& message) {
  if (message.contains("log")) appendLine(log_, message.at("log"));
  if (message.contains("command")) appendLine(trace_, message.at("command"));
  if (message.contains("error")) {
    appendLine(log_, "error: " + message.at("error").get<std::string>());
    events_.onEvent({{"event", "error"}, {"text", message.at("error")}});
  }
  if (message.contains("fatal")) throw std::runtime_error(message.at("fatal").get<std::string>());
}

}  // namespace desk
