"""What a key or a click does: the word that it presses, as the record of the walk has it."""

import json
import unittest

from terminal import Directory, desk, wait_until

# Keys by tmux's names, and the words that they press in the backup menu, whose cursor is on the first of four rows.
WORDS = {
    "Up": "up", "Down": "down", "Left": "left", "Right": "right",
    "PageUp": "row:0", "PageDown": "row:3", "Home": "row:0", "End": "row:3",
    "F2": "green", "F3": "yellow", "F4": "blue", "g": "green", "y": "yellow", "b": "blue",
    **{str(digit): str(digit) for digit in range(10)},
}


class KeysTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.directory = Directory(self)
        self.receiver = self.directory.receiver()
        self.record = self.directory.path + "/record"

    def open(self, menu="backup", **environment):
        self.terminal = self.directory.terminal(**environment)
        self.terminal.shell(desk(self.receiver, menu, "--record", self.record))
        self.terminal.wait_for("QOR Stowline (")

    def words(self):
        """Returns the words pressed so far; a line that is still being written is none yet."""
        with open(self.record, encoding="utf-8") as record:
            return [json.loads(line)["key"] for line in record if line.endswith("\n")][1:]

    def assert_words(self, *words):
        wait_until(lambda: len(self.words()) >= len(words), "the words " + repr(words), lambda: repr(self.words()))
        self.assertEqual(self.words(), list(words))

    def test_each_key_presses_its_word(self):
        for term in ("tmux-256color", "screen", "xterm", "linux", "vt220"):
            with self.subTest(term):
                open(self.record, "w", encoding="ascii").close()
                self.open(term=term)
                expected = []
                for key, word in WORDS.items():
                    self.terminal.press(key)
                    expected.append(word)
                    self.assert_words(*expected)
                self.terminal.press("q")
                self.assert_words(*expected, "exit")
                self.terminal.close()

    def test_enter_is_ok_and_each_exit_key_is_exit(self):
        self.open()
        expected = []
        for key in ("Escape", "q", "BSpace", "C-h"):
            self.terminal.press("Enter")
            self.terminal.wait_for("Please select medium")
            self.terminal.press(key)
            self.terminal.wait_for("Backup/restore device")
            expected += ["ok", "exit"]
            self.assert_words(*expected)

    def test_red_key_is_red(self):
        for key in ("F1", "r"):
            with self.subTest(key):
                open(self.record, "w", encoding="ascii").close()
                self.open()
                self.terminal.press(key)
                self.assert_words("red")
                self.terminal.close()

    def test_keys_without_a_meaning_press_nothing(self):
        self.open()
        self.terminal.press("x", "F5", "F12", "C-a", "M-x", "Tab", "IC", "DC", "~", "Down")
        self.assert_words("down")

    def test_escape_pressed_twice_is_exit_twice(self):
        self.open()
        self.terminal.press("Enter")
        self.terminal.wait_for("Please select medium")
        self.terminal.press("Escape", "Escape")
        self.assert_words("ok", "exit", "exit")

    def test_hundreds_of_keys_at_once_are_all_taken(self):
        self.open()
        self.terminal.press(*["Down", "Up"] * 300)
        self.assert_words(*["down", "up"] * 300)

    def test_keys_pressed_ahead_are_taken_in_order(self):
        self.receiver.hold("bin/tar")
        self.open()
        self.terminal.press("Down", "Down", "Enter")
        self.terminal.wait_for("busy for")
        self.terminal.press("Enter", "End", "Up", "Up", "Enter")
        self.receiver.go()
        self.terminal.wait_for("List of installed plugins was created succesfully")
        self.assert_words("down", "down", "ok", "ok", "row:3", "up", "up", "ok")

    def test_log_and_help_are_shown_at_once_however_busy_the_gui_is(self):
        self.receiver.hold("bin/tar")
        self.open()
        self.terminal.press("Down", "Down", "Enter")
        self.terminal.wait_for("busy for")
        self.terminal.press("l")
        self.terminal.wait_for("─ Log ─", "$ tar czf")
        self.terminal.press("?")
        self.terminal.wait_for("─ Keys ─")
        self.terminal.press("Enter")
        self.terminal.wait_until_gone("─ Keys ─")
        self.receiver.go()
        self.terminal.wait_for("closes in")
        self.assert_words("down", "down", "ok")

    def test_click_selects_a_row_and_a_second_line_of_it_as_well(self):
        self.open()
        self.terminal.click_on("Backup configurations")
        self.terminal.wait_for("> ▣ Backup configurations")
        self.terminal.click_on("creates a list")
        self.terminal.wait_for("> ▣ Backup installed")
        self.assert_words("row:3", "row:1")

    def test_click_on_the_legend_presses_its_key(self):
        self.open("restore")
        self.terminal.press("Down", "Down")
        self.terminal.wait_for("> ▣ Restore channel")
        self.terminal.click_on("Enter OK")
        self.terminal.wait_for("[yellow] Delete", "nothing here")
        self.terminal.click_on("Delete")
        self.assert_words("down", "down", "ok", "yellow")
        self.terminal.click_on("[green]")
        self.assert_words("down", "down", "ok", "yellow", "green")
        self.terminal.click_on("Close")
        self.terminal.wait_for("> ▣ Restore channel")
        self.terminal.click_on("Log")
        self.terminal.wait_for("─ Log ─")
        self.terminal.click_on("Help")
        self.terminal.wait_for("─ Keys ─")
        self.terminal.click_on("Run per")
        self.terminal.wait_until_gone("─ Keys ─")
        self.terminal.click_on("Esc")
        self.assert_words("down", "down", "ok", "yellow", "green", "red", "exit")

    def test_click_elsewhere_does_nothing_and_the_wheel_moves_the_cursor(self):
        self.open()
        self.terminal.click(40, 15)
        self.terminal.click(0, 0)
        self.terminal.click(40, 15, button=65)
        self.terminal.click(40, 15, button=65)
        self.terminal.click(40, 15, button=64)
        self.terminal.click(79, 23)
        self.assert_words("down", "down", "up")

    def test_page_keys_move_by_what_is_shown(self):
        for number in range(50):
            self.receiver.backup("settings_%03d.tar.gz" % number)
        self.open("restore")
        self.terminal.press("Down", "Down", "Enter")
        for key, position in (("PageDown", "21/50"), ("PageDown", "41/50"), ("PageDown", "50/50"), ("PageUp", "30/50"),
                              ("Home", "1/50"), ("Right", "11/50"), ("End", "50/50"), ("Left", "40/50")):
            self.terminal.press(key)
            self.terminal.wait_for(" %s ─┘" % position)
        self.assert_words("down", "down", "ok", "row:20", "row:40", "row:49", "row:29", "row:0", "right", "row:49", "left")


if __name__ == "__main__":
    unittest.main()
