"""The television shows every screen and dialog as the documentation has it."""

import os
import unittest
from xml.etree import ElementTree

from gallery import GALLERY, WALKS, picture, read

WHOLE = ("backup-menu", "long-list", "confirmation")


def structure(svg):
    """Returns what a picture shows, in its order: the screen and its widgets, each with its place, rows with the
    cursor, and texts."""
    parts = []
    for element in ElementTree.fromstring(svg).iter():
        for name in ("data-screen", "data-widget", "data-picture", "aria-selected"):
            if name in element.attrib:
                parts.append((name, element.get(name)))
        if "data-screen" in element.attrib or "data-widget" in element.attrib:
            parts.append(("place", [element.get(name) for name in ("x", "y", "width", "height")]))
        if element.text and element.text.strip():
            parts.append(("text", element.text))
    return parts


class GalleryTest(unittest.TestCase):
    maxDiff = None

    def test_every_picture_shows_what_that_of_the_gallery_does(self):
        for name, menu, words in WALKS:
            with self.subTest(name):
                shown, documented = picture(menu, words), read(os.path.join(GALLERY, name + ".svg"))
                self.assertEqual(structure(shown), structure(documented))
                if name in WHOLE:
                    self.assertMultiLineEqual(shown, documented)

    def test_gallery_has_no_other_picture(self):
        self.assertEqual(sorted(os.listdir(GALLERY)), sorted(name + ".svg" for name, _, _ in WALKS))


if __name__ == "__main__":
    unittest.main()
