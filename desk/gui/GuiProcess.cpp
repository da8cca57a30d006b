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

/// Where the process finds its channel when it starts.
constexpr int kChannel = STDIN_FILENO;

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

/// Sends what the process and its commands print to the receiver's own log. Without one they cannot
/// print.
void redirectOutput() {
  const native::Descriptor log(open(kGuiLog, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
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

void startGuiProcess(const std::vector<std::string>& arguments, Channel channel,
                     const std::vector<int>& descriptors) {
  std::vector<char*> words;
  words.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) {
    words.push_back(const_cast<char*>(argument.c_str()));
  }
  words.push_back(nullptr);
  dup2(channel.descriptor(), kChannel);
  const int end = kFirstDescriptor + static_cast<int>(descriptors.size());
  std::vector<int> out_of_the_way = descriptors;
  for (int& each : out_of_the_way) each = fcntl(each, F_DUPFD, end);
  int number = kFirstDescriptor;
  for (const int each : out_of_the_way) dup2(each, number++);
  // The front end's viewers have connections, which would stay open with this process.
  close_range(static_cast<unsigned>(end), ~0U, 0);
  execv("/proc/self/exe", words.data());
  _exit(EXIT_FAILURE);
}

void runGuiProcess(const std::filesystem::path& dir, bool is_enclosed,
                   const Application& application) {
  setsid();
  resetSignals();
  Channel channel(native::Descriptor(fcntl(kChannel, F_DUPFD_CLOEXEC, kFirstDescriptor)));
  try {
    leaveStandardStreams();
    native::enterEnclosure(dir, is_enclosed, channel.descriptor());
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
  } catch (const std::exception& error) {
    channel.send({{"fatal", native::shownText(error.what())}});
  }
  // Not exit(): nothing that is left has to be undone.
  _exit(EXIT_FAILURE);
}

}  // namespace desk
