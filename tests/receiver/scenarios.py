"""Plays random scenarios on the Stowline that STOWLINE_MODULE_DIR holds, and prints what each step did, one JSON object a
line:

    scenarios.py SEED COUNT

The same seed makes the same scenarios: two modules that behave alike print the same.
"""

import json
import random
import re
import sys

import paths  # noqa: F401

import fakes
import journal

stowline = fakes.import_module()
journal.take()

NAMES = ["settings_1.tar.gz", "settings_2_solo2.tar.gz", "settings_3_duo.tar.gz", "configuration_ver_a_1.tar.gz",
         "configuration_ver_b_2_solo2.tar.gz", "configuration_ver_c_3.tar.gz", "backup_1.sh", "restore_2.sh",
         "pluginlist_1.lst", "pluginlist_2.lst", "a name with blanks", "plugins"]
SCHEDULED = ["%s_2024%04d_07-04_%s.auto%s" % (kind, day, model, end)
             for day in range(1, 7) for model in ("solo2", "duo2")
             for kind, end in (("settings", ".tar.gz"), ("configuration_ver_c", ".tar.gz"),
                               ("configuration_ver_c", ".tar.gz_user_files"), ("configuration_ver_b", ".tar.gz_atile_hd"),
                               ("pluginlist", ".lst"))]
LINES = ["enigma2-plugin-a\n", "enigma2-plugin-b", "enigma2-plugin-settings-c\n", "enigma2-plugin-extensions-xbmc\n",
         "\n", "enigma2-plugin-d \r\n"]
ATILE = "/usr/share/enigma2/AtileHD"
VFD = "/usr/share/enigma2/vfd_skin"


class Odd(object):
    """An object that compares and converts as it likes."""

    def __init__(self, equal):
        self.equal = equal

    def __eq__(self, other):
        journal.note("Odd.__eq__")
        return self.equal

    def __str__(self):
        journal.note("Odd.__str__")
        return "odd"

    __hash__ = None


class Text(str):
    """A text of a derived class."""

    def startswith(self, *args):
        journal.note("Text.startswith")
        return str.startswith(self, *args)


class Name(str):
    """A name of a file that tells what is looked for in it."""

    def __contains__(self, part):
        journal.note("%s in Name" % part)
        return str.__contains__(self, part)


class OddError(Exception):
    pass


class SilentSession(fakes.Session):
    """A session that does not return what it opens."""

    def open(self, *args, **keywords):
        fakes.Session.open(self, *args, **keywords)

    def openWithCallback(self, *args, **keywords):
        fakes.Session.openWithCallback(self, *args, **keywords)


def odd_values():
    return [None, True, False, 0, 1, 1.0, 2, "", "/media/usb", "settings_1.tar.gz", "restore", "auto", b"bytes", u"\xe4",
            [], ["x"], ["/media/usb", 5], (), ("/media/usb", "/media/usb", None), {}, {"package": "x"}, Odd(True), Odd(False),
            Text("settings_1.tar.gz"), Text("/media/usb"), object, iter(["x"])]


def without_addresses(text):
    return re.sub(r" at 0x\w+|0x\w+", "", text)


def shown(value, depth=3):
    """Returns a value as text that is the same for both modules."""
    if isinstance(value, (list, tuple)) and depth > 0:
        return [type(value).__name__] + [shown(item, depth - 1) for item in value]
    if isinstance(value, dict) and type(value) is dict and depth > 0:
        return sorted([shown(key), shown(value[key], depth - 1)] for key in value)
    if callable(value) and getattr(value, "__self__", None) is not None:
        return "method " + value.__name__
    text = value if isinstance(value, str) else repr(value)
    return type(value).__name__ + " " + without_addresses(text)[:200]


