"""Long lists take no memory to move in."""

import re
import unittest

from terminal import Directory, ancestor_of, desk


class MemoryTest(unittest.TestCase):
    def setUp(self):
        self.directory = Directory(self)
        self.receiver = self.directory.receiver()

    def test_ten_thousand_rows_scroll_in_constant_memory(self):
        for number in range(10000):
            self.receiver.backup("settings_%05d_solo2.tar.gz" % number, 0)
        self.terminal = self.directory.terminal()
        self.terminal.shell(desk(self.receiver, "restore"))
        self.terminal.wait_for("QOR Stowline (")
        self.terminal.click_on("channel")
        self.terminal.press("Enter")
        self.terminal.wait_for(" 1/10000 ─┘", "> settings_09999_solo2")
        self.terminal.press("End")
        self.terminal.wait_for(" 10000/10000 ─┘", "> settings_00000_solo2")
        gui = self.receiver.gui()
        # Between them are the first process of the enclosure and the one that waits for it.
        processes = [gui, ancestor_of(gui, 3)]

        def walk(keys):
            self.terminal.press(*keys, "Home")
            self.terminal.wait_for(" 1/10000 ─┘")
            self.terminal.press("End")
            self.terminal.wait_for(" 10000/10000 ─┘")
            return [memory_of(process) for process in processes]

        keys = ["Up"] * 10 + ["PageUp"] * 5 + ["Down"] * 5 + ["PageDown"] * 5
        for _ in range(3):
            before = walk(keys)
        for _ in range(12):
            after = walk(keys)
        for process, (first, last) in enumerate(zip(before, after)):
            self.assertLess(last - first, 2000, "process %d has grown from %d to %d KiB" % (process, first, last))


def memory_of(process):
    """Returns the resident memory of a process in KiB."""
    with open("/proc/%d/status" % process, encoding="ascii") as status:
        return int(re.search(r"VmRSS:\s+(\d+)", status.read()).group(1))


if __name__ == "__main__":
    unittest.main()
