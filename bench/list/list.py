"""How long stowline list takes on a medium with many backups, against one with a tenth of them.

    list.py STOWLINE

Both media are listed in turns, so that what else the machine does falls on both.
"""

import os
import statistics
import subprocess
import sys
import tempfile
import time

ROUNDS = 25
FEW, MANY = 1000, 10000
KINDS = ("settings_%s_solo2.auto.tar.gz", "configuration_ver_c_%s_solo2.tar.gz", "pluginlist_%s_duo2.auto.lst")


def make_medium(path, count):
    """Makes a medium with so many backups of three kinds and two models, each large enough to be restored."""
    directory = os.path.join(path, "qor-stowline")
    os.makedirs(directory)
    for number in range(count):
        stamp = "20%02d%02d%02d_%02d-%02d" % (number // 10080 + 10, number // 840 % 12 + 1, number // 30 % 28 + 1,
                                              number % 24, number % 60)
        with open(os.path.join(directory, KINDS[number % len(KINDS)] % stamp), "wb") as file:
            file.truncate(20000)
    made = len(os.listdir(directory))
    if made != count:
        raise RuntimeError("only %d of %d names differ" % (made, count))


def seconds(command):
    begin = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    return time.perf_counter() - begin


def main(stowline):
    with tempfile.TemporaryDirectory() as directory:
        times = {FEW: [], MANY: []}
        for count in times:
            make_medium(os.path.join(directory, str(count)), count)
        for _ in range(ROUNDS):
            for count, values in times.items():
                values.append(seconds([stowline, "list", os.path.join(directory, str(count)), "--model", "solo2"]))
    print("stowline list, %d rounds" % ROUNDS)
    print("%10s %10s %10s" % ("backups", "median s", "least s"))
    for count, values in times.items():
        print("%10d %10.3f %10.3f" % (count, statistics.median(values), min(values)))
    print("ratio %.2f" % (statistics.median(times[MANY]) / statistics.median(times[FEW])))


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]))
