/// What a program in a receiver could try to get out of it: it stands in for a personal script, and
/// writes down how far each way has led. It is linked statically, as the tree has no libraries.

#include <arpa/inet.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/ipc.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace {

/// What is there outside: the test writes it into the file "outside" of the directory of backups.
struct Outside {
  std::string file;
  pid_t process = 0;
  in_port_t port = 0;
  key_t memory = 0;
};

/// Returns how a call has ended that returns -1 when it fails.
std::string outcome(long result) {
  return result >= 0 ? "done" : strerrorname_np(errno);
}

/// Tries something in a process of its own, which may change what it likes.
std::string apart(const std::function<std::string()>& attempt) {
  int ends[2] = {};
  if (pipe(ends) != 0) return "no pipe";
  if (fork() == 0) {
    const std::string said = attempt();
    _exit(write(ends[1], said.data(), said.size()) < 0 ? 1 : 0);
  }
  close(ends[1]);
  char said[100] = {};
  const ssize_t size = read(ends[0], said, sizeof said);
  close(ends[0]);
  wait(nullptr);
  return std::string(said, size > 0 ? static_cast<std::size_t>(size) : 0);
}

/// Climbs out of a chroot by one within it.
std::string climb(const std::string& file) {
  mkdir("/tmp/jail", 0755);
  if (chroot("/tmp/jail") != 0) return outcome(-1);
  for (int level = 0; level < 64; ++level) {
    if (chdir("..") != 0) return outcome(-1);
  }
  if (chroot(".") != 0) return outcome(-1);
  return outcome(access(file.c_str(), F_OK));
}

std::string inNamespaces(int namespaces, const std::function<std::string()>& attempt) {
  return unshare(namespaces) == 0 ? apart(attempt) : outcome(-1);
}

std::string connectTo(in_port_t port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int end = socket(AF_INET, SOCK_STREAM, 0);
  return outcome(connect(end, reinterpret_cast<sockaddr*>(&address), sizeof address));
}

/// Opens a file by its handle, which needs no path to it (open_by_handle_at(2)).
std::string openByHandle() {
  alignas(file_handle) char bytes[sizeof(file_handle) + MAX_HANDLE_SZ] = {};
  auto* const handle = reinterpret_cast<file_handle*>(bytes);
  handle->handle_bytes = MAX_HANDLE_SZ;
  int mount = 0;
  if (name_to_handle_at(AT_FDCWD, "/tmp", handle, &mount, 0) != 0) return "no handle";
  const int directory = open("/", O_RDONLY | O_DIRECTORY);
  return outcome(open_by_handle_at(directory, handle, O_RDONLY));
}

std::string makeHugeFile() {
  std::signal(SIGXFSZ, SIG_IGN);
  const int file = open("/tmp/huge", O_WRONLY | O_CREAT, 0644);
  return outcome(ftruncate(file, off_t{1} << 40));
}

std::string liftLimitOfMemory() {
  const rlimit none = {RLIM_INFINITY, RLIM_INFINITY};
  return outcome(setrlimit(RLIMIT_AS, &none));
}

/// Starts processes until the system gives no more, or there are far too many.
std::string startProcesses() {
  constexpr std::size_t kFarTooMany = 2000;
  std::vector<pid_t> started;
  std::string end = "no end";
  while (started.size() < kFarTooMany) {
    const pid_t process = fork();
    if (process == 0) {
      pause();
      _exit(EXIT_SUCCESS);
    }
    if (process < 0) {
      end = outcome(process);
      break;
    }
    started.push_back(process);
  }
  for (const pid_t process : started) kill(process, SIGKILL);
  while (wait(nullptr) > 0) {
  }
  return end;
}

/// Takes any descriptor that a process has (pidfd_getfd(2)).
std::string takeDescriptorsOf(pid_t process) {
  const int target = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  if (target < 0) return outcome(-1);
  long taken = -1;
  for (int number = 0; number < 64 && taken < 0; ++number) {
    taken = syscall(SYS_pidfd_getfd, target, number, 0);
  }
  return outcome(taken);
}

std::string openDescriptors() {
  std::string open;
  for (int number = STDERR_FILENO + 1; number < 1024; ++number) {
    if (fcntl(number, F_GETFD) >= 0) open += (open.empty() ? "" : " ") + std::to_string(number);
  }
  return open.empty() ? "none" : open;
}

}  // namespace

int main() {
  const std::string directory = "/media/hdd/qor-stowline/";
  Outside outside;
  std::ifstream(directory + "outside") >> outside.file >> outside.process >> outside.port >>
      outside.memory;
  const std::string descriptors = openDescriptors();
  std::ofstream report(directory + "report");
  const auto climbing = [&] { return climb(outside.file); };
  const auto mount_processes = [] { return outcome(mount("proc", "/tmp", "proc", 0, nullptr)); };
  report << "read a file: " << outcome(access(outside.file.c_str(), F_OK)) << "\n"
         << "climb out: " << apart(climbing) << "\n"
         << "climb out as another root: "
         << apart([&] { return inNamespaces(CLONE_NEWUSER, climbing); }) << "\n"
         << "mount: " << outcome(mount("none", "/tmp", "tmpfs", 0, nullptr)) << "\n"
         << "mount the processes as another root: " << apart([&] {
              return inNamespaces(CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWPID, mount_processes);
            })
         << "\n"
         << "make a device: " << outcome(mknod("/tmp/disk", S_IFBLK | 0600, makedev(8, 0))) << "\n"
         << "open by handle: " << openByHandle() << "\n"
         << "signal a process: " << outcome(kill(outside.process, 0)) << "\n"
         << "connect to a server: " << connectTo(outside.port) << "\n"
         << "attach shared memory: " << outcome(shmget(outside.memory, 0, 0)) << "\n"
         << "name the machine: " << outcome(sethostname("x", 1)) << "\n"
         << "make a huge file: " << makeHugeFile() << "\n"
         << "lift the limit of memory: " << liftLimitOfMemory() << "\n"
         << "start processes without end: " << startProcesses() << "\n"
         << "gain privileges: " << (prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1 ? "no" : "yes")
         << "\n"
         << "take the first process's descriptors: " << takeDescriptorsOf(1) << "\n"
         << "take the GUI's descriptors: " << takeDescriptorsOf(getppid()) << "\n"
         << "inherited descriptors: " << descriptors << "\n";
}
