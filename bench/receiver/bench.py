"""Measures the module in the interpreter against the same steps in plain Python, and its import against
that of an extension that holds nothing. Prints ratios; below 1 the module is the faster one.

usage: bench.py MODULE_DIR [import NAME]
"""

from __future__ import print_function

import os
import shutil
import subprocess
import sys
import tempfile
import timeit

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.path.insert(0, sys.argv[1])

import quiet  # noqa: E402

NAMES = 10000
FILES = 5000
ROUNDS = 75
IMPORTS = 41


def median(values):
    return sorted(values)[len(values) // 2]


def import_once(name):
    """Prints how long the import of `name` takes in this process, in microseconds."""
    quiet.install()
    import time  # noqa: F401  what the module takes from it is there, as in a GUI
    start = timeit.default_timer()
    __import__(name)
    print(int((timeit.default_timer() - start) * 1e6))


def imported(name):
    command = [sys.executable, os.path.abspath(__file__), sys.argv[1], "import", name]
    return int(subprocess.check_output(command))


def compare_imports():
    times = {"Stowline": [], "empty": []}
    for _ in range(IMPORTS):
        for name in times:
            times[name].append(imported(name))
    module, empty = median(times["Stowline"]), median(times["empty"])
    print("%-28s %8d us %8d us %6.2f" % ("import (empty extension)", module, empty, module / float(empty)))


def scheduled_names():
    for number in range(NAMES):
        kind = ("settings", "configuration_ver_c", "pluginlist")[number % 3]
        yield "%s_2024%04d_07-04_%s%s" % (kind, number, "solo2" if number % 5 else "duo2",
                                          ".auto.lst" if number % 3 == 2 else ".auto.tar.gz")


class Medium(object):
    """A directory listing and a package list without a medium's own time."""

    def __init__(self, directory):
        self.names = list(scheduled_names())
        self.skin = ["colors_atile_%d" % number for number in range(FILES)]
        self.package = os.path.join(directory, "package.list")
        with open(self.package, "w") as lines:
            for number in range(0, 2 * FILES, 2):
                lines.write("/skin/colors_atile_%d\n" % number)

    def listdir(self, path):
        return list(self.skin if path == "/skin" else self.names)

    @staticmethod
    def exists(path):
        return path == "/skin" or path.endswith("qor-stowline")


def compare(name, step, module, plain):
    """Takes both in turn, so that whatever else the machine does meets both; the first is not measured."""
    times = [[timeit.timeit(lambda: step(each), number=1) for each in (module, plain)]
             for _ in range(ROUNDS + 1)][1:]
    ours, theirs = (median(column) for column in zip(*times))
    ratio = median([our / their for our, their in times])
    print("%-28s %8d us %8d us %6.2f" % (name, ours * 1e6, theirs * 1e6, ratio))


def open_and_close(module):
    for _ in range(200):
        menu = module.Stowline(None, "/plugin", "backup")
        for hook in menu.onLayoutFinish:
            hook()
        menu.keyCancel()


def fill_list(module):
    module.StowlineRestore(None, "settingrestore", "/plugin")


def keep_house(module):
    module.BackupActions("auto").houseKeeping()


def compare_steps():
    quiet.install()
    directory = tempfile.mkdtemp()
    medium = Medium(directory)
    real = os.listdir, os.path.exists
    os.listdir, os.path.exists = medium.listdir, medium.exists
    import Stowline
    import plain
    print("%-28s %11s %11s %6s" % ("", "module", "plain", "ratio"))
    compare("menu opened and closed, 200x", open_and_close, Stowline, plain)
    compare("list of %d names" % NAMES, fill_list, Stowline, plain)
    compare("housekeeping of %d names" % NAMES, keep_house, Stowline, plain)
    compare("user files %d by %d" % (FILES, FILES),
            lambda module: module.BackupActions().saveUserFiles(
                medium.package, ["/skin/colors_atile_"], ["/skin"]), Stowline, plain)
    os.listdir, os.path.exists = real
    shutil.rmtree(directory)


if __name__ == "__main__":
    if len(sys.argv) > 2:
        import_once(sys.argv[3])
    else:
        compare_steps()
        compare_imports()
