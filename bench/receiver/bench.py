"""Measures the module against the same one in Python, compiled to bytecode. Prints ratios; below 1 the module is the
faster one.

usage: bench.py MODULE_DIR [import DIRECTORY]
"""

from __future__ import print_function

import io
import os
import py_compile
import shutil
import subprocess
import sys
import tempfile
import timeit

HERE = os.path.dirname(os.path.abspath(__file__))
REFERENCE = os.path.join(HERE, "..", "..", "tests", "receiver", "reference", "Stowline.py")
sys.path.insert(0, HERE)

import quiet  # noqa: E402

NAMES = 10000
FILES = 5000
INSTALLED = 3000
ROUNDS = 75
IMPORTS = 41


def median(values):
    return sorted(values)[len(values) // 2]


def load(directory):
    """Imports the Stowline that lies in `directory`, whichever others have been imported."""
    sys.modules.pop("Stowline", None)
    sys.path.insert(0, directory)
    try:
        return __import__("Stowline")
    finally:
        del sys.path[0]


def import_once(directory):
    """Prints how long the import takes in this process, in microseconds."""
    quiet.install()
    import time  # noqa: F401  what the module takes from it is there, as in a GUI
    start = timeit.default_timer()
    load(directory)
    print(int((timeit.default_timer() - start) * 1e6))


def imported(directory):
    command = [sys.executable, os.path.abspath(__file__), sys.argv[1], "import", directory]
    return int(subprocess.check_output(command))


def report(name, module, python, ratio):
    print("%-28s %8d us %8d us %6.2f" % (name, module, python, ratio))


def compare_imports(directories):
    times = [[imported(directory) for directory in directories] for _ in range(IMPORTS)]
    module, python = (median(column) for column in zip(*times))
    report("import", module, python, module / float(python))


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

    @staticmethod
    def popen(command):
        """Returns the lines of a plugin list, or of the packages that are installed."""
        return quiet.Lines("enigma2-plugin-extensions-%d\n" % number
                           for number in range(INSTALLED if command.startswith("opkg") else FILES))


def compare(name, step, modules):
    """Takes both in turn, so that whatever else the machine does meets both; the first is not measured."""
    output, sys.stdout = sys.stdout, quiet.Log()
    times = [[timeit.timeit(lambda: step(module), number=1) for module in modules] for _ in range(ROUNDS + 1)][1:]
    sys.stdout = output
    module, python = (median(column) for column in zip(*times))
    report(name, module * 1e6, python * 1e6, median([ours / theirs for ours, theirs in times]))


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


def install_plugins(module):
    restore = module.StowlineRestore(quiet.Session(), "plugininstall", "/plugin")
    restore.val = "/list"
    restore.installPlugins()


def compare_steps(directories, medium):
    quiet.install()
    real = os.listdir, os.path.exists, os.popen
    os.listdir, os.path.exists, os.popen = medium.listdir, medium.exists, medium.popen
    modules = [load(directory) for directory in directories]
    compare("menu opened and closed, 200x", open_and_close, modules)
    compare("list of %d names" % NAMES, fill_list, modules)
    compare("housekeeping of %d names" % NAMES, keep_house, modules)
    compare("user files %d by %d" % (FILES, FILES),
            lambda module: module.BackupActions().saveUserFiles(
                medium.package, ["/skin/colors_atile_"], ["/skin"]), modules)
    compare("plugin list %d by %d" % (FILES, INSTALLED), install_plugins, modules)
    os.listdir, os.path.exists, os.popen = real


def main():
    directory = tempfile.mkdtemp()
    try:
        py_compile.compile(REFERENCE, os.path.join(directory, "Stowline.pyc"), doraise=True)
        directories = [sys.argv[1], directory]
        print("%-28s %11s %11s %6s" % ("", "module", "Python", "ratio"))
        compare_steps(directories, Medium(directory))
        compare_imports(directories)
    finally:
        shutil.rmtree(directory)


if __name__ == "__main__":
    if len(sys.argv) > 2:
        import_once(sys.argv[3])
    else:
        main()
