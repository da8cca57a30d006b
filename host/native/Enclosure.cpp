#include "host/native/Enclosure.h"

#include <fcntl.h>
#include <grp.h>
#include <linux/capability.h>
#include <linux/keyctl.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/Descriptor.h"
#include "base/Process.h"
#include "base/SystemError.h"

namespace native {
namespace {

/// Where the GUI works. Not "/": there the shell would expand the relative patterns of the
/// configuration backup's exclusions.
constexpr const char* kHome = "/home/root";

constexpr int kNamespaces =
    CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNS | CLONE_NEWIPC | CLONE_NEWNET | CLONE_NEWUTS;

/// What root may do in there (capabilities(7)): unpack archives and end processes.
constexpr int kCapabilities[] = {CAP_CHOWN,  CAP_DAC_OVERRIDE, CAP_FOWNER, CAP_FSETID,
                                 CAP_SETGID, CAP_SETUID,       CAP_KILL};

struct Limit {
  __rlimit_resource resource;
  rlim_t most;
};

/// The most processes. RLIMIT_NPROC does not count root's.
constexpr rlim_t kProcesses = 512;

/// The most memory that a process may map beyond what this one has, in bytes.
constexpr rlim_t kMemory = rlim_t{2} << 30U;

constexpr Limit kLimits[] = {
    {RLIMIT_NPROC, kProcesses},
    {RLIMIT_FSIZE, rlim_t{4} << 30U},  // bytes
    {RLIMIT_CORE, 0},
};

/// What a process that was ended by a signal tells its parent in its exit status, as a shell does.
constexpr int kSignalled = 128;

[[noreturn]] void fail(const std::string& step) {
  throw std::runtime_error("cannot enclose the receiver: " + step + ": " + std::strerror(errno) +
                           "; root can do without (--no-enclosure)");
}

void require(bool done, const char* step) {
  if (!done) fail(step);
}

/// Returns the map of the users or groups that this process knows onto themselves
/// (user_namespaces(7)).
std::string identityMap(const char* path) {
  std::ifstream known(path);
  std::string map;
  for (std::string inside, outside, count; known >> inside >> outside >> count;) {
    map += inside + " " + inside + " " + count + "\n";
  }
  return map;
}

void writeText(const std::string& path, const std::string& text) {
  const base::Descriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC));
  // A map is taken by one write (user_namespaces(7)).
  require(
      file && write(file.number(), text.data(), text.size()) == static_cast<ssize_t>(text.size()),
      path.c_str());
}

/// Says who the users of the namespace of `process` are. Root's are those outside; an ordinary user
/// is its root, and alone.
void mapUsers(pid_t process) {
  const std::string of_process = "/proc/" + std::to_string(process);
  if (geteuid() == 0) {
    writeText(of_process + "/uid_map", identityMap("/proc/self/uid_map"));
    writeText(of_process + "/gid_map", identityMap("/proc/self/gid_map"));
  } else {
    writeText(of_process + "/setgroups", "deny");
    writeText(of_process + "/uid_map", "0 " + std::to_string(geteuid()) + " 1\n");
    writeText(of_process + "/gid_map", "0 " + std::to_string(getegid()) + " 1\n");
  }
}

/// Makes `dir` the root of the file system, and all else disappear (pivot_root(2)).
void moveInto(const std::filesystem::path& dir) {
  const char* const tree = dir.c_str();
  require(mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "mount");
  require(mount(tree, tree, nullptr, MS_BIND | MS_REC, nullptr) == 0, "mount");
  require(chdir(tree) == 0, tree);
  require(syscall(SYS_pivot_root, ".", ".") == 0, "pivot_root");
  require(umount2(".", MNT_DETACH) == 0, "umount");
  require(chdir("/") == 0, "/");
  mount_attr forbidden = {};
  forbidden.attr_set = MOUNT_ATTR_NOSUID | MOUNT_ATTR_NODEV;
  require(mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &forbidden, sizeof forbidden) == 0, "mount");
}

void changeRoot(const std::filesystem::path& dir) {
  require(chroot(dir.c_str()) == 0 && chdir("/") == 0, dir.c_str());
}

void giveUpPrivileges() {
  require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "no new privileges");
  std::array<__user_cap_data_struct, 2> kept{};
  for (const int capability : kCapabilities) {
    auto& word = kept.at(static_cast<std::size_t>(CAP_TO_INDEX(capability)));
    word.permitted |= CAP_TO_MASK(capability);
    word.effective |= CAP_TO_MASK(capability);
  }
  for (int capability = 0; prctl(PR_CAPBSET_READ, capability, 0, 0, 0) >= 0; ++capability) {
    if (std::ranges::count(kCapabilities, capability) > 0) continue;
    require(prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) == 0, "capabilities");
  }
  __user_cap_header_struct header = {.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
  require(syscall(SYS_capset, &header, kept.data()) == 0, "capabilities");
}

