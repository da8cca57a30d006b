# -*- coding: utf-8 -*-
"""Names are bytes: whatever lies in the backup directory is listed, restored, run and deleted as it is.
On 2.7 the framework's texts may be unicode objects."""

import os
import shutil
import sys
import tempfile
import unittest

from receiver_test import ReceiverTest, stowline
from children import in_child
from flows import DIRECTORY, STAMP, finish_layout, full_path, press

IS_2 = sys.version_info < (3,)

# What a name may hold between its beginning and its end.
ODDITIES = [b"", b" ", b"  a  b ", b"new\nline", b"\n", b"\r\t", b"'quoted\"", b"$(x)`;|&*?[a]", b"\\",
            b"%s%d%%",
            b"\xff\xfe", b"\x80", b"\xc3", b"\xc3\xa4", b"\xe4\xf6\xfc", b"\xed\xb3\xbf", b"\xed\xa0\x80",
            b"\xef\xbf\xbd", b"\xf0\x9f\x98\x80", b"\xf4\x90\x80\x80", b"\xf0\x9f\x98\x80\xff",
            b"\xef\xbf\xbd\xff", b"\x7f", b"\x01", b"~", b"-rf"]


def name_of(content):
    """A name as the interpreter's os.listdir gives it."""
    return content if IS_2 else os.fsdecode(content)


def names(prefix, suffix):
    return [name_of(prefix + oddity + suffix) for oddity in ODDITIES]


# Restore type, how its names begin and end.
KINDS = [("settingrestore", b"settings", b".tar.gz"), ("configrestore", b"configuration", b".tar.gz"),
         ("plugininstall", b"pluginlist", b".lst"), ("personalscript", b"restore", b".sh"),
         ("personalscript", b"backup", b".sh")]


class BytesTest(ReceiverTest):
    def setUp(self):
        super(BytesTest, self).setUp()
        self.commands = []
        self.former = stowline.system
        stowline.system = self.commands.append

    def tearDown(self):
        stowline.system = self.former
        super(BytesTest, self).tearDown()

    def lay_out(self, found):
        self.receiver.add_directory(DIRECTORY)
        for name in found:
            self.receiver.add_file(full_path(name), 10000)

    def restore_list(self, restoretype):
        return stowline.StowlineRestore(self.session, restoretype, "/plugin")

    def selected(self, restoretype, name):
        restore = self.restore_list(restoretype)
        restore["filelist"].index = restore["filelist"].rows.index(name)
        return restore


