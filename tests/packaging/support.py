"""What the tests of the packaging have in common.

STOWLINE_MODULE names the built Stowline.so, STOWLINE_COMMAND the command stowline and STOWLINE_FLOWS the
exported flows, which say what the module asks of its host.
"""

import ast
import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

with open(os.environ["STOWLINE_FLOWS"], encoding="utf-8") as exported:
    FLOWS = {flow["name"]: flow["operations"] for flow in json.load(exported)}


def found(pattern, flows=None):
    """Returns what the pattern's groups match in the operations of these flows, or of all."""
    operations = [line for name in flows or FLOWS for line in FLOWS[name]]
    return [match.groups() for match in (re.match(pattern, line) for line in operations) if match]


def translated(flows=None):
    """Returns the texts that pass through the host's translation, in order."""
    return [ast.literal_eval(text) for text, in found(r'_\((".*")\)$', flows)]


def path(*names):
    return os.path.join(ROOT, *names)


def content(*names):
    with open(path(*names), encoding="utf-8") as file:
        return file.read()


def run(*words, **more):
    """Runs a command to its end; returns its status, standard output and standard error."""
    done = subprocess.run(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          universal_newlines=True, **more)
    return done.returncode, done.stdout, done.stderr


class PackagingTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.directory = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.directory)

    def at(self, *names):
        return os.path.join(self.directory, *names)

    def copy(self, *names):
        """Copies files and folders of the sources; returns where they lie now."""
        for name in names:
            to = self.at("copy", name)
            os.makedirs(os.path.dirname(to), exist_ok=True)
            (shutil.copytree if os.path.isdir(path(name)) else shutil.copy)(path(name), to)
        return self.at("copy")
