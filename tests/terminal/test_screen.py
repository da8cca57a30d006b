"""What is shown adapts to the terminal, and moves as things happen."""

import os
import re
import unittest

from terminal import BACKUPS, Directory, desk, wait_until

ESCAPES = re.compile(r"\x1b\[([0-9;]*)m")
ROOM = "This terminal has %dx%d. Please make it 64x20 or larger. Ctrl-C ends."


class ScreenTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.directory = Directory(self)
        self.receiver = self.directory.receiver()

    def open(self, menu="backup", *options, **terminal):
        self.terminal = self.directory.terminal(**terminal)
        self.terminal.shell(desk(self.receiver, menu, *options))
        self.terminal.wait_for("QOR Stowline (")

    def open_list(self, menu_row="channel", **terminal):
        self.open("restore", **terminal)
        self.terminal.click_on(menu_row)
        self.terminal.wait_for("> ")
        self.terminal.press("Enter")
        self.terminal.wait_for("QOR Stowline ─" if "LC_ALL" not in terminal else "QOR Stowline -")
        self.terminal.wait_until_gone("Backup/restore device")  # a picture may come in several writes

    def colours(self):
        """Returns the numbers of the colours that are shown, as SGR has them, without those of no colour."""
        codes = {int(code) for codes in ESCAPES.findall(self.terminal.styled()) for code in codes.split(";") if code}
        return {code for code in codes if code >= 30} - {39, 49}

    def test_picture_follows_the_terminals_size(self):
        self.open()
        for columns, rows in ((132, 43), (80, 24), (64, 20), (200, 60), (81, 25)):
            self.terminal.resize(columns, rows)
            wait_until(lambda size=(columns, rows): len(self.terminal.lines()[0]) == size[0]
                       and "[red] Exit" in self.terminal.lines()[size[1] - 2], "the new size", self.terminal.text)
            lines = self.terminal.lines()
            self.assertEqual(lines[0], "┌─ QOR Stowline (Backup) " + "─" * (columns - 26) + "┐")
            self.assertEqual(lines[rows - 3], "└" + "─" * (columns - 8) + " 1/4 ─┘")
            self.assertEqual(lines[rows - 1], " Enter OK   Esc Exit   l Log   ? Help")

    def test_terminal_that_is_too_small_asks_for_room_and_goes_on_when_it_gets_it(self):
        self.open()
        picture = self.terminal.text()
        for columns, rows, shown in ((63, 24, 60), (80, 19, 60), (20, 5, 60), (8, 3, 14), (1, 1, 0)):
            self.terminal.resize(columns, rows)
            asked = (ROOM % (columns, rows)).replace(" ", "")[:shown]
            wait_until(lambda text=asked: re.sub(r"\s", "", self.terminal.text()).startswith(text), "the request",
                       self.terminal.text)
            self.terminal.press("Down", "q", "r")
        self.terminal.resize(80, 24)
        wait_until(lambda: self.terminal.text() == picture, "the picture of before", self.terminal.text)

    def test_themes_differ_in_colours_alone(self):
        shown = {}
        for theme in ("plain", "dark", "light"):
            self.open("backup", "--theme", theme)
            shown[theme] = (self.terminal.text(), self.colours())
            self.terminal.close()
        self.assertEqual(len({text for text, _ in shown.values()}), 1)
        self.assertEqual(shown["plain"][1], set())
        self.assertIn(40, shown["dark"][1])
        self.assertIn(47, shown["light"][1])

    def test_no_color_is_honoured_unless_a_theme_is_asked_for(self):
        for variables, options, coloured in (({}, [], True), ({"NO_COLOR": "1"}, [], False), ({"NO_COLOR": ""}, [], True),
                                             ({"NO_COLOR": "1"}, ["--theme", "light"], True)):
            with self.subTest(str((variables, options))):
                self.open("backup", *options, **variables)
                self.assertEqual(bool(self.colours()), coloured)
                self.terminal.close()

    def test_terminal_without_colours_shows_the_cursor_and_the_keys(self):
        for options in ([], ["--theme", "dark"]):
            with self.subTest(str(options)):
                self.open("backup", *options, term="vt100")
                self.assertEqual(self.colours(), set())
                self.assertIn("> ▣ Backup/restore device", self.terminal.text())
                self.assertIn("[red] Exit", self.terminal.text())
                cursor = self.terminal.styled().split("\n")[1]
                self.assertIn("\x1b[7m", cursor)
                self.terminal.close()

    def test_locale_without_utf_8_gets_plain_characters(self):
        self.receiver.backup("settings_überall_solo2.tar.gz")
        self.receiver.backup(b"settings_\xff_solo2.tar.gz")
        for locale in ("C", "POSIX"):
            with self.subTest(locale):
                self.open_list(LC_ALL=locale)
                text = self.terminal.text()
                self.assertEqual([character for character in text if ord(character) > 126], [])
                self.assertIn("| > settings_\\xff_solo2.tar.gz ", text)
                self.assertIn("|   settings_\\xc3\\xbcberall_solo2.tar.gz ", text)
                self.assertEqual(self.terminal.lines()[0], "+- QOR Stowline " + "-" * 63 + "+")
                self.terminal.close()

    def test_names_that_are_no_text_are_escaped_and_work(self):
        names = {b"settings_\xff\xfe.tar.gz": "settings_\\xff\\xfe.tar.gz", b"settings_a\nb.tar.gz":
                 "settings_a\\x0ab.tar.gz", b"settings_\x1b[31m.tar.gz": "settings_\\x1b[31m.tar.gz",
                 b"settings_\xc2\x9b.tar.gz": "settings_\\xc2\\x9b.tar.gz",
                 "settings_日本.tar.gz".encode(): "settings_日本.tar.gz",
                 "settings_cafe\u0301.tar.gz".encode(): "settings_cafe\u0301.tar.gz"}
        for name in names:
            self.receiver.backup(name)
        self.open_list()
        rows = [line.strip("│ >") for line in self.terminal.lines()[1:7]]
        self.assertEqual(rows, [names[name] for name in sorted(names, reverse=True)])
        for line in self.terminal.lines()[1:7]:
            self.assertTrue(line.endswith("│"), line)
        for name in sorted(names, reverse=True):
            self.terminal.press("y")
            self.terminal.wait_for("> yes")
            self.terminal.press("Enter")
            wait_until(lambda path=os.path.join(os.fsencode(self.receiver.path(BACKUPS)), name):
                       not os.path.exists(path), "the file's end", self.terminal.text)
            self.terminal.wait_for("[yellow] Delete")

    def test_box_counts_down_and_closes_by_itself(self):
        self.open()
        self.terminal.press("Down", "Enter")
        self.terminal.wait_for("List of installed plugins was created succesfully", "closes in ")
        seconds = []

        def has_closed():
            shown = re.search(r"closes in (\d+) s", self.terminal.text())
            if shown and int(shown.group(1)) not in seconds:
                seconds.append(int(shown.group(1)))
                self.terminal.press("1")
            return "> ▣ Backup installed plugins" in self.terminal.text()

        wait_until(has_closed, "the end of the box", self.terminal.text)
        self.assertEqual(seconds, sorted(seconds, reverse=True))
        self.assertGreater(len(seconds), 2)
        self.assertLessEqual(max(seconds), 10)

    def test_resize_is_no_key(self):
        self.receiver.hold("bin/tar")
        self.open()
        self.terminal.press("?")
        self.terminal.wait_for("─ Keys ─")
        self.terminal.resize(100, 30)
        self.terminal.wait_for("─" * 70, "─ Keys ─")
        self.terminal.press("x")
        self.terminal.wait_until_gone("─ Keys ─")
        os.kill(self.receiver.gui(), 9)
        self.terminal.wait_for("has been started again")
        self.terminal.resize(90, 28)
        wait_until(lambda: len(self.terminal.lines()[0]) == 90, "the new size", self.terminal.text)
        self.terminal.wait_for("has been started again")
        self.terminal.press("Down", "Down", "Enter")
        self.terminal.wait_for("busy for")
        for columns in range(80, 130):
            self.terminal.resize(columns, 24)
        self.terminal.press("Enter", "Down")
        self.receiver.go()
        self.terminal.wait_for("> ▣ Backup configurations")

    def test_exported_size_does_not_stay(self):
        self.open(COLUMNS="80", LINES="24")
        self.terminal.resize(100, 30)
        wait_until(lambda: len(self.terminal.lines()[0]) == 100, "the new size", self.terminal.text)

    def test_commands_do_not_get_the_records(self):
        self.receiver.hold("bin/tar")
        record = os.path.join(self.directory.path, "record")
        self.open("backup", "--record", record, "--log", record + ".log", "--trace", record + ".trace")
        self.terminal.press("Down", "Down", "Enter")
        self.terminal.wait_for("busy for")
        commands = set(self.receiver.processes()) - {self.receiver.gui()}
        self.assertTrue(commands)
        for number in commands:
            links = [os.readlink("/proc/%d/fd/%s" % (number, fd)) for fd in os.listdir("/proc/%d/fd" % number)]
            self.assertEqual([link for link in links if link.startswith(record)], [])
        self.receiver.go()

    def test_consoles_output_is_shown_as_it_comes_and_can_be_scrolled(self):
        self.receiver.write("media/hdd/qor-stowline/restore_me.sh",
                            "#!/bin/sh\necho begin\nread line < /first\nseq 1 100\nread line < /second\n"
                            "printf 'a\\tb\\033[1m\\r\\nlast'\n", 0o755)
        for gate in ("first", "second"):
            os.mkfifo(self.receiver.path(gate))
        self.open_list("personal")
        self.terminal.press("Enter")
        self.terminal.wait_for("> yes")
        self.terminal.press("Enter")
        self.terminal.wait_for("│begin", "running")
        self.terminal.press("q", "Enter")
        self.receiver.go("first")
        self.terminal.wait_for("│100", "running")
        self.assertNotIn("│80 ", self.terminal.text())
        self.terminal.press("PageUp")
        self.terminal.wait_for("│80 ")
        self.terminal.press("Home")
        self.terminal.wait_for("│begin")
        self.receiver.go("second")
        self.terminal.wait_for("│begin", "finished")
        self.terminal.press("Down")
        self.terminal.wait_for("│1 ", "│20 ")
        self.assertNotIn("begin", self.terminal.text())
        self.terminal.press("End")
        self.terminal.wait_for("│a    b\\x1b[1m ", "│last ")
        self.terminal.press("Enter")
        self.terminal.wait_for("> ▣ Run personal script")

    def test_log_pane_shows_lines_and_commands_as_they_run(self):
        self.receiver.hold("bin/tar")
        self.receiver.backup("configuration_20240305_07-04_solo2.tar.gz")
        self.open("restore")
        self.terminal.press("l", "Down", "Down", "Down", "Enter")
        self.terminal.wait_for("configuration_20240305")
        self.terminal.press("Enter")
        self.terminal.wait_for("System will restart")
        self.terminal.press("g")
        unpacking = "$ /etc/init.d/current_cam.sh stop ; tar -xzf"
        lines = self.terminal.wait_for("busy for", unpacking)
        log = next(index for index, line in enumerate(lines) if "─ Log ─" in line)
        self.assertIn(unpacking, "".join(lines[log:]))
        self.terminal.resize(132, 60)
        self.terminal.wait_for("[Qor Stowline] do not restore old OE tree configuration files",
                               "$ cat /etc/fstab > /etc/fstab_backup", "busy for")
        self.terminal.press("l")
        self.terminal.wait_until_gone("─ Log ─")
        self.terminal.press("l")
        self.terminal.wait_for("─ Log ─")
        self.receiver.go()
        self.terminal.wait_for("*** the GUI was killed", "*** the GUI was started again",
                               "The GUI was killed and has been started again.", "> ▣ Backup/restore device")
        self.terminal.press("Down")
        self.terminal.wait_for("Enter OK   Esc Exit")

    def test_error_of_the_module_is_shown_until_the_next_key(self):
        self.open("restore")
        os.remove(self.receiver.path("proc/mounts"))
        self.terminal.press("Enter")
        self.terminal.wait_for(" Error: OSError: ", "proc/mounts", "> ▣ Backup/restore device")
        self.terminal.press("Down")
        self.terminal.wait_for("> ▣ Restore plugins", "Enter OK")


if __name__ == "__main__":
    unittest.main()
