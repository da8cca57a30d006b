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
#include <optional>
#include <stdexcept>
#include <utility>

#include "base/Escape.h"
#include "base/SystemError.h"
#include "desk/protocol/Channel.h"
#include "desk/protocol/Json.h"
#include "host/native/Enclosure.h"

namespace desk {
namespace {

constexpr const char* kPidFile = "/var/run/enigma2.pid";
constexpr const char* kGuiLog = "/var/log/enigma2.log";

/// The GUI's end of the channel.
class Reporter : public Observer {
 public:
  explicit Reporter(base::Descriptor socket) : channel_(std::move(socket)) {}

  void onLogLine(const std::string& line) override { send(LogLine{base::escapeInvalidUtf8(line)}); }
  void onCommand(const std::string& command) override {
    send(CommandStart{base::escapeInvalidUtf8(command)});
  }
  void onError(const std::string& text) override {
    send(UncaughtError{base::escapeInvalidUtf8(text)});
  }

  void send(const Report& report) { channel_.send(writer_.jsonOf(report)); }

  Channel& channel() { return channel_; }

 private:
  Channel channel_;
  ReportWriter writer_;
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
  const base::Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (dup2(nothing.number(), stream) < 0) throw base::SystemError(errno, "/dev/null");
  }
}

/// Sends what the process and its commands print to the receiver's own log. Without one they cannot
/// print.
void redirectOutput() {
  const base::Descriptor log(open(kGuiLog, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    dup2(log ? log.number() : STDIN_FILENO, stream);
  }
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
  Loop(Reporter& supervisor, Receiver& receiver) : supervisor_(supervisor), receiver_(receiver) {}

  void run() {
    sendFrame(FrameReport::Cause::word, {});
    while (waitForWork()) {
      if (jobs_have_work_) reportJobs();
      if (socket_is_readable_ && !takeRequests()) return;
      if (wait_ && receiver_.jobs().idle()) {
        sendFrame(FrameReport::Cause::word, *wait_);
        wait_.reset();
      }
    }
  }

 private:
  /// Waits until a job or the socket has something. Returns false when waiting is impossible.
  bool waitForWork() {
    std::vector<pollfd> watched = receiver_.jobs().watched();
    watched.push_back({.fd = supervisor_.channel().descriptor(), .events = POLLIN, .revents = 0});
    const bool waited = poll(watched.data(), watched.size(), -1) > 0 || errno == EINTR;
    socket_is_readable_ = watched.back().revents != 0;
    watched.pop_back();
    jobs_have_work_ =
        std::ranges::any_of(watched, [](const pollfd& job) { return job.revents != 0; });
    return waited;
  }

  void sendFrame(FrameReport::Cause cause, const Word& word) {
    supervisor_.send(FrameReport{cause, receiver_.frame(word)});
    change_is_told_ = false;
  }

  void reportJobs() {
    receiver_.reportJobs();
    if (receiver_.jobs().idle() && !wait_) {
      sendFrame(FrameReport::Cause::idle, {Word::Kind::wait, "wait"});
    } else if (!change_is_told_) {
      supervisor_.send(Changed());
      change_is_told_ = true;
    }
  }

  /// Takes every request that has come. Returns false when the supervisor has gone.
  bool takeRequests() {
    Channel& channel = supervisor_.channel();
    std::optional<std::string> line = channel.receive();
    if (!line) return false;
    for (; line; line = channel.receiveRead()) {
      const Request request = parseRequest(*line);
      if (request.word) {
        take(*request.word);
      } else {
        sendFrame(FrameReport::Cause::request, {Word::Kind::frame, "frame"});
      }
    }
    return true;
  }

  void take(const Word& word) {
    if (word.kind == Word::Kind::wait) {
      wait_ = word;
    } else if (receiver_.handle(word)) {
      sendFrame(FrameReport::Cause::word, word);
    } else {
      supervisor_.send(RowMissing());
    }
  }

  Reporter& supervisor_;
  Receiver& receiver_;
  std::optional<Word> wait_;  ///< the word that waits for the jobs
  bool jobs_have_work_ = false;
  bool socket_is_readable_ = false;
  bool change_is_told_ = false;
};

}  // namespace

void runGuiProcess(const std::filesystem::path& dir, bool is_enclosed,
                   const Application& application) {
  setsid();
  resetSignals();
  Reporter reporter(base::Descriptor(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)));
  try {
    leaveStandardStreams();
    native::enterEnclosure(dir, is_enclosed, reporter.channel().descriptor());
    native::setReceiverEnvironment();
    redirectOutput();
    writePidFile();
    Receiver receiver(reporter);
    receiver.open(application);
    Loop(reporter, receiver).run();
    unlink(kPidFile);
  } catch (const std::exception& error) {
    reporter.send(Fatal{base::escapeInvalidUtf8(error.what())});
  }
  // Not exit(): nothing that is left has to be undone.
  _exit(EXIT_FAILURE);
}

}  // namespace desk
