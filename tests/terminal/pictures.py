"""Pictures of every screen and dialog as the terminal shows them, for the documentation and its test.

    pictures.py            writes the pictures in the documentation anew

STOWLINE_COMMAND names the command.
"""

import os
import re
import tempfile

from terminal import PROMPT, Receiver, Terminal, desk, wait_until

CONFIGURATION = "configuration_ver_c_20240305_07-04_solo2.tar.gz"
SETTINGS = ["settings_202403%02d_21-30_solo2%s.tar.gz" % (day, ".auto" * (day % 2)) for day in range(1, 29)]
HELLO = "#!/bin/sh\necho \"Hello from $(cat /etc/hostname), this is $0\"\necho \"one more line\"\n"


class Photographer:
    """Walks through the menus and takes a picture of what there is to see."""

    def __init__(self, directory, columns, rows):
        self.pictures = []
        self.record = "/dev/null"
        self.receiver = self.prepared(directory)
        self.terminal = Terminal(directory, columns, rows)

    @staticmethod
    def prepared(directory):
        """Returns a receiver with backups of every kind."""
        receiver = Receiver(directory)
        for name in (CONFIGURATION, *SETTINGS):
            receiver.archive(name)
        receiver.write("media/hdd/qor-stowline/restore_hello.sh", HELLO, 0o755)
        receiver.write("media/hdd/qor-stowline/pluginlist_20240301_21-30_solo2.lst",
                       "enigma2-plugin-extensions-epgnotes\nenigma2-plugin-extensions-nowhere\n"
                       "enigma2-plugin-extensions-teletextplus\nenigma2-plugin-extensions-webbrowser\n")
        return receiver

    def open(self, menu):
        self.terminal.shell("clear; " + desk(self.receiver, menu, "--record", self.record))
        self.terminal.wait_for("QOR Stowline (")

    def cursor(self):
        """Returns the line with a list's cursor."""
        return wait_until(lambda: [line for line in self.terminal.lines() if line.startswith("│ > ")], "a cursor",
                          self.terminal.text)[0]

    def choose(self, text):
        """Moves a menu's cursor to the row with the text and presses OK."""
        self.terminal.press("Home")
        wait_until(lambda: "device" in self.cursor(), "the first row", self.terminal.text)
        while text not in self.cursor():
            before = self.cursor()
            self.terminal.press("Down")
            wait_until(lambda passed=before: self.cursor() != passed, "the next row", self.terminal.text)
        self.terminal.press("Enter")

    def take(self, title, *texts):
        """Takes a picture, once all the texts are shown."""
        lines = self.terminal.wait_for_picture(*texts)
        self.pictures.append((title, [same_at_any_time(line) for line in lines]))

    def leave(self):
        self.terminal.press("q")
        self.terminal.wait_for(PROMPT.strip())

    def walk(self):
        self.backup_menu()
        self.restore_menu()
        self.gui_restart()
        return self.pictures

    def backup_menu(self):
        self.open("backup")
        self.take("The backup menu", "save common")
        self.terminal.press("Enter")
        self.take("The choice of the medium", "/media/usb")
        self.terminal.press("Escape")
        self.terminal.wait_for("> ▣ Backup/restore device")
        self.receiver.hold("bin/tar")
        self.choose("channel")
        self.take("A backup that is running", "busy for ", ": tar czf")
        self.receiver.go()
        self.take("Its end", "succesfully", "closes in ")
        self.terminal.press("Enter")
        self.terminal.wait_for("> ▣ Backup channel")
        self.terminal.press("l")
        self.take("The log pane", "─ Log ─")
        self.terminal.press("l", "?")
        self.take("The help", "─ Keys ─")
        self.terminal.press("?")
        self.leave()
        self.receiver.release("bin/tar")

    def restore_menu(self):
        self.open("restore")
        self.take("The restore menu", "Run personal script")
        self.choose("channel")
        self.take("The restore list", SETTINGS[-1])
        self.terminal.press("y")
        self.take("The question before a file is deleted", "> yes")
        self.terminal.press("Escape")
        self.terminal.wait_for(SETTINGS[-1], "[yellow] Delete")
        self.terminal.press("q")
        self.terminal.wait_for("Run personal script")
        self.scripts()
        self.plugins()
        self.choose("configurations")
        self.terminal.wait_for("1/1")
        self.terminal.press("Enter")
        self.take("The confirmation of a configuration restore", "System will restart")
        self.terminal.press("q", "q")
        self.terminal.wait_for("Run personal script")

    def scripts(self):
        self.choose("personal")
        self.terminal.wait_for("[green] Start")
        self.terminal.press("Enter")
        self.terminal.wait_for("> yes")
        self.terminal.press("Enter")
        self.take("A personal script in the console", "one more line", "finished")
        self.terminal.press("Enter")
        self.terminal.wait_for("Run personal script")

    def plugins(self):
        self.receiver.hold("usr/bin/opkg", "install*teletextplus")
        self.choose("plugins")
        self.terminal.wait_for("pluginlist_")
        self.terminal.press("Enter")
        self.take("Packages that are being installed", "running  enigma2-plugin-extensions-teletextplus")
        self.receiver.go()
        self.terminal.wait_for("finished")
        self.receiver.release("usr/bin/opkg")
        self.terminal.press("Enter")
        self.terminal.wait_for("Run personal script")

    def gui_restart(self):
        self.choose("configurations")
        self.terminal.wait_for("1/1")
        self.terminal.press("Enter")
        self.terminal.wait_for("System will restart")
        self.terminal.press("g")
        self.take("After a configuration restore, which ends by killing the GUI", "has been started again")
        self.leave()


