"""A receiver tree, and the command stowline in a real terminal that is driven from outside.

STOWLINE_COMMAND names the command.
"""

import os
import re
import shutil
import subprocess
import tempfile
import time

STOWLINE = os.environ["STOWLINE_COMMAND"]
BACKUPS = "media/hdd/qor-stowline"
PATIENCE = 60  # seconds: how long something that has to happen may take on a busy machine

# What a shell shows when it waits for a command, and how a command's end is told.
PROMPT = "ready> "


class NotShown(AssertionError):
    """What was waited for has not come; says what was there instead."""


def wait_until(condition, what, show=lambda: ""):
    """Waits until the condition returns something true, and returns that."""
    end = time.monotonic() + PATIENCE
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise NotShown("%s has not come to pass:\n%s" % (what, show()))
        time.sleep(0.01)


class Receiver:
    """A receiver tree in a directory of its own."""

    def __init__(self, directory):
        self.tree = os.path.join(directory, "receiver")
        subprocess.run([STOWLINE, "receiver", "new", self.tree], check=True)

    def path(self, name):
        return os.path.join(self.tree, name)

    def write(self, name, content, mode=0o644):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())
        os.chmod(self.path(name), mode)

    def backup(self, name, size=20000):
        """Puts a file into the backup directory; it is no archive, but large enough to be taken for one."""
        path = os.path.join(os.fsencode(self.path(BACKUPS)), name if isinstance(name, bytes) else name.encode())
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.truncate(size)

    def archive(self, name, member="etc/hostname"):
        """Puts a real archive of some size into the backup directory, with one file of the tree in it."""
        self.backup(name)
        noise = self.path("home/root/noise")
        with open(noise, "wb") as file:
            file.write(os.urandom(20000))
        subprocess.run(["tar", "-czf", os.path.join(self.path(BACKUPS), name), "-C", self.tree, member,
                        "home/root/noise"], check=True)
        os.remove(noise)

    def hold(self, program, arguments="*"):
        """Makes a program of the tree wait until go() is called for it, each time that it runs with such arguments,
        a shell's pattern."""
        gate = self.path("gate")
        if not os.path.exists(gate):
            os.mkfifo(gate)
        real = self.path(program + ".real")
        os.rename(self.path(program), real)
        self.write(program, "#!/bin/sh\ncase $* in %s) read line < /gate ;; esac\nexec /%s.real \"$@\"\n" % (
            arguments, program), 0o755)

    def release(self, program):
        """Lets a program that was held run as it did."""
        os.rename(self.path(program + ".real"), self.path(program))

    def go(self, gate="gate"):
        """Lets what reads from the pipe `gate` go on. Who reads twice needs two: the second would see the end of
        what the first has read."""
        with open(self.path(gate), "w", encoding="ascii") as pipe:
            pipe.write("\n")

    def processes(self):
        """Returns the processes that live in the tree, as {number: command line}."""
        found = {}
        for number in filter(str.isdigit, os.listdir("/proc")):
            try:
                if os.path.samefile("/proc/%s/root" % number, self.tree):
                    with open("/proc/%s/cmdline" % number, encoding="utf-8", errors="replace") as file:
                        found[int(number)] = file.read().replace("\0", " ").strip()
            except OSError:
                continue
        return found

    def gui(self):
        """Returns the process of the GUI, which has another number in the tree."""
        with open(self.path("var/run/enigma2.pid"), encoding="ascii") as file:
            in_tree = file.read().strip()
        for number in self.processes():
            with open("/proc/%d/status" % number, encoding="ascii") as file:
                if re.search(r"^NSpid:.*\t%s$" % in_tree, file.read(), re.MULTILINE):
                    return number
        raise AssertionError("no GUI runs")

    def play(self, menu, words, *options):
        """Returns what a script of words prints."""
        return subprocess.run([STOWLINE, "desk", "--receiver", self.tree, "--menu", menu, "--frames", "json",
                               "--play", words, *options], check=True, stdout=subprocess.PIPE).stdout.decode()


