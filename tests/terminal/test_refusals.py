"""Where there is no terminal that can be used, one line says so."""

import os
import subprocess
import unittest

from terminal import STOWLINE, Directory, ancestor_of, desk

NO_TERMINAL = "stowline: standard input and output are not both a terminal; press keys with --play \"WORDS\" without one\n"
UNKNOWN = ("stowline: TERM is '%s', a terminal that is not known or cannot place its cursor; set it to the terminal's "
           "type, such as xterm")
NO_MENU = "stowline: the menu does not open: OSError: [Errno 21] Is a directory: '/etc/enigma2/settings'"


class RefusalTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.directory = Directory(self)
        self.receiver = self.directory.receiver()
        self.commands = 0

    def run_desk(self, *options, **streams):
        done = subprocess.run([STOWLINE, "desk", "--receiver", self.receiver.tree, *options], stderr=subprocess.PIPE,
                              check=False, **streams)
        return done.returncode, done.stderr.decode()

    def assert_shell_says(self, terminal, command, status, text):
        """The command, typed into a shell, prints the text and ends with the status; it has no screen of its own."""
        self.commands += 1
        end = "status %d of command %d" % (status, self.commands)
        terminal.shell("clear; %s; echo status $? of command %d" % (command, self.commands))
        shown = "".join(line.ljust(terminal.columns) for line in terminal.wait_for(end))
        self.assertEqual(shown[:shown.index(end)].rstrip(), text)
        self.assertEqual(terminal.asked("alternate_on"), "0")

    def test_without_a_terminal(self):
        null = subprocess.DEVNULL
        for streams in ({"stdin": null, "stdout": null}, {"stdin": null}, {"stdout": subprocess.PIPE}):
            with self.subTest(str(streams)):
                self.assertEqual(self.run_desk(**{"stdin": null, **streams}), (1, NO_TERMINAL))

    def test_with_one_stream_that_is_none(self):
        terminal = self.directory.terminal(columns=200)
        for redirection in ("< /dev/null", "> /dev/null", "| cat"):
            with self.subTest(redirection):
                status = 0 if redirection == "| cat" else 1
                self.assert_shell_says(terminal, desk(self.receiver) + " " + redirection, status, NO_TERMINAL.strip())
                self.assertEqual(self.receiver.processes(), {})

    def test_with_a_terminal_that_is_not_known(self):
        terminal = self.directory.terminal(columns=200)
        for name in ("no-such-terminal", "dumb", "", "../../etc/passwd"):
            with self.subTest(name):
                self.assert_shell_says(terminal, "TERM='%s' %s" % (name, desk(self.receiver)), 1, UNKNOWN % name)
        self.assert_shell_says(terminal, "env -u TERM %s" % desk(self.receiver), 1, UNKNOWN % "")

    def test_options_that_do_not_go_together(self):
        for options in (["--frames", "json"], ["--play", "ok", "--theme", "dark"], ["--play", "ok", "--record", "x"],
                        ["--theme", "blue"]):
            with self.subTest(str(options)):
                status, errors = self.run_desk(*options, stdin=subprocess.DEVNULL)
                self.assertEqual((status, errors.count("\n")), (2, 1))
                self.assertIn(options[-2], errors)

    def test_record_that_cannot_be_written(self):
        terminal = self.directory.terminal(columns=200)
        for option in ("--record", "--log", "--trace"):
            with self.subTest(option):
                path = os.path.join(self.directory.path, "missing", "file")
                self.assert_shell_says(terminal, desk(self.receiver, "backup", option, path), 1,
                                       "stowline: cannot write %s: No such file or directory" % path)

    def test_receiver_that_is_in_use(self):
        first = self.directory.terminal()
        first.shell(desk(self.receiver))
        first.wait_for("QOR Stowline (")
        picture = first.text()
        # The GUI's ancestors: the enclosure's first process, who waits for it, the front end and its guard.
        holder = ancestor_of(self.receiver.gui(), 4)
        in_use = "stowline: '%s' is in use by process %d (stowline desk): close that first" % (
            self.receiver.tree, holder)
        second = self.directory.terminal(columns=200)
        for command in (desk(self.receiver), desk(self.receiver, "restore", "--play exit"),
                        STOWLINE + " receiver flash " + self.receiver.tree):
            self.assert_shell_says(second, command, 1, in_use)
        first.press("l", "l")
        self.assertEqual(first.text(), picture)
        first.press("q")
        first.wait_for_end()
        self.assert_shell_says(second, STOWLINE + " receiver flash " + self.receiver.tree, 0, "")

    def test_receiver_without_a_home(self):
        os.rename(self.receiver.path("home/root"), self.receiver.path("home/nobody"))
        terminal = self.directory.terminal(columns=200)
        self.assert_shell_says(terminal, desk(self.receiver), 1, "stowline: the receiver has no /home/root")

    def test_menu_that_does_not_open(self):
        os.remove(self.receiver.path("etc/enigma2/settings"))
        os.mkdir(self.receiver.path("etc/enigma2/settings"))
        terminal = self.directory.terminal(columns=200)
        self.assert_shell_says(terminal, desk(self.receiver), 1, NO_MENU)


if __name__ == "__main__":
    unittest.main()