class Names(BytesTest):
    def each(self):
        for restoretype, prefix, suffix in KINDS:
            self.setUp()
            found = names(prefix, suffix)
            self.lay_out(found)
            yield restoretype, found

    def test_names_are_listed_as_they_are_in_the_interpreters_order(self):
        for restoretype, found in self.each():
            restore = self.restore_list(restoretype)
            self.assertEqual(restore.flist, sorted(found, reverse=True))
            self.assertEqual(restore["filelist"].rows, restore.flist)
            self.assertEqual(set(type(name) for name in restore.flist), set([str]))

    def test_a_selection_is_the_name_as_it_is(self):
        for restoretype, found in self.each():
            for name in found:
                restore = self.selected(restoretype, name)
                restore.deleteFile()
                self.assertEqual((restore.sel, restore.val), (name, full_path(name)))
                question = self.session.opened[-1][1][0]
                self.assertEqual(question, "Are you sure you want to delete\nfollowing backup:\n" + name)

    def test_settings_are_restored_with_the_name_as_it_is(self):
        found = names(b"settings", b".tar.gz")
        self.lay_out(found)
        for name in found:
            del self.commands[:]
            press(self.selected("settingrestore", name), "ok")
            self.assertEqual(self.commands[-1], "tar xzf %s -C /" % full_path(name))

    def test_a_configuration_is_restored_with_the_name_as_it_is(self):
        found = names(b"configuration_ver_c", b".tar.gz")
        self.lay_out(found)
        for name in found:
            self.receiver.add_file(full_path(name) + "_user_files")
            press(self.selected("configrestore", name), "green")
            self.assertEqual(self.session.opened[-1][:2],
                             (stowline.StowlineHelpScreen, (name, full_path(name))))
            self.confirm(name)

    def confirm(self, name):
        screen = stowline.StowlineHelpScreen(self.session, name, full_path(name))
        finish_layout(screen)
        self.assertIn("\n%s\n" % name, screen["messagetext"].text)
        del self.commands[:]
        press(screen, "ok")
        for archive in (full_path(name), full_path(name) + "_user_files"):
            unpacked = [line for line in self.commands if line.endswith("tar -xzf %s -C /" % archive)]
            self.assertEqual(len(unpacked), 1)

    def test_a_script_is_run_with_the_name_as_it_is(self):
        found = names(b"restore", b".sh")
        self.lay_out(found)
        for name in found:
            restore = self.selected("personalscript", name)
            press(restore, "ok")
            self.assertEqual(self.session.opened[-1][1][0],
                             "Are you sure you want to run\nfollowing script:\n" + name)
            self.session.answer(True)
            self.assertEqual(self.session.opened[-1][2]["cmdlist"], [DIRECTORY + "/./" + name])

    def test_a_plugin_list_is_read_with_the_name_as_it_is(self):
        found = names(b"pluginlist", b".lst")
        self.lay_out(found)
        lines = [name_of(oddity.replace(b"\n", b"")) for oddity in ODDITIES]
        for name in found:
            self.receiver.outputs["cat " + full_path(name)] = [line + "\n" for line in lines]
            restore = self.selected("plugininstall", name)
            press(restore, "ok")
            restore.ipkgCallback(stowline.IpkgComponent.EVENT_DONE, None)
            self.assertEqual([options["package"] for _, options in self.session.opened[-1][2]["cmdList"]],
                             lines)

    def test_a_console_restore_has_the_name_as_it_is(self):
        found = names(b"settings", b".tar.gz")
        self.lay_out(found)
        for name in found:
            restore = self.selected("settingrestore", name)
            restore.deleteFile()
            restore.startRestore(True)
            self.assertEqual(self.session.opened[-1][2]["cmdlist"][0], "tar -xzf %s -C /" % full_path(name))

    def test_a_file_is_deleted_by_the_name_as_it_is(self):
        for restoretype, found in self.each():
            for name in found:
                left = set(self.receiver.directories[DIRECTORY]) - set([name])
                press(self.selected(restoretype, name), "yellow")
                self.session.answer(True)
                self.assertEqual(set(self.receiver.directories[DIRECTORY]), left)

    def test_housekeeping_deletes_by_the_name_as_it_is(self):
        scheduled = names(b"settings", b"_solo2.auto.tar.gz")
        self.lay_out(scheduled)
        stowline.BackupActions("auto").houseKeeping()
        self.assertEqual(sorted(self.receiver.directories[DIRECTORY]), sorted(scheduled)[-3:])

    def test_user_files_are_found_by_the_name_as_it_is(self):
        found = names(b"a", b"")
        self.receiver.add_directory("/files", found)
        packaged = "/files/" + found[-1]
        self.receiver.add_file("/list", lines=[packaged + "\n"])
        engine = stowline.BackupActions()
        self.assertEqual(engine.saveUserFiles("/list", ["/files/a"], ["/files"]),
                         ["/files/" + name for name in found[:-1]])

    def test_attributes_and_arguments_keep_every_name(self):
        restore, engine = self.restore_list("settingrestore"), stowline.BackupActions()
        for name in names(b"", b""):
            restore.sel = restore.val = restore.path = restore.restoretype = engine.boxtype = name
            restore.flist = [name]
            self.assertEqual((restore.sel, restore.val, restore.path), (name, name, name))
            self.assertEqual(restore.flist, [name])
            self.assertEqual((restore.restoretype, engine.boxtype), (name, name))
            screen = stowline.StowlineHelpScreen(self.session, name, name)
            self.assertEqual((screen.restorefile, screen.fullrestorepath), (name, name))

    def test_a_medium_may_have_any_name(self):
        for name in names(b"/media/", b""):
            stowline.config.plugins.qorpanel.stowline.backuprestorepath.__dict__["content"] = name
            self.assertEqual(stowline.getBackupRestorePath(),
                             name + ("qor-stowline" if name.endswith("/") else "/qor-stowline"))

    @unittest.skipIf(IS_2, "2.7 has no such texts")
    def test_bytes_are_no_names_of_files(self):
        stowline.listdir, former = lambda path: [b"settings.tar.gz"], stowline.listdir
        try:
            self.assertIsInstance(self.raised(self.restore_list, "settingrestore"), TypeError)
        finally:
            stowline.listdir = former


