"""The sample screens have every widget of the module's screens, and nothing in them is cut off: every
element lies inside its screen, none lies on another, and the texts fit as far as that can be estimated."""

import gettext
import io
import itertools
import os
import re
import unittest
import xml.etree.ElementTree

from support import PackagingTest, content, found, path, run, translated

OPENING = {"Stowline": ["OpeningTheRestoreMenu"], "StowlineRestore": ["OpeningARestoreList"]}
RENDERER = {"List": "Listbox", "StaticText": "Label"}  # of the widgets that are sources
LAYOUTS = ["LayoutOfTheBackupMenu", "LayoutOfTheRestoreMenu"]
WIDTH_OF_A_LETTER = 0.55  # of the height of its font


def numbers(text):
    return tuple(int(number) for number in text.split(","))


def fits(area, screen):
    x, y, width, height = area
    return (min(x, y) >= 0 and min(width, height) > 0 and
            x + width <= screen[0] and y + height <= screen[1])


def overlap(one, other):
    return (one[0] < other[0] + other[2] and other[0] < one[0] + one[2] and
            one[1] < other[1] + other[3] and other[1] < one[1] + one[3])


def area(element):
    return numbers(element.get("position")) + numbers(element.get("size"))


def row_of(menu):
    """Returns the template of the menu's rows, its entries as (item, area, font)."""
    def entry(item, font=None):
        return lambda pos, size, flags=0, **of: (of[item], pos + size, of.get(font))
    names = {"MultiContentEntryText": entry("text", "font"), "MultiContentEntryPixmapAlphaTest": entry("png"),
             "gFont": lambda family, size: (family, size), "RT_HALIGN_LEFT": 1, "RT_VALIGN_CENTER": 2}
    return eval(menu.find("convert").text.strip(), {"__builtins__": {}}, names)


class Skin:
    """The tests of one file; the classes below say which."""

    def setUp(self):
        super().setUp()
        skin = xml.etree.ElementTree.fromstring(content("packaging", "skin", self.file))
        self.assertEqual(skin.tag, "skin")
        self.assertEqual([(element.tag, element.get("name")) for element in skin],
                         [("output", None), ("screen", "Stowline"), ("screen", "StowlineRestore")])
        resolution = skin.find("output/resolution")
        self.assertEqual((int(resolution.get("xres")), int(resolution.get("yres"))), self.resolution)
        self.screens = skin.findall("screen")
        self.menu = skin.find("screen/widget[@source='menu']")

    def languages(self):
        yield lambda text: text
        for language in ("de", "fr"):
            status, _, errors = run("msgfmt", "-o", self.at("mo"), path("packaging", "po", language + ".po"))
            self.assertEqual((status, errors), (0, ""))
            with io.open(self.at("mo"), "rb") as catalogue:
                yield gettext.GNUTranslations(catalogue).gettext

    def assertTextFits(self, text, width, font):
        estimate = len(text) * font * WIDTH_OF_A_LETTER
        self.assertLessEqual(estimate, width, "%r of %d does not fit" % (text, font))

    def test_every_screen_has_every_widget_once(self):
        for screen in self.screens:
            made = dict(found(r'self\["(\w+)"\] = (StaticText|List|Label|MenuList)\(',
                              OPENING[screen.get("name")]))
            self.assertGreater(len(made), 4)
            self.assertEqual(sorted(widget.get("source") or widget.get("name")
                                    for widget in screen.iter("widget")), sorted(made))
            for widget in screen.iter("widget"):
                kind = made[widget.get("source") or widget.get("name")]
                self.assertEqual("source" if widget.get("source") else "name",
                                 "source" if kind in RENDERER else "name")
                self.assertEqual(widget.get("render"), RENDERER.get(kind))

    def test_every_element_lies_inside_its_screen_and_none_on_another(self):
        for screen in self.screens:
            size = numbers(screen.get("size"))
            self.assertEqual(screen.get("position"), "center,center")
            self.assertTrue(fits((0, 0) + size, self.resolution))
            for element in screen:
                self.assertTrue(fits(area(element), size), element.attrib)
            for one, other in itertools.combinations(screen, 2):
                self.assertFalse(overlap(area(one), area(other)), (one.attrib, other.attrib))

    def test_a_row_shows_picture_title_and_description(self):
        self.assertEqual(self.menu.find("convert").get("type"), "TemplatedMultiContent")
        row = row_of(self.menu)
        width, height = numbers(self.menu.get("size"))
        self.assertEqual(sorted(item for item, _, _ in row["template"]), [1, 2, 3])
        for _, place, _ in row["template"]:
            self.assertTrue(fits(place, (width, row["itemHeight"])), place)
        for one, other in itertools.combinations(row["template"], 2):
            self.assertFalse(overlap(one[1], other[1]), (one, other))
        self.assertEqual(height, 6 * row["itemHeight"])

    def test_texts_of_rows_fit(self):
        row = row_of(self.menu)
        places = {item: (place[2], row["fonts"][font][1])
                  for item, place, font in row["template"] if item != 3}
        texts = translated(LAYOUTS)
        self.assertEqual(len(texts), 20)
        for translate in self.languages():
            for title, description in zip(texts[::2], texts[1::2]):
                self.assertTextFits(translate(title).replace("%s", "/media/hdd/"), *places[1])
                self.assertTextFits(translate(description).replace("%s", "/media/hdd/"), *places[2])

    def test_texts_of_labels_fit(self):
        labels = {"key_red": ["Exit", "Close"], "key_green": ["Install", "Start"], "key_yellow": ["Delete"],
                  "title": ["Restore", "Backup"]}
        labelled = [screen.findall("widget[@render='Label']") for screen in self.screens]
        for widget in itertools.chain(*labelled):
            font = int(re.match(r"Regular;(\d+)$", widget.get("font")).group(1))
            width, height = numbers(widget.get("size"))
            self.assertGreaterEqual(height, font * 1.3)
            for translate in self.languages():
                for text in map(translate, labels[widget.get("source")]):
                    if widget.get("source") == "title":
                        text = "QOR Stowline (" + text + ")"
                    self.assertTextFits(text, width, font)


class SdSkin(Skin, PackagingTest):
    file, resolution = "skin_sd.xml", (720, 576)


class HdSkin(Skin, PackagingTest):
    file, resolution = "skin_hd.xml", (1280, 720)


class FhdSkin(Skin, PackagingTest):
    file, resolution = "skin_fhd.xml", (1920, 1080)


class Skins(PackagingTest):
    def test_every_file_is_tested(self):
        self.assertEqual(sorted(os.listdir(path("packaging", "skin"))),
                         sorted(skin.file for skin in Skin.__subclasses__()))


if __name__ == "__main__":
    unittest.main(verbosity=2)
