"""The manual page names every command and option, and formats without a warning."""

import os
import re
import subprocess
import unittest

PAGE = os.path.join(os.path.dirname(__file__), "..", "..", "packaging", "stowline.1")
STOWLINE = os.environ["STOWLINE_COMMAND"]


def help_of(*words):
    return subprocess.run([STOWLINE, *words, "--help"], check=True, stdout=subprocess.PIPE).stdout.decode()


class ManualTest(unittest.TestCase):
    def setUp(self):
        done = subprocess.run(["groff", "-man", "-ww", "-Tutf8", "-P-c", PAGE], check=True, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE)
        self.warnings = done.stderr.decode()
        # What is printed over itself stands for bold and underlined text (grotty(1)).
        self.text = re.sub(".\b", "", done.stdout.decode()).replace("\u2010", "-").replace("\u2212", "-")

    def test_it_formats_without_a_warning(self):
        self.assertEqual(self.warnings, "")

    def test_it_names_every_command_with_its_options(self):
        commands = re.findall(r"^  ([a-z]+) ", help_of().split("Subcommands:")[1], re.MULTILINE)
        self.assertGreater(len(commands), 7)
        sections = re.split(r"^   stowline ", self.text, flags=re.MULTILINE)[1:]
        described = {section.split(None, 1)[0]: section for section in sections}
        self.assertEqual(sorted(described), sorted(commands))
        for command in commands:
            for option in re.findall(r"^  (--[a-z-]+)", help_of(command), re.MULTILINE):
                with self.subTest(command + " " + option):
                    own = described[command] if option not in ("--json", "--quiet", "--no-enclosure") else self.text
                    self.assertIn(option, own)


if __name__ == "__main__":
    unittest.main()