void setLimit(const Limit& limit) {
  rlimit both = {};
  getrlimit(limit.resource, &both);
  both.rlim_max = std::min(both.rlim_max, limit.most);
  both.rlim_cur = both.rlim_max;
  require(setrlimit(limit.resource, &both) == 0, "limits");
}

/// Returns how much memory this process has mapped, in bytes; a sanitizer maps terabytes.
rlim_t mappedMemory() {
  rlim_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

void setLimits() {
  for (const Limit& limit : kLimits) setLimit(limit);
  setLimit({RLIMIT_AS, mappedMemory() + kMemory});
  // Where memory runs out, all that is in the tree goes before anything outside.
  std::ofstream("/proc/self/oom_score_adj") << "1000";
}

/// Whether the highest process number belongs to each namespace (Linux 6.14): before, root would
/// change that of the whole machine.
bool hasOwnProcessNumbers() {
  utsname system = {};
  uname(&system);
  return strverscmp(system.release, "6.14") >= 0;
}

/// Limits the processes of the namespace by their numbers.
void limitProcessNumbers() {
  if (hasOwnProcessNumbers()) std::ofstream("/proc/sys/kernel/pid_max") << kProcesses;
}

/// Keeps from the commands what this process has from outside: their user is the same, but they
/// cannot look into it (PR_SET_DUMPABLE in prctl(2)).
void hideFromCommands() {
  require(prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0, "prctl");
}

/// Takes this process off the terminal and off all that it has open but standard output and error
/// and `lifeline`. Standard input has nothing.
void leaveOutside(int lifeline) {
  setsid();
  std::array<int, 2> ends{};
  require(pipe(ends.data()) == 0 && dup2(ends[0], STDIN_FILENO) == STDIN_FILENO, "pipe");
  const auto kept = static_cast<unsigned>(std::max(lifeline, STDERR_FILENO));
  if (kept > STDERR_FILENO + 1) close_range(STDERR_FILENO + 1, kept - 1, 0);
  require(close_range(kept + 1, ~0U, 0) == 0, "close_range");
}

/// Ends this process as `status` says that another has ended (wait(2)).
[[noreturn]] void endLike(int status) {
  if (WIFEXITED(status) && WEXITSTATUS(status) <= kSignalled) _exit(WEXITSTATUS(status));
  const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status) - kSignalled;
  // The core file would be that of the wrong process.
  const rlimit no_core = {};
  setrlimit(RLIMIT_CORE, &no_core);
  std::signal(signal, SIG_DFL);
  sigset_t it{};
  sigemptyset(&it);
  sigaddset(&it, signal);
  sigprocmask(SIG_UNBLOCK, &it, nullptr);
  kill(getpid(), signal);
  _exit(kSignalled + signal);
}

/// What the first process of the enclosure does: it waits for `process`, and for the orphans that
/// it inherits. When it ends, the system ends all others (pid_namespaces(7)).
[[noreturn]] void reap(pid_t process) {
  for (;;) {
    int status = 0;
    if (wait(&status) != process) continue;
    // No signal from inside ends this process: its exit status carries the other one's.
    _exit(WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status));
  }
}

/// Tells every process whose "/" is `dir` to end. Returns whether there is any.
bool killAllIn(const std::filesystem::path& dir) {
  bool is_found = false;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::error_code gone;
    if (!std::filesystem::equivalent(entry.path() / "root", dir, gone)) continue;
    is_found |= kill(std::stoi(entry.path().filename()), SIGKILL) == 0;
  }
  return is_found;
}

/// Ends every process whose "/" is `dir`, but for those that wait for a dead share: no signal ends
/// them.
void endAllIn(const std::filesystem::path& dir) {
  constexpr int kMostTries = 200;
  constexpr useconds_t kPause = 10000;  // microseconds
  for (int tries = 0; tries < kMostTries && killAllIn(dir); ++tries) usleep(kPause);
}

