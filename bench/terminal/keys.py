"""How long a key press takes until the terminal has drawn it, in a short and in a long restore list.

    keys.py STOWLINE

Both lists are opened on terminals of their own, and keys are pressed in turns, so that what else the machine does
falls on both. A press is over when the last byte of what it changes has come.
"""

import fcntl
import os
import pty
import select
import shutil
import statistics
import struct
import subprocess
import sys
import tempfile
import termios
import time

ROWS = (10, 10000)
PRESSES = 200
QUIET = 0.05  # seconds without output after which a picture is complete
DOWN, ENTER, EXIT = b"\033OB", b"\r", b"q"


class Desk:
    """The restore list of a receiver with so many backups, on a terminal of 80x24."""

    def __init__(self, stowline, directory, rows):
        tree = os.path.join(directory, str(rows))
        subprocess.run([stowline, "receiver", "new", tree], check=True)
        backups = os.path.join(tree, "media/hdd/qor-stowline")
        os.makedirs(backups, exist_ok=True)
        for number in range(rows):
            open(os.path.join(backups, "settings_%05d_solo2.tar.gz" % number), "w", encoding="ascii").close()
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.environ.update(TERM="xterm-256color", LC_ALL="C.UTF-8")
            os.execv(stowline, [stowline, "desk", "--receiver", tree, "--menu", "restore"])
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 80, 0, 0))
        time.sleep(1)
        for key in (DOWN, DOWN, ENTER):
            self.press(key)

    def press(self, key):
        """Returns how many milliseconds pass until what the key changes is drawn."""
        start = last = time.monotonic()
        os.write(self.terminal, key)
        while select.select([self.terminal], [], [], 2 if last == start else QUIET)[0]:
            os.read(self.terminal, 65536)
            last = time.monotonic()
        if last == start:
            raise SystemExit("a key was not drawn")
        return (last - start) * 1000

    def close(self):
        for _ in range(2):
            os.write(self.terminal, EXIT)
            time.sleep(0.2)
        os.waitpid(self.process, 0)


def main(stowline):
    directory = tempfile.mkdtemp()
    try:
        desks = [Desk(stowline, directory, rows) for rows in ROWS]
        # Three keys each at first, which also scroll; up and down from there on, so that a short list does as well.
        times = [[desk.press(key) for desk in desks] for key in [DOWN] * 3 + [b"\033OA", DOWN] * (PRESSES // 2)][3:]
        for desk in desks:
            desk.close()
    finally:
        shutil.rmtree(directory)
    print("A key press until it is drawn, %d presses each, in ms" % PRESSES)
    print("%-12s %8s %8s %8s" % ("rows", "median", "least", "most"))
    for rows, values in zip(ROWS, zip(*times)):
        print("%-12d %8.2f %8.2f %8.2f" % (rows, statistics.median(values), min(values), max(values)))
    short, long = (statistics.median(values) for values in zip(*times))
    print("ratio %.2f" % (long / short))


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]))
