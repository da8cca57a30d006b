"""The screens and dialogs as the television shows them, for the documentation and its test.

    gallery.py             writes the pictures in docs/gallery anew

STOWLINE_COMMAND names the command.
"""

import os
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "tests", "terminal"))

from pictures import Photographer  # noqa: E402: found by the line above

GALLERY = os.path.join(ROOT, "docs", "gallery")

# The pictures: what each is called, the menu's flavour, and the words that lead to it.
WALKS = (
    ("backup-menu", "backup", "down"),
    ("restore-menu", "restore", "down down"),
    ("medium", "backup", "ok down"),
    ("message", "backup", "select:channel ok wait"),
    ("list", "restore", "select:channel ok down"),
    ("long-list", "restore", "select:channel ok row:17"),
    ("question", "restore", "select:channel ok yellow down"),
    ("confirmation", "restore", "select:configurations ok ok"),
    ("packages", "restore", "select:plugins ok ok wait"),
    ("console", "restore", "select:script ok ok ok wait"),
)


def picture(menu, words):
    """Returns the picture that the words lead to."""
    with tempfile.TemporaryDirectory() as directory:
        receiver = Photographer.prepared(directory)
        pictures = os.path.join(directory, "pictures")
        receiver.play(menu, words, "--pictures", pictures)
        return read(os.path.join(pictures, max(os.listdir(pictures))))


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def main():
    for name, menu, words in WALKS:
        with open(os.path.join(GALLERY, name + ".svg"), "w", encoding="utf-8") as file:
            file.write(picture(menu, words))


if __name__ == "__main__":
    main()