/// Waits for the end of the enclosure's first process. Ends it when the other end of `lifeline` is
/// closed, or when this process is asked to end by a signal. Returns the status (wait(2)) with
/// which this process has to end.
int waitForEnd(pid_t first, int lifeline) {
  sigset_t ending{};
  sigemptyset(&ending);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) sigaddset(&ending, signal);
  sigprocmask(SIG_BLOCK, &ending, nullptr);
  const base::Descriptor asked(signalfd(-1, &ending, SFD_CLOEXEC));
  base::Descriptor ended;
  try {
    ended = base::openProcess(first);
  } catch (const base::SystemError&) {
    // Without it there is no waiting for its end and for others at once.
  }
  if (!asked || !ended) kill(first, SIGKILL);
  std::array<pollfd, 3> watched = {pollfd{.fd = ended.number(), .events = POLLIN, .revents = 0},
                                   pollfd{.fd = asked.number(), .events = POLLIN, .revents = 0},
                                   pollfd{.fd = lifeline, .events = 0, .revents = 0}};
  while (asked && ended && poll(watched.data(), watched.size(), -1) < 0 && errno == EINTR) {
  }
  if (watched[0].revents == 0) kill(first, SIGKILL);
  int status = 0;
  while (waitpid(first, &status, 0) < 0 && errno == EINTR) {
  }
  signalfd_siginfo signal = {};
  const bool is_asked =
      watched[1].revents != 0 && read(asked.number(), &signal, sizeof signal) == sizeof signal;
  return is_asked ? static_cast<int>(signal.ssi_signo) : status;
}

/// Lets the first process of the enclosure end with the one that waits outside, which has told it
/// to begin.
void endWithParent(const base::Descriptor& outside) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  char begin = 0;
  if (read(outside.number(), &begin, 1) != 1) _exit(EXIT_FAILURE);
  // It may have ended before its end would have been a signal.
  pollfd parent = {.fd = outside.number(), .events = 0, .revents = 0};
  if (poll(&parent, 1, 0) != 0) _exit(EXIT_FAILURE);
}

/// Becomes the first process of the enclosure, and returns in its second. `is_root`: outside, too;
/// an ordinary user keeps its groups.
void beginInNamespaces(const std::filesystem::path& dir, bool is_root) {
  // In a further namespace capabilities were to be had again. Not every container lets this be
  // said.
  std::ofstream("/proc/sys/user/max_user_namespaces") << "0";
  require(!is_root || setgroups(0, nullptr) == 0, "setgroups");
  limitProcessNumbers();
  // Whoever has no keyring needs none; keyrings(7) have no namespaces.
  syscall(SYS_keyctl, KEYCTL_JOIN_SESSION_KEYRING, nullptr);
  moveInto(dir);
  hideFromCommands();
  const pid_t second = fork();
  require(second >= 0, "fork");
  if (second != 0) reap(second);
  giveUpPrivileges();
  hideFromCommands();
}

}  // namespace

void enterEnclosure(const std::filesystem::path& dir, bool is_enclosed, int lifeline) {
  const bool is_root = geteuid() == 0;
  if (!is_enclosed && !is_root) {
    throw std::runtime_error("only root can do without an enclosure");
  }
  std::array<int, 2> ends{};
  require(pipe2(ends.data(), O_CLOEXEC) == 0, "pipe");
  base::Descriptor outside(ends[0]);
  base::Descriptor inside(ends[1]);
  const int namespaces = is_enclosed ? kNamespaces : 0;
  const auto first = static_cast<pid_t>(syscall(SYS_clone, namespaces | SIGCHLD, 0, 0, 0, 0));
  if (first < 0 && errno == ENOSPC) {
    throw std::runtime_error(
        "this system gives no namespaces to enclose the receiver in: allow them with 'sysctl "
        "user.max_user_namespaces=1000', or do without as root (--no-enclosure)");
  }
  require(first >= 0, "clone");
  if (first == 0) {
    inside.reset();
    endWithParent(outside);
    outside.reset();
    setLimits();
    is_enclosed ? beginInNamespaces(dir, is_root) : changeRoot(dir);
    return leaveOutside(lifeline);
  }
  try {
    if (is_enclosed) mapUsers(first);
    require(write(inside.number(), "", 1) == 1, "pipe");
  } catch (...) {
    inside.reset();
    waitpid(first, nullptr, 0);
    throw;
  }
  const int status = waitForEnd(first, lifeline);
  if (!is_enclosed) endAllIn(dir);
  endLike(status);
}

void setReceiverEnvironment() {
  clearenv();
  setenv("PATH", "/bin:/sbin:/usr/bin:/usr/sbin", 1);
  setenv("HOME", kHome, 1);
  setenv("LANG", "C", 1);
  umask(022);
  if (chdir(kHome) != 0) throw std::runtime_error(std::string("the receiver has no ") + kHome);
}

}  // namespace native
