"""The package for a receiver: what is in it, that the receiver's package manager installs it, and that
what it has installed works. The recipe installs the same files."""

import fnmatch
import glob
import hashlib
import io
import os
import re
import sys
import tarfile
import unittest

from support import FLOWS, PackagingTest, content, found, path, run

PYTHON = "%d.%d" % sys.version_info[:2]
VERSION = re.search(r"project\(stowline VERSION (\S+)", content("CMakeLists.txt")).group(1)
NAME = "stowline_%s_mips32el.ipk" % VERSION

CONTROL = """\
Package: stowline
Version: %s
Description: Backup and restore of channel lists, configuration and plugins
Section: base
Priority: optional
Maintainer: The Stowline developers
License: MIT
Architecture: mips32el
Depends: enigma2
""" % VERSION


def files(python):
    """Returns the files of a package with their modes."""
    share = "usr/share/enigma2/stowline/"
    return [
        ("usr/lib/python%s/site-packages/Stowline.so" % python, 0o755),
        (share + "locale/de/LC_MESSAGES/stowline.mo", 0o644),
        (share + "locale/fr/LC_MESSAGES/stowline.mo", 0o644),
        (share + "skin_fhd.xml", 0o644),
        (share + "skin_hd.xml", 0o644),
        (share + "skin_sd.xml", 0o644),
        ("usr/share/licenses/stowline/LICENSE", 0o644),
    ]


def with_folders(listed):
    folders = {}
    for file, _ in listed:
        while os.path.dirname(file):
            file = os.path.dirname(file)
            folders[file] = 0o755
    return sorted(listed + list(folders.items()))


def below(root):
    """Returns the files below a directory with their modes."""
    return sorted((os.path.relpath(os.path.join(folder, name), root),
                   os.stat(os.path.join(folder, name)).st_mode & 0o7777)
                  for folder, _, names in os.walk(root) for name in names)


def block_of(document, word):
    """Returns the indented example of a document that the word is in."""
    examples = re.findall(r"(?:^(?:    .*)?\n)+", content(document), re.MULTILINE)
    example, = [text for text in examples if word in text]
    return re.sub("^    ", "", example, flags=re.MULTILINE)


class MadePackage(PackagingTest):
    def make(self, module=os.environ["STOWLINE_MODULE"], python=PYTHON, **environment):
        """Makes the package with the shell in a narrow mode; returns its bytes."""
        words = [path("scripts", "package"), module, "mips32el", self.at("out")] + ([python] if python else [])
        status, output, errors = run("sh", "-c", 'umask 077 && "$@"', "sh", *words,
                                     env=dict(os.environ, **environment))
        self.assertEqual((status, output, errors), (0, self.at("out", NAME) + "\n", ""))
        self.assertEqual(os.listdir(self.at("out")), [NAME])
        with open(self.at("out", NAME), "rb") as package:
            return package.read()


