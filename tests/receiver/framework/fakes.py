"""The receiver in memory behind the stand-in framework: its files, its clock, its shell, its session.

The functions that take the place of the operating system's are put there only while the module is
loaded: the module binds what it finds then.
"""

import errno
import os
import time

from journal import bracketed, described, note, quoted

try:
    import builtins
except ImportError:
    import __builtin__ as builtins


def missing(path):
    return OSError(errno.ENOENT, "No such file or directory", path)


def parent_of(path):
    return path.rsplit("/", 1)[0]


def name_of(path):
    return path.rsplit("/", 1)[1]


class Receiver(object):
    """Files and directories, what commands print, and what the user has set."""

    def __init__(self):
        self.files = {}
        self.directories = {}
        self.outputs = {}
        self.translations = {}
        self.model = "solo2"
        self.now = time.struct_time((2024, 3, 5, 7, 4, 0, 1, 65, 0))

    def add_directory(self, path, names=()):
        self.directories[path] = list(names)

    def add_file(self, path, size=0, lines=()):
        listing = self.directories.get(parent_of(path))
        if listing is not None and name_of(path) not in listing:
            listing.append(name_of(path))
        self.files[path] = (size, list(lines))

    def has(self, path):
        return path in self.files or path in self.directories

    def file(self, path):
        if path not in self.files:
            raise missing(path)
        return self.files[path]


receiver = Receiver()


class Lines(object):
    """A file object that is read by lines. It counts among the open files until it is closed."""
    open_files = []

    def __init__(self, lines):
        self.lines = lines
        self.open_files.append(self)

    def readlines(self):
        return list(self.lines)

    def close(self):
        self.open_files.remove(self)


def system(command):
    note("os.system(%s)" % quoted(command))
    return 0


def popen(command):
    note("os.popen(%s).readlines()" % quoted(command))
    return Lines(receiver.outputs.get(command, []))


def open_file(path):
    note("open(%s)" % quoted(path))
    return Lines(receiver.file(path)[1])


def listdir(path):
    note("os.listdir(%s)" % quoted(path))
    if path not in receiver.directories:
        raise missing(path)
    return list(receiver.directories[path])


def makedirs(path):
    note("os.makedirs(%s)" % quoted(path))
    receiver.add_directory(path)


def remove(path):
    note("os.remove(%s)" % quoted(path))
    receiver.file(path)
    del receiver.files[path]
    listing = receiver.directories.get(parent_of(path))
    if listing is not None:
        listing.remove(name_of(path))


def chmod(path, mode):
    note("os.chmod(%s, 0%o)" % (quoted(path), mode))
    if not receiver.has(path):
        raise missing(path)


def localtime():
    note("localtime()")
    return receiver.now


class Path(object):
    @staticmethod
    def exists(path):
        note("os_path.exists(%s)" % quoted(path))
        return receiver.has(path)

    @staticmethod
    def join(directory, name):
        note("os_path.join(%s, %s)" % (quoted(directory), quoted(name)))
        return directory + ("" if directory.endswith("/") else "/") + name


class Status(object):
    def __init__(self, path):
        self.path = path

    @property
    def st_size(self):
        note("os_stat(%s).st_size" % quoted(self.path))
        return receiver.file(self.path)[0]


class Dialog(object):
    def setTitle(self, title):
        note("dialog.setTitle(%s)" % quoted(title))


COMMANDS = {0: "CMD_INSTALL", 3: "CMD_UPDATE"}


def described_commands(commands):
    return "[%s]" % ", ".join(
        "(%s, {%s})" % (COMMANDS[command],
                        ", ".join("%s: %s" % (quoted(key), quoted(options[key])) for key in options))
        for command, options in commands)


KEYWORDS = ["title", "list", "cmdlist", "cmdList", "timeout"]


def described_arguments(screen, args, keywords):
    parts = [screen.__name__]
    if screen.__name__ == "MessageBox":
        parts += [quoted(args[0])] + [{1: "TYPE_INFO", 3: "TYPE_ERROR"}[kind] for kind in args[1:]]
    else:
        parts += [described(argument) for argument in args]
    for name in sorted(keywords, key=KEYWORDS.index):
        value = keywords[name]
        text = (described_commands(value) if name == "cmdList" else
                bracketed(value) if isinstance(value, list) else described(value))
        parts.append("%s=%s" % (name, text))
    return ", ".join(parts)


class Session(object):
    """Opens nothing: it keeps what was opened, and the test answers. A dialog that is answered closes later, when the
    event has been handled: only then its result is handed on."""

    def __init__(self):
        self.opened = []
        self.callback = None
        self.closing = []

    def open(self, screen, *args, **keywords):
        note("session.open(%s)" % described_arguments(screen, args, keywords))
        self.opened.append((screen, args, keywords))
        return Dialog()

    def openWithCallback(self, callback, screen, *args, **keywords):
        note("session.openWithCallback(%s, %s)" % (
            callback.__name__, described_arguments(screen, args, keywords)))
        self.opened.append((screen, args, keywords))
        self.callback = callback
        return Dialog()

    def close(self, *result):
        callback, self.callback = self.callback, None
        self.closing.append((callback, result))

    def settle(self):
        while self.closing:
            callback, result = self.closing.pop(0)
            callback(*result)

    def answer(self, *result):
        self.close(*result)
        self.settle()


class Log(object):
    """Standard output while the module runs."""

    def __init__(self):
        self.pending = ""

    def write(self, text):
        self.pending += text
        while "\n" in self.pending:
            line, self.pending = self.pending.split("\n", 1)
            note("print(%s)" % quoted(line))

    def flush(self):
        pass


def translate(text):
    note("_(%s)" % quoted(text))
    return receiver.translations.get(text, text)


builtins._ = translate

REPLACED = [
    (os, "system", system), (os, "popen", popen), (os, "listdir", listdir),
    (os, "makedirs", makedirs), (os, "remove", remove), (os, "chmod", chmod),
    (os, "stat", Status), (os, "path", Path), (time, "localtime", localtime),
    (builtins, "open", open_file),
]


def import_module():
    """Loads the module with everything of the operating system replaced; returns it."""
    former = [(unit, name, getattr(unit, name)) for unit, name, _ in REPLACED]
    try:
        for unit, name, fake in REPLACED:
            setattr(unit, name, fake)
        return __import__("Stowline")
    finally:
        for unit, name, real in former:
            setattr(unit, name, real)