class Scenario(object):
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.pick = self.random.choice
        self.objects = []
        self.session = self.pick([fakes.Session] * 9 + [SilentSession])()
        self.lay_out()

    def some(self, values):
        return [value for value in values if self.random.random() < 0.4]

    def some_lines(self, lines):
        return self.some(lines) + ([self.pick(odd_values())] if self.random.random() < 0.1 else [])

    def lay_out(self):
        receiver = fakes.receiver = fakes.Receiver()
        receiver.model = self.pick(["solo2", "duo", "solo2", u"solo2", "", None, 5])
        setting = stowline.config.plugins.qorpanel.stowline.backuprestorepath
        setting.__dict__["content"] = self.pick(["/media/hdd/", "/media/hdd/", "/media/hdd", "/", "", u"/media/\xe4"])
        directory = "/media/hdd/qor-stowline"
        if self.random.random() < 0.8:
            receiver.add_directory(directory)
        for name in self.some(NAMES) + self.some(SCHEDULED):
            receiver.add_file(directory + "/" + name, self.pick([0, 9999, 10000, 20000]))
        if self.random.random() < 0.1:
            receiver.directories[directory] = [Name(name) for name in receiver.directories.get(directory, [])]
        if self.random.random() < 0.5:
            receiver.add_directory(directory + "/plugins", self.some(["a.ipk", "b.IPK", "c.ipk"]))
        for path in self.some(["/etc/samba/smb.conf", "/proc/stb/vmpeg/0/dst_width"]):
            receiver.add_file(path)
        receiver.add_file("/proc/mounts", lines=self.some_lines(
            ["a /media/usb x\n", "b /media/net x\n", "c /media/net/autofs/s x\n", "d\n", "e  /media/x y\n", "f /media y\n"]))
        if self.random.random() < 0.5:
            receiver.add_directory("/media/net/autofs", self.some(["s", "t"]))
            for share in self.some(["s", "t"]):
                receiver.files["/media/net/autofs/" + share] = (0, [])
        if self.random.random() < 0.5:
            receiver.add_directory(ATILE, self.some(["colors_atile_a", "colors_atile_b", "skin.xml", "font_atile_x"]))
            receiver.add_directory(VFD, self.some(["skin_vfd_a", "other"]))
            receiver.add_file("/var/lib/opkg/info/enigma2-plugin-skin-atile.list",
                              lines=self.some_lines([ATILE + "/colors_atile_a\n", ATILE + "/font_atile_x \n", "x\n"]))
        for name in ["pluginlist_1.lst", "pluginlist_2.lst"]:
            receiver.outputs["cat %s/%s" % (directory, name)] = self.some_lines(LINES)
        receiver.outputs['opkg list-installed | grep enigma2-plugin | cut -d " " -f 1'] = self.some_lines(LINES)
        if self.random.random() < 0.3:
            receiver.translations = {"QOR Stowline": self.pick([u"\xdcber", "", 5, Odd(True)]),
                                     "Backup/restore device : %s": self.pick(["%s!", "no", "%d", u"%s \xe4"])}

    def construct(self):
        kind = self.pick(["BackupActions", "StowlineHelpScreen", "Stowline", "Stowline", "StowlineRestore", "StowlineRestore"])
        made = getattr(stowline, kind)
        if self.random.random() < 0.15:
            made = self.derived(made)
        odd = self.random.random() < 0.1
        arguments = {
            "BackupActions": lambda: [self.pick(["auto", "manual", None])],
            "StowlineHelpScreen": lambda: [self.session, "name", "/media/hdd/qor-stowline/" + self.pick(NAMES)],
            "Stowline": lambda: [self.session, "/plugin", self.pick(["backup", "restore", "other"])],
            "StowlineRestore": lambda: [self.session, self.pick(["settingrestore", "configrestore", "plugininstall",
                                                                 "personalscript", ""]), "/plugin"],
        }[kind]()
        if odd:
            arguments[self.random.randrange(len(arguments))] = self.pick(odd_values())
        self.objects.append(None)
        self.objects[-1] = made(*arguments)
        return kind

    def derived(self, made):
        """Returns a sub-class in which an operation is another."""
        operations = sorted(name for name in vars(made) if callable(getattr(made, name)) and not name.startswith("__"))
        name = self.pick(operations)
        result = self.pick([None, True, False, 1, [], ["/x"], "x", 5])
        above = self.random.random() < 0.5

        def operation(self, *args, **keywords):
            journal.note("overridden " + name)
            if above:
                getattr(made, name)(self, *args, **keywords)
            return result
        return type(made)(made.__name__, (made,), {name: operation, "__module__": made.__module__})

    def call(self):
        target = self.pick(self.objects)
        operations = sorted(name for name in dir(type(target)) if not name.startswith("_") and
                            callable(getattr(type(target), name)) and name not in dir(dict))
        name = self.pick(operations)
        arguments = [self.pick(odd_values()) for _ in range(self.pick([0, 0, 0, 1, 1, 2, 3]))]
        return ["call " + name, getattr(target, name)(*arguments)]

    def press(self):
        target = self.pick(self.objects)
        widgets = sorted(key for key in target if hasattr(target[key], "actions"))
        actions = target[self.pick(widgets)].actions
        key = self.pick(sorted(actions))
        if "menu" in target and self.random.random() < 0.8:
            target["menu"].index = self.random.randrange(6)
        return ["press " + key, actions[key]()]

    def finish_layout(self):
        for hook in list(self.pick(self.objects).onLayoutFinish):
            hook()

    def answer(self):
        return ["answer", self.session.answer(*[self.pick([True, True, False, 1, None, ("/media/usb", "/media/usb", None),
                                                           "x"])][:self.pick([0, 1, 1, 1])])]

    def answer_late(self):
        self.session.close(True)

    def settle(self):
        self.session.settle()

    def event(self):
        target = self.pick(self.objects)
        for callback in list(target.ipkg.callbacks):
            callback(self.pick([10, 10, 11, 0, None]), None)

    def set_attribute(self):
        target = self.pick(self.objects)
        name = self.pick(sorted(vars(target)) + ["restoretype", "path", "cmdList", "setStatus"])
        setattr(target, name, self.pick(odd_values()))
        return "set " + name

    def delete_attribute(self):
        target = self.pick(self.objects)
        name = self.pick(sorted(vars(target)))
        delattr(target, name)
        return "delete " + name

    def change_list(self):
        target = self.pick(self.objects)
        lists = sorted(name for name, value in vars(target).items() if isinstance(value, list))
        value = getattr(target, self.pick(lists))
        value.append(self.pick(odd_values()))
        return [shown(value)]

    def close(self):
        target = self.pick(self.objects)
        getattr(target, "doClose", target.__dict__.clear)()

    def fail(self):
        journal.fail_at(self.random.randrange(12), self.pick([OSError(28, "No space left on device"), OddError("odd"),
                                                              KeyboardInterrupt()]))
        return "fail"

    def rebind(self):
        """Replaces or removes a name of the module; the next scenario has it as it was."""
        name = self.pick(["getBackupRestorePath", "getDateTime", "BackupActions", "StowlineRestore", "StowlineHelpScreen",
                          "_", "fileExists", "MessageBox", "ChoiceBox", "Console", "Ipkg", "StaticText", "Label", "List",
                          "MenuList", "ActionMap", "NumberActionMap", "ComConsole", "IpkgComponent", "HardwareInfoVu",
                          "LoadPixmap", "resolveFilename", "SCOPE_PLUGINS", "plugins", "config", "listdir", "os_path",
                          "os_stat", "makedirs", "remove", "chmod", "system", "popen", "open", "localtime", "nimmanager",
                          "eDVBDB", "InfoBar", "Screen"])
        if self.random.random() < 0.2:
            stowline.__dict__.pop(name, None)
            return "unbind " + name
        stowline.__dict__[name] = self.pick([
            lambda *args, **keywords: journal.note("rebound " + name), lambda *args, **keywords: "/other/" + name,
            lambda text="": Text(text), None, self.pick(odd_values())])
        return "rebind " + name

    STEPS = [(press, 8), (call, 8), (finish_layout, 4), (answer, 6), (answer_late, 1), (settle, 1), (event, 4),
             (set_attribute, 3), (delete_attribute, 1), (change_list, 1), (construct, 4), (fail, 2), (close, 1),
             (rebind, 3)]

    def play(self):
        names = dict(stowline.__dict__)
        steps = [self.construct, self.construct]
        weighted = [step for step, weight in self.STEPS for _ in range(weight)]
        steps += [lambda step=self.pick(weighted): step(self) for _ in range(self.pick([4, 8, 12]))]
        done = [self.attempt(step) for step in steps]
        stowline.__dict__.clear()
        stowline.__dict__.update(names)
        journal.take()
        return done

    def attempt(self, step):
        fake, sys.stdout = sys.stdout, fakes.Log()
        try:
            result = shown(step())
        except (Exception, KeyboardInterrupt) as error:
            # How an interpreter words the misuse of an operation, or where it missed a name, is its own affair.
            message = "" if isinstance(error, TypeError) else without_addresses(str(error))
            result = ["raised", type(error).__name__, message.replace("global name", "name")]
        finally:
            sys.stdout = fake
        lines = [without_addresses(line) for line in journal.lines]
        del journal.lines[:]
        return [result, lines, [self.state(each) for each in self.objects]]

    @staticmethod
    def state(target):
        if not hasattr(target, "__dict__"):
            return None
        content = sorted([name, shown(value)] for name, value in vars(target).items() if name != "onLayoutFinish")
        widgets = sorted(target) if isinstance(target, dict) else []
        return [content, widgets]


def main():
    seed, count = int(sys.argv[1]), int(sys.argv[2])
    for number in range(count):
        journal.take()
        print(json.dumps([seed + number, Scenario(seed + number).play()]))


if __name__ == "__main__":
    main()
