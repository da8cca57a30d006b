"""Every screen and dialog is shown as the documentation has it."""

import unittest

from pictures import PAGES, README, page, read, with_pictures


class PicturesTest(unittest.TestCase):
    maxDiff = None

    def test_every_screen_is_shown_as_on_the_page_of_its_size(self):
        for name, size in PAGES.items():
            with self.subTest(name):
                self.assertMultiLineEqual(page(*size), read(name))

    def test_readme_shows_two_screens(self):
        text = read(README)
        self.assertEqual(text.count("<!-- picture: "), 2)
        self.assertMultiLineEqual(with_pictures(text), text)


if __name__ == "__main__":
    unittest.main()
