"""However the terminal is left, it is as it was before, and nothing is left running."""

import os
import signal
import unittest

from terminal import PROMPT, Directory, desk, wait_until

# Shows the terminal's modes, and a line that is not in the command itself.
MODES = "clear; stty -a; echo this 'stays'"


class LeavingTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.directory = Directory(self)
        self.receiver = self.directory.receiver()
        self.new_terminal()

    def new_terminal(self, **options):
        self.terminal = self.directory.terminal(**options)
        self.terminal.shell(MODES)
        self.terminal.wait_for("this stays")
        self.terminal.wait_for_end()
        self.before = [line for line in self.terminal.lines() if line][:-1]

    def open(self, menu="backup", *options):
        self.terminal.shell(desk(self.receiver, menu, *options))
        self.terminal.wait_for("QOR Stowline (")
        self.assertEqual(self.terminal.asked("alternate_on"), "1")

    def processes(self):
        """Returns the command's processes: the guard, the front end, the GUI."""
        guard = int(self.terminal.asked("pane_pid"))
        chain = []
        for _ in range(3):
            with open("/proc/%d/task/%d/children" % (guard, guard), encoding="ascii") as children:
                guard = int(children.read().split()[0])
            chain.append(guard)
        return chain

    def show_modes(self):
        """Leaves the screen with nothing but the terminal's modes, which are those of before, and the prompt."""
        self.terminal.shell(MODES)
        wait_until(lambda: [line for line in self.terminal.lines() if line][:-1] == self.before,
                   "the modes of before", lambda: repr(self.terminal.lines()) + repr(self.before))

    def assert_left(self, *messages):
        """The terminal is as it was, but for the command line and the messages, and nothing runs."""
        self.terminal.wait_for_end()
        lines = [line for line in self.terminal.lines() if line]
        self.assertEqual(lines[:len(self.before)], self.before)
        command = "".join(lines[len(self.before):])
        self.assertTrue(command.endswith("".join(messages) + PROMPT.strip()), command)
        for variable, value in {"alternate_on": "0", "cursor_flag": "1", "mouse_any_flag": "0",
                                "keypad_flag": "0", "insert_flag": "0"}.items():
            self.assertEqual((variable, self.terminal.asked(variable)), (variable, value))
        self.show_modes()
        wait_until(lambda: not self.receiver.processes(), "the end of all processes",
                   lambda: str(self.receiver.processes()))

    def assert_status(self, status):
        self.terminal.shell("echo status $?")
        self.terminal.wait_for("status %d" % status)

    def test_exit_keys_close_the_menu(self):
        for key in ("Escape", "q", "BSpace", "F1", "r"):
            with self.subTest(key):
                self.open()
                self.terminal.press(key)
                self.terminal.wait_for_end()
                self.assert_status(0)
                self.show_modes()
                self.open()
                self.terminal.press(key)
                self.assert_left()

    def test_ctrl_c_ends_it_as_a_command_that_was_interrupted(self):
        self.open()
        self.terminal.press("C-c")
        self.terminal.wait_for_end()
        self.assert_status(128 + signal.SIGINT)
        self.show_modes()
        self.open()
        self.terminal.press("C-c")
        self.assert_left()

    def test_signals_end_it_at_the_guard_and_at_the_front_end(self):
        for number in (signal.SIGTERM, signal.SIGHUP):
            for process in (0, 1):
                with self.subTest("%s to process %d" % (number.name, process)):
                    self.open()
                    os.kill(self.processes()[process], number)
                    self.assert_left("Terminated" if number == signal.SIGTERM else "Hangup")

    def test_killed_or_crashed_front_end_is_told_by_one_line(self):
        for number, name in ((signal.SIGKILL, "Killed"), (signal.SIGSEGV, "Segmentation fault")):
            with self.subTest(name):
                self.open()
                os.kill(self.processes()[1], number)
                self.assert_left("stowline: the terminal's front end was ended by a signal: " + name)

    def test_killed_guard_takes_the_front_end_with_it(self):
        self.open()
        os.kill(self.processes()[0], signal.SIGKILL)
        wait_until(lambda: self.terminal.asked("alternate_on") == "0", "the shell's screen")
        # The shell had asked for the next command before the front end was gone.
        self.terminal.press("Enter")
        self.assert_left()

    def test_crashed_gui_is_told_by_one_line(self):
        self.open()
        os.kill(self.processes()[2], signal.SIGSEGV)
        self.assert_left("stowline: the GUI has crashed: Segmentation fault")

    def test_killed_gui_whose_menu_does_not_open_again_is_told_by_one_line(self):
        self.open()
        os.remove(self.receiver.path("etc/enigma2/settings"))
        os.mkdir(self.receiver.path("etc/enigma2/settings"))
        os.kill(self.processes()[2], signal.SIGKILL)
        self.assert_left("stowline: the menu does not open: OSError: [Errno 21] Is a directory: ",
                         "'/etc/enigma2/settings'")

    def test_interrupted_command_ends_with_it(self):
        self.receiver.hold("bin/tar")
        for key in ("C-c", "C-\\"):
            with self.subTest(key):
                self.open()
                self.terminal.press("Down", "Down", "Enter")
                self.terminal.wait_for("busy for")
                self.assertIn("/bin/sh /bin/tar", " ".join(self.receiver.processes().values()))
                self.terminal.press(key)
                self.assert_left() if key == "C-c" else self.assert_left("Quit")

    def test_killed_front_end_leaves_no_command_behind(self):
        self.receiver.hold("bin/tar")
        self.open()
        self.terminal.press("Down", "Down", "Enter")
        self.terminal.wait_for("busy for")
        os.kill(self.processes()[1], signal.SIGKILL)
        self.assert_left("stowline: the terminal's front end was ended by a signal: Killed")

    def test_lost_connection_ends_everything(self):
        for busy in (False, True):
            with self.subTest(busy=busy):
                self.open()
                if busy:
                    self.receiver.hold("bin/tar")
                    self.terminal.press("Down", "Down", "Enter")
                    self.terminal.wait_for("busy for")
                processes = self.processes()
                self.terminal.close()
                for number in processes:
                    wait_until(lambda one=number: not os.path.exists("/proc/%d" % one), "the end of all processes")
                wait_until(lambda: not self.receiver.processes(), "the end of all processes")
                self.new_terminal()

    def test_stopped_output_keeps_no_one_from_ending_it(self):
        self.open()
        self.terminal.press("Down", "Enter")
        self.terminal.wait_for("closes in")
        self.terminal.press("C-s")
        # Until the front end waits for its count-down to be written.
        front_end = self.processes()[1]
        wait_until(lambda: "write" in waiting_in(front_end), "output that is stopped", lambda: waiting_in(front_end))
        os.kill(self.processes()[0], signal.SIGTERM)
        self.assert_left("Terminated")

    def test_record_that_cannot_be_written_any_more_is_told_by_one_line(self):
        for option in ("--trace", "--record"):
            with self.subTest(option):
                self.terminal.shell(desk(self.receiver, "backup", option, "/dev/full"))
                if option == "--trace":
                    self.terminal.wait_for("QOR Stowline (")
                    self.receiver.hold("bin/tar")
                    self.terminal.press("Down", "Down", "Enter")
                self.assert_left("stowline: No space left on device: '/dev/full'")

    def test_terminal_without_a_screen_of_its_own_gets_an_empty_one(self):
        self.new_terminal(term="vt100")
        for kill in (False, True):
            with self.subTest(kill=kill):
                self.terminal.shell(desk(self.receiver))
                self.terminal.wait_for("QOR Stowline (")
                if kill:
                    os.kill(self.processes()[1], signal.SIGKILL)
                else:
                    self.terminal.press("q")
                self.terminal.wait_for_end()
                last = [line for line in self.terminal.lines() if line][-1 - kill:]
                told = ["stowline: the terminal's front end was ended by a signal: Killed"] if kill else []
                self.assertEqual(last, told + [PROMPT.strip()])

    def test_ctrl_z_gives_the_terminal_back_and_fg_takes_it_again(self):
        self.open()
        self.terminal.press("Down")
        self.terminal.wait_for("> ▣ Backup installed plugins")
        picture = self.terminal.text()
        for _ in range(3):
            self.terminal.press("C-z")
            lines = self.terminal.wait_for_end()
            self.assertEqual([line for line in lines if line][:len(self.before)], self.before)
            self.assertIn("Stopped", self.terminal.text())
            self.assertEqual(self.terminal.asked("alternate_on"), "0")
            self.assertEqual(self.terminal.asked("cursor_flag"), "1")
            self.show_modes()
            self.terminal.shell("fg")
            wait_until(lambda: self.terminal.text() == picture, "the picture of before", self.terminal.text)
            self.terminal.press("Down")
            self.terminal.wait_for("> ▣ Backup channel settings")
            self.terminal.press("Up")
            wait_until(lambda: self.terminal.text() == picture, "the picture of before", self.terminal.text)
        self.terminal.press("q")
        self.assert_left()

    def test_stop_that_it_cannot_see_coming_gives_the_terminal_back_as_well(self):
        self.open()
        self.terminal.press("Down")
        self.terminal.wait_for("> ▣ Backup installed plugins")
        picture = self.terminal.text()
        os.kill(self.processes()[1], signal.SIGSTOP)
        self.terminal.wait_for("Stopped")
        self.terminal.shell("stty sane; fg")
        wait_until(lambda: self.terminal.text() == picture, "the picture of before", self.terminal.text)
        self.terminal.press("Down")
        self.terminal.wait_for("> ▣ Backup channel settings")
        self.terminal.press("q")
        self.terminal.wait_for_end()

    def test_job_that_is_stopped_can_be_killed(self):
        self.open()
        self.terminal.press("C-z")
        self.terminal.wait_for("Stopped")
        self.show_modes()
        self.terminal.shell("kill %1")
        wait_until(lambda: not self.receiver.processes(), "the end of all processes",
                   lambda: str(self.receiver.processes()))


def waiting_in(process):
    """Returns what the kernel says a process waits in."""
    with open("/proc/%d/stack" % process, encoding="ascii") as stack:
        return stack.read()


if __name__ == "__main__":
    unittest.main()
