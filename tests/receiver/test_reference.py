"""The module behaves as the same module in the interpreter's own language (reference/Stowline.py) does, in random
scenarios: calls, keys, answers, events, failures, attributes of odd types, deletions, sub-classes, closing.

STOWLINE_SCENARIOS tells how many are played, STOWLINE_SEED which (the first one's number). STOWLINE_INTERPRETER is the
command that starts the interpreter where its file alone does not, as in an emulator.
"""

import json
import os
import subprocess
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
REFERENCE = os.path.join(HERE, "reference")
SEED = os.environ.get("STOWLINE_SEED", "1")
INTERPRETER = os.environ.get("STOWLINE_INTERPRETER", sys.executable).split()
COUNT = os.environ.get("STOWLINE_SCENARIOS", "500")


def played(directory):
    """Returns what each step of each scenario did with the module in `directory`."""
    environment = dict(os.environ, STOWLINE_MODULE_DIR=directory, PYTHONDONTWRITEBYTECODE="1")
    output = subprocess.check_output(INTERPRETER + [os.path.join(HERE, "scenarios.py"), SEED, COUNT], env=environment)
    return [json.loads(line) for line in output.decode("ascii").splitlines()]


class Reference(unittest.TestCase):
    def test_random_scenarios_are_played_alike(self):
        module, reference = played(os.environ["STOWLINE_MODULE_DIR"]), played(REFERENCE)
        self.assertEqual(len(module), int(COUNT))
        for (number, steps), (_, expected) in zip(module, reference):
            for step, (done, wanted) in enumerate(zip(steps, expected)):
                self.assertEqual(done, wanted, "scenario %d, step %d" % (number, step))
            self.assertEqual(len(steps), len(expected))


if __name__ == "__main__":
    unittest.main()
