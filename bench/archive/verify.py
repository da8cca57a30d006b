"""How fast an archive is read and verified, against gzip -t on the same file.

    verify.py VERIFY_ARCHIVE

The archive is like a backup of a receiver with many channels, skins and pictures, some tens of MB. Both programs read
it in turns, so that what else the machine does falls on both.
"""

import io
import os
import random
import resource
import statistics
import subprocess
import sys
import tarfile
import tempfile

ROUNDS = 15
MEGABYTES = 60
WORDS = [b"#SERVICE 1:0:19:%X:%X:1:C00000:0:0:0:\n" % (number * 37 % 65536, number % 1031) for number in range(4096)]


def contents(chance):
    """Yields contents of files: channel lists, settings, and pictures, which do not compress."""
    while True:
        yield b"".join(chance.choices(WORDS, k=chance.randrange(20, 2000)))
        yield b"".join(b"config.plugins.entry%d=%d\n" % (line, chance.randrange(10**6)) for line in range(400))
        yield chance.randbytes(chance.randrange(500, 60000))


def make_archive(path):
    """Writes the archive; returns how many bytes it unpacks to and how many members it has."""
    chance = random.Random(1)
    size = members = 0
    with tarfile.open(path, "w:gz", format=tarfile.GNU_FORMAT, compresslevel=6) as archive:
        for content in contents(chance):
            member = tarfile.TarInfo("etc/enigma2/folder%d/file%d" % (members % 40, members))
            member.size = len(content)
            archive.addfile(member, io.BytesIO(content))
            size += len(content)
            members += 1
            if size > MEGABYTES * 1000 * 1000:
                return size, members


def seconds(command):
    """Returns the processor time that the command takes."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def main(verify):
    with tempfile.TemporaryDirectory() as directory:
        path = os.path.join(directory, "archive.tar.gz")
        size, members = make_archive(path)
        commands = {"gzip -t": ["gzip", "-t", path], "verify": [verify, path]}
        times = {name: [] for name in commands}
        for _ in range(ROUNDS):
            for name, command in commands.items():
                times[name].append(seconds(command))
        packed = os.path.getsize(path)
    print("An archive of %d members, %.1f MB, unpacked %.1f MB; %d rounds" % (members, packed / 1e6, size / 1e6, ROUNDS))
    print("%-10s %10s %10s %10s" % ("", "median s", "least s", "MB/s"))
    for name, values in times.items():
        median = statistics.median(values)
        print("%-10s %10.3f %10.3f %10.0f" % (name, median, min(values), size / 1e6 / median))
    print("verify is %.2f times as fast as gzip -t" % (statistics.median(times["gzip -t"]) / statistics.median(times["verify"])))


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]))