def same_at_any_time(line):
    """Returns the line with a time of its own for what was made while the pictures were taken."""
    line = re.sub(r"_(?!2024)\d{8}_\d\d-\d\d", "_20240601_20-15", line)
    line = re.sub(r"^ [-|/\\] busy for \d s", " | busy for 1 s", line)
    return re.sub(r"─ closes in \d s", " closes in 10 s", line)


def take_all(columns, rows):
    """Returns the pictures as (title, lines)."""
    with tempfile.TemporaryDirectory() as directory:
        photographer = Photographer(directory, columns, rows)
        try:
            return photographer.walk()
        finally:
            photographer.terminal.close()


def block(lines):
    """Returns the lines as a block of Markdown."""
    return "```text\n" + "\n".join(lines) + "\n```\n"


def page():
    """Returns the page of Markdown with all the pictures."""
    head = ("# The screens\n\nEvery screen and dialog, as `stowline desk` shows it on a terminal of %dx%d. "
            "`scripts/pictures` has made\nthis page, by walking through the menus.\n" % LARGE)
    return head + "".join("\n## %s\n\n%s" % (title, block(lines)) for title, lines in take_all(*LARGE))


def with_pictures(text):
    """Returns a page of Markdown with its pictures anew: each follows a comment that holds its title."""
    pictures = dict(take_all(*SMALL))
    return re.sub(r"(<!-- picture: ([^\n]*) -->\n\n)```text\n.*?\n```\n",
                  lambda match: match.group(1) + block(pictures[match.group(2)]), text, flags=re.DOTALL)


ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# The page of all the pictures, and the size of the terminal that they are taken on.
SCREENS = "docs/screens.md"
LARGE = (80, 24)

# The page that holds some pictures, and their size.
README = "README.md"
SMALL = (72, 20)


def read(name):
    with open(os.path.join(ROOT, name), encoding="utf-8") as file:
        return file.read()


def write(name, content):
    with open(os.path.join(ROOT, name), "w", encoding="utf-8") as file:
        file.write(content)


if __name__ == "__main__":
    write(SCREENS, page())
    write(README, with_pictures(read(README)))