class Package(MadePackage):
    def module_for(self, version, begin=b"\x7fELF", elf_type=b"\3\0"):
        """Makes a file that looks like a module for that version of the interpreter; returns its path."""
        with open(self.at("Stowline.so"), "wb") as module:
            module.write(begin + b"\0" * 12 + elf_type)
            module.write(b"Stowline.so is built for Python " + version + b", this is %s\0")
        return self.at("Stowline.so")

    def members(self, archive, time=0):
        """Returns the members of an archive with their modes, and the content of the files."""
        modes, contents = [], {}
        with tarfile.open(fileobj=io.BytesIO(archive), mode="r:gz") as tar:
            for member in tar:
                self.assertTrue(member.isdir() or member.isfile())
                self.assertEqual((member.uid, member.gid, member.uname, member.gname, member.mtime),
                                 (0, 0, "", "", time))
                name = os.path.relpath(member.name, ".")
                modes.append((name, member.mode))
                if member.isfile():
                    contents[name] = tar.extractfile(member).read()
        return modes, contents

    def assertPackageOf(self, module, package, python, time=0):
        modes, parts = self.members(package, time)
        self.assertEqual(modes, [("debian-binary", 0o644), ("control.tar.gz", 0o644), ("data.tar.gz", 0o644)])
        self.assertEqual(parts["debian-binary"], b"2.0\n")
        self.assertEqual(self.members(parts["control.tar.gz"], time),
                         ([("control", 0o644)], {"control": CONTROL.encode()}))
        modes, data = self.members(parts["data.tar.gz"], time)
        self.assertEqual(sorted(modes), with_folders(files(python)))
        with open(module, "rb") as built:
            self.assertEqual(data["usr/lib/python%s/site-packages/Stowline.so" % python], built.read())
        self.assertEqual(data["usr/share/licenses/stowline/LICENSE"].decode(), content("LICENSE"))
        for size in ("sd", "hd", "fhd"):
            self.assertEqual(data["usr/share/enigma2/stowline/skin_%s.xml" % size].decode(),
                             content("packaging", "skin", "skin_%s.xml" % size))

    def test_it_holds_the_module_and_what_belongs_to_it(self):
        self.assertPackageOf(os.environ["STOWLINE_MODULE"], self.make(), PYTHON)

    def test_it_is_for_python_2_7_unless_said(self):
        module = self.module_for(b"2.7")
        self.assertPackageOf(module, self.make(module, python=None), "2.7")

    def test_it_is_the_same_whenever_and_wherever_it_is_made(self):
        first = self.make()
        os.remove(self.at("out", NAME))
        self.assertEqual(self.make(TZ="Pacific/Kiritimati", LC_ALL="C.UTF-8"), first)

    def test_its_times_can_be_chosen(self):
        self.assertPackageOf(os.environ["STOWLINE_MODULE"], self.make(SOURCE_DATE_EPOCH="1700000000"), PYTHON,
                             1700000000)

    def test_a_file_that_is_no_module_is_refused(self):
        for begin, elf_type in ((b"text", b"\3\0"), (b"\x7fELF", b"\1\0")):
            module = self.module_for(b"2.7", begin, elf_type)
            self.assertEqual(run(path("scripts", "package"), module, "mips32el", self.at("out")),
                             (1, "", "stage: no shared object: %s\n" % module))

    def test_a_directory_that_cannot_be_written_is_refused(self):
        module = self.module_for(b"2.7")
        for output in (module, os.path.join(module, "out"), ""):
            self.assertEqual(run(path("scripts", "package"), module, "mips32el", output),
                             (1, "", "package: cannot write into %s\n" % output))

    def test_what_makes_no_sense_is_refused(self):
        old = self.module_for(b"2.7")
        usage = "usage: scripts/package MODULE.so ARCHITECTURE OUTPUT_DIR [PYTHON_VERSION]"
        for words, status, message in [
                ([], 2, usage),
                ([old, "mips32el", self.at("out"), "2.7", "more"], 2, usage),
                ([self.at("none"), "mips32el", self.at("out")], 1, "stage: no module that can be read: " + self.at("none")),
                ([old, "mips 32", self.at("out")], 1, "package: no name of an architecture: mips 32"),
                ([old, "", self.at("out")], 1, "package: no name of an architecture: "),
                ([old, "mips32el", self.at("out"), "x"], 1, "stage: no version of the interpreter: x"),
                ([old, "mips32el", self.at("out"), "3.x"], 1, "stage: no version of the interpreter: 3.x"),
                ([old, "mips32el", self.at("out"), "2.7/.."], 1, "stage: no version of the interpreter: 2.7/.."),
                ([old, "mips32el", self.at("out"), "2.70"], 1, "stage: %s is not built for Python 2.70" % old),
                ([old, "mips32el", self.at("out"), "3.9"], 1, "stage: %s is not built for Python 3.9" % old)]:
            with self.subTest(words):
                self.assertEqual(run(path("scripts", "package"), *words), (status, "", message + "\n"))
                self.assertEqual(glob.glob(self.at("out", "*")), [])