class RealDirectory(BytesTest):
    """The operating system's own functions on a directory of its own, but for the shell."""

    def setUp(self):
        super(RealDirectory, self).setUp()
        self.medium = tempfile.mkdtemp()
        self.directory = os.path.join(self.medium, "qor-stowline")
        os.mkdir(self.directory)

    def tearDown(self):
        shutil.rmtree(self.medium if IS_2 else os.fsencode(self.medium))
        super(RealDirectory, self).tearDown()

    def content(self):
        return sorted(os.listdir(self.directory))

    def lay_out(self, found):
        for name in found:
            with open(os.path.join(self.directory, name), "wb") as made:
                made.write(b"x" * 10000)
        if self.content() != sorted(found):
            self.skipTest("the file system has no such names")

    def use_real_functions(self):
        for name in ("listdir", "makedirs", "remove", "chmod", "popen"):
            setattr(stowline, name, getattr(os, name))
        stowline.os_path, stowline.os_stat, stowline.open = os.path, os.stat, open
        stowline.fileExists = os.path.exists
        setting = stowline.config.plugins.qorpanel.stowline.backuprestorepath
        setting.__dict__["content"] = self.medium

    def run_in_child(self, use):
        """Runs a test whose functions are the real ones in a process of its own."""
        def child():
            self.use_real_functions()
            use()
        in_child(child)

    def test_real_names_are_listed_and_restored(self):
        found = names(b"settings", b".tar.gz")
        self.lay_out(found)
        self.run_in_child(lambda: self.list_and_restore(found))

    def list_and_restore(self, found):
        restore = self.restore_list("settingrestore")
        self.assertEqual(restore.flist, sorted(found, reverse=True))
        for name in found:
            press(self.selected("settingrestore", name), "ok")
            self.assertEqual(self.commands[-1], "tar xzf %s/%s -C /" % (self.directory, name))

    def test_real_names_are_deleted(self):
        found = names(b"settings", b".tar.gz")
        self.lay_out(found + ["other"])
        self.run_in_child(lambda: self.delete_each(found))
        self.assertEqual(self.content(), ["other"])

    def delete_each(self, found):
        for name in found:
            press(self.selected("settingrestore", name), "yellow")
            self.session.answer(True)
            assert name not in self.content()

    def test_real_scripts_are_made_executable(self):
        found = names(b"restore", b".sh")
        self.lay_out(found)
        self.run_in_child(lambda: self.run_each(found))
        for name in found:
            self.assertTrue(os.access(os.path.join(self.directory, name), os.X_OK))

    def run_each(self, found):
        for name in found:
            press(self.selected("personalscript", name), "ok")
            self.session.answer(True)
            self.assertEqual(self.session.opened[-1][2]["cmdlist"], [self.directory + "/./" + name])

    def test_real_scheduled_backups_are_tidied_up(self):
        found = names(b"settings", b"_solo2.auto.tar.gz")
        self.lay_out(found)
        self.run_in_child(lambda: stowline.BackupActions("auto").houseKeeping())
        self.assertEqual(self.content(), sorted(found)[-3:])

    def test_a_real_directory_is_made(self):
        os.rmdir(self.directory)
        self.run_in_child(stowline.getBackupRestorePath)
        self.assertEqual(os.listdir(self.medium), ["qor-stowline"])


TRANSLATIONS = {"Exit": u"Schließen", "Close": u"Fermé", "QOR Stowline": u"QÖR", "Restore": u"Zurück",
                "Backup/restore device : %s": u"Gerät: %s", "Delete": u"\U0001f5d1"}


class UnicodeTexts(BytesTest):
    """A text stays the object that it is: on 2.7 one of the framework may be a unicode object."""

    def test_translations_may_be_unicode(self):
        self.receiver.translations.update(TRANSLATIONS)
        main = stowline.Stowline(self.session, "/plugin", "restore")
        finish_layout(main)
        self.assertEqual(main.title, u"QÖR (Zurück)")
        self.assertEqual(main["key_red"].text, u"Schließen")
        self.assertEqual(main.list[0][1], u"Gerät: /media/hdd/")
        restore = self.restore_list("settingrestore")
        self.assertEqual([restore[key].text for key in ("key_red", "key_yellow")],
                         [u"Fermé", u"\U0001f5d1"])

    def test_box_types_may_be_unicode(self):
        self.receiver.model = u"solo2"
        self.receiver.add_directory(DIRECTORY, ["settings_a_solo2.tar.gz", "settings_b_duo.tar.gz"])
        engine = stowline.BackupActions(u"auto")
        self.assertEqual((engine.boxtype, engine.executiontime), ("solo2", STAMP + ".auto"))
        self.assertEqual((type(engine.boxtype), type(engine.executiontime)), (type(u""), type(u"")))
        self.assertEqual(self.restore_list("settingrestore").flist, ["settings_a_solo2.tar.gz"])

    def test_arguments_may_be_unicode(self):
        self.receiver.add_directory(DIRECTORY, ["settings.tar.gz"])
        restore = stowline.StowlineRestore(self.session, u"settingrestore", u"/plügin")
        self.assertEqual((restore.flist, restore.skin_path), (["settings.tar.gz"], u"/plügin"))
        self.assertEqual(stowline.Stowline(self.session, u"/p", u"restore").screentype, "restore")
        screen = stowline.StowlineHelpScreen(self.session, u"ä", u"/ä")
        self.assertEqual((screen.restorefile, screen.fullrestorepath), (u"ä", u"/ä"))

    def test_a_medium_and_its_names_may_be_unicode(self):
        setting = stowline.config.plugins.qorpanel.stowline.backuprestorepath
        setting.__dict__["content"] = u"/media/ü"
        self.receiver.add_directory(u"/media/ü/qor-stowline",
                                    [u"settingsä.tar.gz", "settingsb.tar.gz"])
        restore = self.restore_list("settingrestore")
        self.assertEqual(restore.path, u"/media/ü/qor-stowline")
        self.assertEqual(restore.flist, [u"settingsä.tar.gz", "settingsb.tar.gz"])


if __name__ == "__main__":
    unittest.main()
