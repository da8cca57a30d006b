"""What a module built for an old image asks of it and shows of itself.

usage: check_binary.py MODULE READELF ENTRY_POINT
"""

import os
import re
import subprocess
import sys
import unittest

LARGEST = 240 * 1024
NEWEST_GLIBC = (2, 4)
# The interpreter's own symbols, and weak ones that a linker leaves everywhere.
UNVERSIONED = re.compile(r"_?Py[A-Z_]|_Py|_ITM_|__gmon_start__$|__cxa_pure_virtual$")


def readelf(*options):
    return subprocess.check_output([READELF, "-W"] + list(options) + [MODULE]).decode()


def dynamic_symbols():
    """Returns (defined?, name) of every dynamic symbol but sections."""
    rows = [line.split() for line in readelf("--dyn-syms").splitlines()]
    return [(row[6] != "UND", row[7]) for row in rows
            if len(row) > 7 and row[0].rstrip(":").isdigit() and row[3] != "SECTION"]


class Binary(unittest.TestCase):
    def test_needs_the_c_library_alone(self):
        needed = re.findall(r"NEEDED.*\[(.*)\]", readelf("-d"))
        self.assertEqual(set(needed) - {"libc.so.6", "libm.so.6", "ld.so.1", "libgcc_s.so.1"}, set())

    def test_exports_its_entry_point_alone(self):
        self.assertEqual([name for defined, name in dynamic_symbols() if defined], [ENTRY_POINT])

    def test_needs_no_new_version_of_the_c_library(self):
        versions = set(re.findall(r"Name: GLIBC_([0-9.]+)", readelf("-V")))
        self.assertTrue(versions)
        self.assertEqual([version for version in versions
                          if tuple(map(int, version.split("."))) > NEWEST_GLIBC], [])

    def test_asks_for_no_other_symbols_than_the_interpreters(self):
        unversioned = [name for defined, name in dynamic_symbols() if not defined and "@" not in name]
        self.assertEqual([name for name in unversioned if not UNVERSIONED.match(name)], [])

    def test_is_stripped_and_small(self):
        self.assertNotIn(".symtab", readelf("-S"))
        self.assertLess(os.path.getsize(MODULE), LARGEST)


if __name__ == "__main__":
    MODULE, READELF, ENTRY_POINT = sys.argv[1:]
    del sys.argv[1:]
    unittest.main()
