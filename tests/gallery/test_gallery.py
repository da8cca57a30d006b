"""The television shows every screen and dialog as the documentation has it."""

import os
import unittest

from gallery import GALLERY, WALKS, picture, read


class GalleryTest(unittest.TestCase):
    maxDiff = None

    def test_every_picture_is_that_of_the_gallery(self):
        for name, menu, words in WALKS:
            with self.subTest(name):
                self.assertMultiLineEqual(picture(menu, words), read(os.path.join(GALLERY, name + ".svg")))

    def test_gallery_has_no_other_picture(self):
        self.assertEqual(sorted(os.listdir(GALLERY)), sorted(name + ".svg" for name, _, _ in WALKS))


if __name__ == "__main__":
    unittest.main()