class Installation(MadePackage):
    """On the stand-in receiver, by its package manager."""

    def setUp(self):
        super().setUp()
        self.enter = ["chroot"] if os.geteuid() == 0 else ["unshare", "--user", "--map-root-user", "chroot"]
        status, _, errors = run(*self.enter + ["/", "true"])
        if status != 0:
            self.skipTest("this machine lets nobody move into a tree: " + errors.strip())
        self.receiver = self.at("receiver")
        status, _, errors = run(os.environ["STOWLINE_COMMAND"], "receiver", "new", self.receiver)
        self.assertEqual((status, errors), (0, ""))

    def opkg(self, *words):
        return run(*self.enter + [self.receiver, "/usr/bin/opkg"] + list(words), umask=0o022,
                   env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin"})

    def install(self):
        with open(os.path.join(self.receiver, "tmp", NAME), "wb") as package:
            package.write(self.make())
        os.chmod(package.name, 0o600)
        return self.opkg("install", "/tmp/" + NAME)

    def installed(self):
        return re.findall("^stowline.*$", self.opkg("list-installed")[1], re.MULTILINE)

    def test_opkg_installs_and_removes_it(self):
        before = dict(below(self.receiver))
        self.assertEqual(self.install(), (
            0, "Installing stowline (%s) to root...\nConfiguring stowline.\n" % VERSION, ""))
        self.assertEqual(self.installed(), ["stowline - " + VERSION])
        records = [("var/lib/opkg/info/stowline.control", 0o644), ("var/lib/opkg/info/stowline.list", 0o644)]
        added = [entry for entry in below(self.receiver) if entry[0] not in before]
        self.assertEqual(added, sorted(files(PYTHON) + records + [("tmp/" + NAME, 0o600)]))
        with open(os.path.join(self.receiver, records[1][0])) as listed:
            self.assertEqual(listed.read().split(), ["/" + file for file, _ in files(PYTHON)])

        self.assertEqual(self.opkg("remove", "stowline"), (0, "Removing package stowline from root...\n", ""))
        self.assertEqual(self.installed(), [])
        os.remove(os.path.join(self.receiver, "tmp", NAME))
        self.assertEqual(dict(below(self.receiver)), before)

    def test_the_interpreter_finds_the_module_and_the_gui_its_translations(self):
        self.assertEqual(self.install()[0], 0)
        share = os.path.join(self.receiver, "usr/share/enigma2/stowline/locale")
        asked = block_of("docs/packagers.md", "gettext.translation(")
        self.assertEqual(asked.count("/usr/share/enigma2/stowline/locale"), 1)
        program = "\n".join([
            "import builtins",
            "import fakes",
            "Stowline = fakes.import_module()",
            "print(Stowline.__file__)",
            "for language in ('fr', 'de'):",
            "    builtins._ = lambda text: {'QOR Stowline': '<QOR Stowline>', 'Exit': '<Exit>'}.get(text, text)",
            re.sub("^", "    ", asked.replace("/usr/share/enigma2/stowline/locale", share), flags=re.MULTILINE),
            "    screen = Stowline.Stowline(fakes.Session(), '/plugin', 'restore')",
            "    print(screen.title)",
            "print(_('Ok'), _('Exit'), _('No text of ours'), repr(_('')))"])
        site = os.path.join(self.receiver, "usr/lib/python%s/site-packages" % PYTHON)
        status, output, errors = run(sys.executable, "-c", program, env=dict(
            os.environ, PYTHONPATH=os.pathsep.join([path("tests", "receiver", "framework"), site])))
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(output.splitlines(), [
            os.path.join(site, "Stowline.so"),
            "<QOR Stowline> (Restauration)",
            "<QOR Stowline> (Wiederherstellung)",
            "OK <Exit> No text of ours ''"])


class Recipe(PackagingTest):
    recipe = content("packaging", "stowline_git.bb")
    variables = {"PN": "stowline", "S": path(), "datadir": "/usr/share",
                 "PYTHON_SITEPACKAGES_DIR": "/usr/lib/python%s/site-packages" % PYTHON}

    def value(self, name):
        return re.search(r'^%s = "((?:[^"\\]|\\\n)*)"' % re.escape(name), self.recipe, re.MULTILINE).group(1)

    def test_it_installs_the_files_of_the_package_and_packs_them_all(self):
        body = re.search(r"^do_install\(\) \{\n(.*?)^\}", self.recipe, re.MULTILINE | re.DOTALL).group(1)
        os.symlink(os.environ["STOWLINE_MODULE"], self.at("Stowline.so"))
        status, _, errors = run("sh", "-euc", body, env=dict(
            os.environ, S=path(), B=self.directory, D=self.at("image"), PYTHON_BASEVERSION=PYTHON))
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(below(self.at("image")), files(PYTHON))
        packed = re.sub(r"\$\{(\w+)\}", lambda name: self.variables[name.group(1)],
                        self.value("FILES:${PN}")).replace("\\\n", " ").split()
        for file, _ in files(PYTHON):
            self.assertTrue(any(fnmatch.fnmatch("/" + file, pattern) or ("/" + file).startswith(pattern + "/")
                                for pattern in packed), file)

    def test_licence_and_version_are_those_of_the_sources(self):
        with open(path("LICENSE"), "rb") as licence:
            digest = hashlib.md5(licence.read()).hexdigest()
        self.assertEqual(self.value("LIC_FILES_CHKSUM"), "file://LICENSE;md5=" + digest)
        self.assertEqual(self.value("LICENSE"), "MIT")
        self.assertEqual(self.value("PV"), VERSION + "+git")


class Documentation(PackagingTest):
    text = content("docs", "packagers.md")

    def test_it_names_every_unit_and_name_that_the_import_binds(self):
        section = self.text.split("## What the image must have")[1].split("Also needed")[0]
        units = {unit: set(re.findall("`([^`]+)`", names))
                 for unit, names in re.findall(r"^\| `([\w.]+)` \| (.*) \|$", section, re.MULTILINE)}
        expected = {}
        for unit, name in found(r"from (\S+) import (\S+)", ["Load"]):
            expected.setdefault(unit, set()).add(name)
        self.assertEqual(expected.pop("builtins"), {"open", "OSError"})
        expected["Tools.Directories"] = {"resolveFilename", "SCOPE_PLUGINS", "fileExists"}
        self.assertEqual(units, expected)

    def test_it_names_every_picture(self):
        pictures = {picture for operations in FLOWS.values() for line in operations
                    for picture in re.findall(r'QORPanel/pictures/(\w+\.png)"', line)}
        pictures.update(re.findall(r"QORPanel/pictures/(\w+\.png)",
                                   content("plugin", "src", "StowlineHelpScreen.cpp")))
        self.assertEqual(set(re.findall(r"`(\w+\.png)`", self.text)), pictures)

    def test_it_names_every_file_of_the_package(self):
        named = self.text.replace("pythonX.Y", "python" + PYTHON)
        for file, _ in files(PYTHON):
            file = re.sub("locale/(de|fr)", "locale/LANG", file)
            self.assertTrue("`/%s`" % file in named or "`%s`" % os.path.basename(file) in named, file)

    def test_its_scheduled_backup_keeps_house_only_after_three_good_jobs(self):
        example = block_of("docs/packagers.md", "houseKeeping()")
        for results in [(True, 1, True), (True, False, True), (True, True, None)]:
            calls = []

            class BackupActions:
                def __init__(self, kind):
                    calls.append(kind)
                createSettingFile, createConfigFile, createPluginList = [
                    lambda self, result=result: result for result in results]
                houseKeeping = lambda self: calls.append("houseKeeping")

            exec(example.replace("from Stowline import BackupActions", ""), {"BackupActions": BackupActions})
            self.assertEqual(calls, ["auto"] + ["houseKeeping"] * (results == (True, 1, True)))


if __name__ == "__main__":
    unittest.main(verbosity=2)
