#pragma once

namespace desk::terminal {

/// Puts a guard before the terminal: from here on this process is a child of what it was, and the
/// process that was called only waits for it. However the child ends, killed or crashed, the guard
/// puts the terminal back as it is now, waits for what the child has left running, and ends the
/// same way, or with status 1 and one line when it was killed or has crashed. It stops and goes on
/// with the child, and the child ends when the guard is killed. Standard input has to be a
/// terminal. Raises std::runtime_error when no process can be started.
void putGuardBeforeTerminal();

}  // namespace desk::terminal
