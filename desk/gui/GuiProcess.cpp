#include "desk/gui/GuiProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/native/Enclosure.h"
#include "host/native/OsError.h"
#include "host/native/ShownText.h"

namespace desk {
namespace {

constexpr const char* kPidFile = "/var/run/enigma2.pid";
constexpr const char* kGuiLog = "/var/log/enigma2.log";

/// Sends what happens to the supervisor.
class Reporter : public Observer {
 public:
  explicit Reporter(Channel& channel) : channel_(channel) {}
  void onLogLine(const std::string& line) override {
    channel_.send({{"log", native::shownText(line)}});
  }
  void onCommand(const std::string& command) override {
    channel_.send({{"command", native::shownText(command)}});
  }
  void onError(const std::string& text) override {
    channel_.send({{"error", native::shownText(text)}});
  }

 private:
  Channel& channel_;
};

/// Gives signals the meaning that they have for a program that has just been started, whatever the
/// front end has made of them: commands would inherit that.
void resetSignals() {
  sigset_t none{};
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (int signal = 1; signal < SIGRTMIN; ++signal) std::signal(signal, SIG_DFL);
}

/// Takes the process and its commands off whatever the supervisor reads from and writes to.
void leaveStandardStreams() {
  const native::Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (dup2(nothing.number(), stream) < 0) throw native::osError(errno, "/dev/null");
  }
}

/// Closes what the front end had open when it started the process, such as its viewers'
/// connections: they would stay open with the process. (close_range(2) does so for every number in
/// between.)
void closeOthers(int channel) {
  const auto number = static_cast<unsigned>(channel);
  if (number > STDERR_FILENO + 1) close_range(STDERR_FILENO + 1, number - 1, 0);
  close_range(number + 1, ~0U, 0);
}

/// Sends what the process and its commands print to the receiver's own log, if it has one.
void redirectOutput() {
  const native::Descriptor log(open(kGuiLog, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  if (!log) return;
  dup2(log.number(), STDOUT_FILENO);
  dup2(log.number(), STDERR_FILENO);
}

/// Says which process a command in the tree means by the GUI.
void writePidFile() {
  std::ofstream file(kPidFile);
  file << getpid() << "\n";
  file.close();
  if (!file) {
    throw std::runtime_error(std::string("cannot write ") + kPidFile +
                             " in the tree: run stowline as the user whom the tree belongs to");
  }
}

/// Answers words with frames until the supervisor has gone, and tells it what the jobs change.
class Loop {
 public:
  Loop(Channel& channel, Receiver& receiver) : channel_(channel), receiver_(receiver) {}

  void run() {
    while (waitForWork()) {
      if (jobs_have_work_) reportJobs();
      if (socket_is_readable_ && !takeMessages()) return;
      if (waiting_ && receiver_.jobs().idle()) {
        waiting_ = false;
        send("frame", "wait");
      }
    }
  }

  /// Sends what a viewer sees after `word`, as the message `kind`.
  void send(const char* kind, const std::string& word) {
    channel_.send({{kind, receiver_.frame(word, sent_rows_.get())}});
    sent_rows_ = receiver_.rows();
    change_is_told_ = false;
  }

 private:
  /// Waits until a job or the socket has something. Returns false when waiting is impossible.
  bool waitForWork() {
    std::vector<pollfd> watched = receiver_.jobs().watched();
    watched.push_back({.fd = channel_.descriptor(), .events = POLLIN, .revents = 0});
    const bool waited = poll(watched.data(), watched.size(), -1) > 0 || errno == EINTR;
    socket_is_readable_ = watched.back().revents != 0;
    watched.pop_back();
    jobs_have_work_ =
        std::ranges::any_of(watched, [](const pollfd& job) { return job.revents != 0; });
    return waited;
  }

  void reportJobs() {
    receiver_.reportJobs();
    if (receiver_.jobs().idle() && !waiting_) {
      send("idle", "wait");
    } else if (!change_is_told_) {
      channel_.send({{"changed", true}});
      change_is_told_ = true;
    }
  }

  /// Takes every message that has come. Returns false when the supervisor has gone.
  bool takeMessages() {
    std::optional<Channel::Message> message = channel_.receive();
    if (!message) return false;
    for (; message; message = channel_.receiveRead()) {
      if (message->contains("show")) {
        send("shown", "frame");
      } else {
        take(message->at("word"));
      }
    }
    return true;
  }

  void take(const std::string& word) {
    if (word == "wait") {
      waiting_ = true;
    } else if (receiver_.handle(word)) {
      send("frame", word);
    } else {
      channel_.send({{"missing", word}});
    }
  }

  Channel& channel_;
  Receiver& receiver_;
  std::shared_ptr<const Rows> sent_rows_;
  bool jobs_have_work_ = false;
  bool socket_is_readable_ = false;
  bool waiting_ = false;
  bool change_is_told_ = false;
};

}  // namespace

void runGuiProcess(const std::filesystem::path& dir, const Application& application,
                   Channel channel) {
  setsid();
  resetSignals();
  closeOthers(channel.descriptor());
  try {
    leaveStandardStreams();
    native::enterTree(dir);
    native::setReceiverEnvironment();
    redirectOutput();
    writePidFile();
    Reporter reporter(channel);
    Receiver receiver(reporter);
    receiver.open(application);
    Loop loop(channel, receiver);
    loop.send("frame", "");
    loop.run();
    unlink(kPidFile);
    // Whatever a command has left running goes with the GUI.
    kill(0, SIGKILL);
  } catch (const std::exception& error) {
    channel.send({{"fatal", native::shownText(error.what())}});
  }
  // Not exit(): what the supervisor has registered to run at its own exit is not this process's.
  _exit(EXIT_FAILURE);
}

}  // namespace desk
