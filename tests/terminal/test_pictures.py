"""Every screen and dialog is shown as the documentation has it."""

import re
import unittest

from pictures import README, SCREENS, page, read, with_pictures

WHOLE = "Packages that are being installed"


def pictures(text):
    """Returns the pictures of a page by their titles."""
    return dict(re.findall(r"^## ([^\n]*)\n\n```text\n(.*?)\n```$", text, re.MULTILINE | re.DOTALL))


def words(picture):
    """Returns what each line of a picture says, without frames, bars and blanks."""
    lines = (re.sub(r"[─│┌┐└┘├┤█░\s]+", " ", line).strip() for line in picture.split("\n"))
    return [line for line in lines if line]


class PicturesTest(unittest.TestCase):
    maxDiff = None

    def test_every_screen_says_what_the_page_shows(self):
        shown, documented = pictures(page()), pictures(read(SCREENS))
        self.assertEqual({title: words(picture) for title, picture in shown.items()},
                         {title: words(picture) for title, picture in documented.items()})
        self.assertMultiLineEqual(shown[WHOLE], documented[WHOLE])

    def test_readme_shows_two_screens(self):
        text = read(README)
        self.assertEqual(text.count("<!-- picture: "), 2)
        self.assertMultiLineEqual(with_pictures(text), text)


if __name__ == "__main__":
    unittest.main()
