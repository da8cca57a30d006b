#pragma once

#include <filesystem>

namespace native {

/// Goes on in an enclosure around the receiver tree `dir`: returns in a new process whose "/" is
/// the tree, and which has, with all that it starts, namespaces of its own for users, processes,
/// mounts, IPC, network and the host's name (namespaces(7)), no terminal, no new privileges, no
/// device nodes, and limits to the size of a file, the memory of a process and the number of
/// processes (setrlimit(2); for root's number, Linux 6.14 and the highest process number in
/// proc_sys_kernel(5)). Where memory runs out, its processes are the first to go
/// (proc_pid_oom_score_adj(5)). Of what was open there are standard output and error, and
/// `lifeline`. Whoever runs this is root in there.
///
/// The process that calls this stays outside, waits for the end of the new one and ends as that
/// does. The enclosure ends, with all that runs in it, as soon as one of these has ended: the new
/// process, the one that waits, or whoever holds the other end of the socket `lifeline`.
///
/// Without `is_enclosed`, which only root can do, there are no namespaces: "/" is the tree, but who
/// wants to get out does. What is left in the tree at the end is killed, as far as it can be found.
///
/// Raises std::runtime_error, with one line that says what to do, when the system does not allow
/// it. There must be no other threads.
void enterEnclosure(const std::filesystem::path& dir, bool is_enclosed, int lifeline = -1);

/// Lets this process and its commands see no environment but what a receiver's GUI has, and work in
/// its directory. Raises std::runtime_error when that is not there.
void setReceiverEnvironment();

}  // namespace native
