"""The catalogues hold every text of the module, and scripts/translations notices when they do not."""

import ast
import os
import re
import unittest

from support import PackagingTest, found, path, run, translated


def catalogue(file):
    """Returns the texts of a catalogue with their translations."""
    status, text, error = run("msgattrib", "--no-wrap", "--no-location", file)
    assert status == 0, error
    entries = []
    for keyword, quoted in re.findall(r'^(?:(msgid|msgstr) )?(".*")$', text, re.MULTILINE):
        if keyword == "msgid":
            entries.append([""])
        elif keyword == "msgstr":
            entries[-1].append("")
        entries[-1][-1] += ast.literal_eval(quoted)
    return dict(entries)


TEMPLATE = catalogue(path("packaging", "po", "stowline.pot"))


class Translations(PackagingTest):
    def check(self, *replacements):
        """Runs scripts/translations --check on a copy in which texts of files are replaced."""
        root = self.copy("scripts/translations", "plugin/src", "packaging/po")
        for file, old, new in replacements:
            with open(os.path.join(root, file), encoding="utf-8") as source:
                text = source.read()
            self.assertEqual(text.count(old), 1, (file, old))
            with open(os.path.join(root, file), "w", encoding="utf-8") as source:
                source.write(text.replace(old, new))
        return run(os.path.join(root, "scripts", "translations"), "--check")

    def test_all_is_up_to_date_and_complete(self):
        status, output, errors = self.check()
        self.assertEqual((status, output, errors), (0, "", ""))

    def test_the_template_holds_what_the_module_has_translated(self):
        no_catalogue_can_hold = [text for text, in found(
            r'_\("(Are you sure you want to delete\\nfollowing backup:\\n.+)"\)$')]
        self.assertEqual(len(no_catalogue_can_hold), 1)
        texts = [text for text in translated() if "want to delete" not in text]
        self.assertGreater(len(set(texts)), 30)
        self.assertEqual([text for text in texts if text not in TEMPLATE], [])

    def test_what_else_the_template_holds_is_said_of_failures(self):
        self.assertEqual(sorted(set(TEMPLATE) - set(translated()) - {""}), [
            "Backup of common configurations failed",
            "Backup settings failed",
            "Creating list of installed plugins failed",
            "Restoring settings failed",
            "Sorry, your backup destination is not writeable.\n\nPlease choose another one.",
        ])

    def test_each_translation_has_every_text_in_its_own_words(self):
        for language in ("de", "fr"):
            texts = catalogue(path("packaging", "po", language + ".po"))
            self.assertEqual(sorted(texts), sorted(TEMPLATE))
            self.assertEqual([text for text in texts if not texts[text]], [])
            self.assertEqual([text for text in texts if texts[text] == text], ["QOR Stowline"])

    def test_a_changed_text_is_noticed(self):
        for file, old, new in [
                ("Stowline.cpp", '"Backup channel settings"', '"Backup channels"'),
                ("Stowline.cpp", '"Restore"_t : "Backup"_t', '"Restore"_t : "Save"_t'),
                ("Stowline.cpp", '"Backup settings failed"', '"No backup of settings"'),
                ("StowlineRestore.cpp", '"Delete"', '"Remove"'),
                ("StowlineHelpScreen.cpp", '"Ok"', '"Go"')]:
            with self.subTest(new):
                status, _, errors = self.check(("plugin/src/" + file, old, new))
                self.assertEqual(status, 1)
                self.assertIn("stowline.pot is out of date", errors)
            self.doCleanups()
            self.setUp()

    def test_a_new_command_is_no_text(self):
        status, _, errors = self.check(
            ("plugin/src/StowlineRestore.cpp", '"killall -9 enigma2"', '"sync", "killall -9 enigma2"'))
        self.assertEqual((status, errors), (0, ""))

    def test_an_incomplete_translation_is_noticed(self):
        for old, new, complaint in [
                ('msgstr "Verlassen"', 'msgstr ""', "this message is untranslated"),
                ('#, c-format\nmsgid "from', '#, fuzzy, c-format\nmsgid "from', "needs to be reviewed"),
                ('msgstr "aus %s/', 'msgstr "aus %d/', "msgid"),
                ('msgstr "Medium für Sicherungen: %s"', 'msgstr "Medium"', "format specifications"),
                ('msgid "Exit"\nmsgstr "Verlassen"\n', "", "used but not defined")]:
            with self.subTest(new):
                status, _, errors = self.check(("packaging/po/de.po", old, new))
                self.assertEqual(status, 1)
                self.assertIn(complaint, errors)
            self.doCleanups()
            self.setUp()


if __name__ == "__main__":
    unittest.main(verbosity=2)