class Terminal:
    """A shell in a terminal."""

    def __init__(self, directory, columns=80, rows=24, term="tmux-256color", **environment):
        self.socket = os.path.join(tempfile.mkdtemp(dir=directory), "socket")
        # A build with the address sanitizer crashes like any other.
        variables = {"LC_ALL": "C.UTF-8", "PS1": PROMPT, "HISTFILE": "", "ASAN_OPTIONS": "handle_segv=0", **environment}
        self._tmux("-f", "/dev/null", "new-session", "-d", "-x", str(columns), "-y", str(rows),
                   "env -i PATH='%s' TERM=%s %s bash --norc --noprofile" % (
                       os.environ["PATH"], term, " ".join("%s='%s'" % item for item in variables.items())))
        self._tmux("set-option", "-g", "status", "off")
        self._tmux("set-option", "-g", "remain-on-exit", "on")
        self.session = self._tmux("display-message", "-p", "#{pane_pid}").strip()
        self.columns, self.rows = columns, rows
        self._tmux("resize-window", "-x", str(columns), "-y", str(rows))
        self.wait_for(PROMPT.strip())

    def _tmux(self, *words):
        # A UTF-8 client (-u), or the terminal's characters would come as underscores.
        done = subprocess.run(["tmux", "-u", "-S", self.socket, *words], check=True, stdout=subprocess.PIPE)
        return done.stdout.decode(errors="surrogateescape")

    def close(self):
        """Ends the shell, and the command that runs in it: another may then use its receiver."""
        subprocess.run(["tmux", "-S", self.socket, "kill-server"], check=False, stderr=subprocess.DEVNULL)
        # One that has ended, but that nobody has waited for yet, is in state Z.
        command = ["pgrep", "--session", self.session, "--exact", "stowline", "--runstates", "D,R,S,T,t"]
        wait_until(lambda: not subprocess.run(command, check=False, stdout=subprocess.PIPE).stdout,
                   "the end of the command")

    def shell(self, command):
        """Types a command line. The prompt before it is not taken for the one after it."""
        self._tmux("send-keys", "-l", command)
        wait_until(lambda: not self.is_asking(), "the command line", self.text)
        self.press("Enter")

    def is_asking(self):
        """Whether the shell asks for a command line, and none is typed yet."""
        return [line for line in self.lines() if line][-1:] == [PROMPT.strip()]

    def press(self, *keys):
        """Presses keys one by one, by tmux's names."""
        self._tmux("send-keys", *keys)

    def click(self, column, row, button=0):
        """Presses and releases a mouse button over a cell, as a terminal of the type tmux reports it; 64 and 65 are the
        wheel's, which are not released."""
        place = bytes((33 + column, 33 + row))
        report = b"\033[M" + bytes((32 + button,)) + place
        if button < 64:
            report += b"\033[M" + bytes((32 + 3,)) + place
        self._tmux("send-keys", "-H", *("%02x" % byte for byte in report))

    def click_on(self, text):
        """Clicks on the first place where the text is shown."""
        for row, line in enumerate(self.lines()):
            if text in line:
                return self.click(line.index(text), row)
        raise NotShown(text + " is not shown:\n" + self.text())

    def resize(self, columns, rows):
        self.columns, self.rows = columns, rows
        self._tmux("resize-window", "-x", str(columns), "-y", str(rows))

    def lines(self, *options):
        """Returns the lines that are shown, without the blanks at their ends."""
        return [line.rstrip() for line in self._tmux("capture-pane", "-p", *options).split("\n")[:self.rows]]

    def text(self):
        return "\n".join(self.lines())

    def styled(self):
        """Returns what is shown with its colours and attributes."""
        return "\n".join(self.lines("-e"))

    def asked(self, variable):
        """Returns what the terminal says of itself."""
        return self._tmux("display-message", "-p", "#{%s}" % variable).strip()

    def wait_for(self, text, *others):
        """Waits until all the texts are shown; returns the lines."""
        wait_until(lambda: all(one in self.text() for one in (text, *others)), repr((text, *others)), self.text)
        return self.lines()

    def wait_for_picture(self, *texts):
        """Waits until all the texts are shown and nothing has changed for a moment, for a picture comes in parts;
        returns the lines."""
        def picture():
            lines = self.wait_for(*texts)
            time.sleep(0.1)
            return self.lines() == lines and lines
        return wait_until(picture, "a picture that stays", self.text)

    def wait_until_gone(self, text):
        """Waits until the text is not shown any more."""
        wait_until(lambda: text not in self.text(), "the end of " + repr(text), self.text)

    def wait_for_end(self):
        """Waits until the shell asks for the next command; returns the lines."""
        wait_until(self.is_asking, "the shell's prompt", self.text)
        return self.lines()


class Directory:
    """A directory that goes with its test, with what was opened in it."""

    def __init__(self, test):
        self.path = tempfile.mkdtemp()
        test.addCleanup(shutil.rmtree, self.path, ignore_errors=True)
        self.test = test

    def receiver(self):
        return Receiver(self.path)

    def terminal(self, *arguments, **options):
        terminal = Terminal(self.path, *arguments, **options)
        self.test.addCleanup(terminal.close)
        return terminal


def ancestor_of(process, generations):
    """Returns the parent of a process, its parent, and so on."""
    for _ in range(generations):
        with open("/proc/%d/stat" % process, encoding="ascii") as stat:
            process = int(stat.read().rsplit(")", 1)[1].split()[1])
    return process


def desk(receiver, menu="backup", *options):
    """Returns the command line that opens the menu on the terminal."""
    return " ".join([STOWLINE, "desk --receiver", receiver.tree, "--menu", menu, *options])
