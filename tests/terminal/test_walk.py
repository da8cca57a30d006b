"""A walk through all screens on the terminal, played again as a script on an equal receiver, gives the same frames."""

import json
import re
import unittest

from pictures import Photographer
from terminal import Directory


class WalkTest(unittest.TestCase):
    maxDiff = None

    def test_the_walk_played_again_gives_the_same_frames(self):
        directory = Directory(self)
        photographer = Photographer(directory.path, 80, 24)
        self.addCleanup(photographer.terminal.close)
        photographer.record = directory.path + "/record"
        photographer.walk()
        with open(photographer.record, encoding="utf-8") as file:
            recorded = [json.loads(same_at_any_time(line)) for line in file]
        self.assertEqual({line["screen"] for line in recorded if "screen" in line},
                         {"", "Stowline", "StowlineRestore", "StowlineHelpScreen", "MessageBox", "ChoiceBox", "Console",
                          "Ipkg"})

        again = Directory(self)
        receiver = Photographer.prepared(again.path)
        played = []
        for menu, walk in walks(recorded):
            words = " ".join("'%s'" % line["key"] for line in walk[1:] if "key" in line)
            played += [json.loads(same_at_any_time(line)) for line in receiver.play(menu, words).splitlines()]
        self.assertEqual(played, recorded)


def same_at_any_time(line):
    """Returns the line with the one time for all that the walk itself has made."""
    return re.sub(r"_(?!2024)\d{8}_\d\d-\d\d", "_NOW", line)


def walks(lines):
    """Cuts a record where a menu is opened; returns each walk with its flavour of the menu."""
    starts = [index for index, line in enumerate(lines) if line.get("key") == ""] + [len(lines)]
    for start, end in zip(starts, starts[1:]):
        yield ("restore" if "(Restore)" in lines[start]["title"] else "backup"), lines[start:end]


if __name__ == "__main__":
    unittest.main()
