"""The bar that is drawn while a long archive is read."""

import gzip
import os
import pty
import re
import subprocess
import tarfile
import termios
import unittest

from terminal import STOWLINE, Directory

NAME = "configuration_ver_c_20260314_10-30_solo2.tar.gz"
COLUMNS = 120

CLEAR = r"\r\x1b\[K"
AMOUNT = r"[0-9.]+ (?:B|[KMG]iB)"
BAR = r"\d+%%  %s of %s  %s/s  \[#*-*\]  %s" % (AMOUNT, AMOUNT, AMOUNT, re.escape(NAME))
BARS = "(?:%s%s)+%s" % (CLEAR, BAR, CLEAR)


def write_long_archive(path):
    """Writes an archive of one file of 900 MB, which takes a while to unpack however fast the machine is."""
    part = bytes(100 * 1024 * 1024)
    member = tarfile.TarInfo("etc/hostname")
    member.size = 9 * len(part)
    packed = gzip.compress(part, 1)
    with open(path, "wb") as file:
        file.write(gzip.compress(member.tobuf(), 1) + 9 * packed + gzip.compress(bytes(1024), 1))


def shown_on_terminal(*words):
    """Runs the command with a terminal as its standard error alone. Returns what it has shown there."""
    reader, writer = pty.openpty()
    termios.tcsetwinsize(writer, (24, COLUMNS))
    with subprocess.Popen([STOWLINE, *words], stdout=subprocess.DEVNULL, stderr=writer) as command:
        os.close(writer)
        shown = b""
        try:
            while part := os.read(reader, 4096):
                shown += part
        except OSError:  # how a terminal ends that nobody has open
            pass
    os.close(reader)
    return command.returncode, shown.decode()


class ProgressTest(unittest.TestCase):
    def setUp(self):
        self.archive = os.path.join(Directory(self).path, NAME)
        write_long_archive(self.archive)

    def test_a_bar_with_size_and_rate_is_drawn_and_goes(self):
        for words in (("verify", self.archive), ("show", self.archive), ("show", self.archive, "--json")):
            with self.subTest(words):
                status, shown = shown_on_terminal(*words)
                self.assertEqual(status, 0)
                self.assertRegex(shown, "^%s$" % BARS)

    def test_quiet_draws_none(self):
        for command in ("verify", "show"):
            with self.subTest(command):
                self.assertEqual(shown_on_terminal(command, self.archive, "--quiet"), (0, ""))


if __name__ == "__main__":
    unittest.main()
