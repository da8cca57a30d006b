"""Errors of the framework reach the caller as the objects that were raised, whatever they are and however
deep; what is said in the log never stops what is being done."""

import codecs
import io
import sys
import traceback
import unittest

from receiver_test import ReceiverTest, fakes, journal, stowline
from children import in_child
from flows import CONFIGURATION, DIRECTORY, SETTINGS, full_path, lay_out_backups, press

EVENT_ERROR = stowline.IpkgComponent.EVENT_ERROR


class Odd(Exception):
    """An exception of a kind that nothing expects."""


class Mute(Exception):
    """An exception that has no text, no number, and says so."""

    @property
    def errno(self):
        raise KeyError("errno")

    def __str__(self):
        raise KeyError("str")


class Loud(Exception):
    """An exception whose parts are not what they should be."""
    errno = 1 << 70

    def __str__(self):
        return u"\udcff" if sys.version_info >= (3,) else "\xff"


class OldStyle:
    """On 2.7 whatever has a class can be raised."""


UNUSUAL = [KeyboardInterrupt(), SystemExit(3), GeneratorExit(), MemoryError(), StopIteration(), Mute(),
           Loud(), UnicodeDecodeError("utf-8", b"\xff", 0, 1, "reason"), OSError("text", "text"), Exception()]


class ErrorTest(ReceiverTest):
    def setUp(self):
        super(ErrorTest, self).setUp()
        lay_out_backups(self.receiver)
        self.replaced = []

    def tearDown(self):
        for name, original in self.replaced:
            setattr(stowline, name, original)
        super(ErrorTest, self).tearDown()

    def replace(self, name, replacement):
        self.replaced.append((name, getattr(stowline, name)))
        setattr(stowline, name, replacement)

    def failing(self, error):
        def fail(*arguments):
            raise error
        return fail

    def raised(self, call, *arguments, **keywords):
        """Also returns what is no Exception."""
        try:
            call(*arguments, **keywords)
        except BaseException as error:
            return error
        return None

    def screens(self):
        return [stowline.Stowline(self.session, "/plugin", "restore"),
                stowline.StowlineRestore(self.session, "plugininstall", "/plugin")]


class FailedUpdate(ErrorTest):
    def test_a_failed_update_misses_set_status(self):
        for screen in self.screens():
            journal.take()
            for call in [screen.ipkgCallback] + screen.ipkg.callbacks:
                error = self.raised(call, EVENT_ERROR, "param")
                self.assertIs(type(error), AttributeError)
                self.assertIn("setStatus", str(error))
            self.assertEqual(journal.take(), [])
            self.assertEqual(self.session.opened, [])

    def test_a_failed_update_calls_the_set_status_of_a_sub_class(self):
        for base, kind in ((stowline.Stowline, "restore"), (stowline.StowlineRestore, "plugininstall")):
            class WithStatus(base):
                def setStatus(self, *arguments):
                    self.status = arguments

            arguments = (kind, "/plugin") if base is stowline.StowlineRestore else ("/plugin", kind)
            screen = WithStatus(self.session, *arguments)
            screen.ipkgCallback(EVENT_ERROR, None)
            self.assertEqual(screen.status, ("error",))

    def test_an_error_of_set_status_is_the_callers(self):
        for screen in self.screens():
            error = Odd("odd")
            screen.setStatus = self.failing(error)
            self.assertIs(self.raised(screen.ipkgCallback, EVENT_ERROR, None), error)


class Identity(ErrorTest):
    def uses(self):
        """Operations that begin with an operation of the framework, and where that is bound."""
        engine = stowline.BackupActions()
        restore = stowline.StowlineRestore(self.session, "settingrestore", "/plugin")
        restore.sel, restore.val = SETTINGS, full_path(SETTINGS)
        screen = stowline.StowlineHelpScreen(self.session, CONFIGURATION, full_path(CONFIGURATION))
        return [("system", engine.createSettingFile), ("system", engine.createConfigFile),
                ("system", engine.createPluginList), ("system", restore.restoreSettings),
                ("system", screen.keyGo), ("listdir", engine.houseKeeping), ("listdir", restore.fill_list),
                ("fileExists", engine.saveAtileUserFiles), ("chmod", lambda: restore.runScript(True)),
                ("remove", lambda: restore.startDelete(True)), ("popen", restore.installPlugins),
                ("localtime", stowline.getDateTime), ("localtime", stowline.BackupActions)]

    def test_every_kind_of_error_arrives_as_it_was_raised(self):
        for name, use in self.uses():
            for error in UNUSUAL + [Odd("odd")]:
                self.replace(name, self.failing(error))
                raised = self.raised(use)
                setattr(stowline, *self.replaced.pop())
                self.assertIs(raised, error, (name, use, error))

    @unittest.skipIf(sys.version_info >= (3,), "only 2.7 raises such objects")
    def test_an_error_of_an_old_style_class_arrives_as_it_was_raised(self):
        self.assertTrue(in_child(self.raise_old_style))

    def raise_old_style(self):
        error = OldStyle()
        self.replace("system", self.failing(error))
        try:
            stowline.BackupActions().createSettingFile()
        except OldStyle as raised:
            return raised is error

    def test_guards_catch_every_kind_of_error(self):
        for error in UNUSUAL:
            self.replace("makedirs", self.failing(error))
            self.receiver.directories.clear()
            self.assertIsNone(stowline.getBackupRestorePath())
            nimmanager = type("Nim", (), {"readTransponders": lambda self: fail()})()
            fail = self.failing(error)
            self.replace("nimmanager", nimmanager)
            restore = stowline.StowlineRestore(self.session, "settingrestore", "/plugin")
            self.assertIs(restore.restoreSettings(), False)
            for name, original in reversed(self.replaced):
                setattr(stowline, name, original)
            del self.replaced[:]

    def test_what_is_caught_is_let_go(self):
        error = Odd("odd")
        self.replace("makedirs", self.failing(error))
        self.receiver.directories.clear()
        references = sys.getrefcount(error)
        for _ in range(100):
            self.assertIsNone(stowline.getBackupRestorePath())
        error.__traceback__ = None
        self.assertLess(sys.getrefcount(error), references + 10)

    def test_an_error_is_not_asked_what_it_says_of_itself(self):
        asked = []

        class Asked(Exception):
            errno = property(lambda self: asked.append("errno"))

            def __str__(self):
                asked.append("str")
                return ""

        self.replace("system", self.failing(Asked()))
        self.assertIsInstance(self.raised(stowline.BackupActions().createSettingFile), Asked)
        self.assertEqual(asked, [])

    def test_a_file_is_closed_and_its_error_is_the_callers_unless_reading_failed(self):
        closing, reading, closed = Odd("closing"), Odd("reading"), []

        class File(object):
            def __init__(self, error):
                self.error = error

            def readlines(self):
                if self.error:
                    raise self.error
                return []

            def close(self):
                closed.append(self.error)
                raise closing

        self.receiver.add_file("/list")
        for error, expected in ((None, closing), (reading, reading)):
            self.replace("open", lambda path: File(error))
            raised = self.raised(stowline.BackupActions().saveUserFiles, "/list", ["/"], [])
            self.assertIs(raised, expected)
        self.assertEqual(closed, [None, reading])

    def test_an_error_of_the_skin_path_is_the_callers(self):
        error = Odd("skin_path")

        class Failing(stowline.Stowline):
            skin_path = property(lambda self: self.failing(), lambda self, path: None)

            def failing(self):
                raise error

        main = Failing(self.session, "/plugin")
        main["menu"].entries = [("settingrestore",)]
        self.assertIs(self.raised(main.runMenuEntry), error)

    def test_what_an_error_carries_is_kept(self):
        error = OSError(28, "No space left on device", "/x")
        error.extra = extra = object()
        self.replace("system", self.failing(error))
        raised = self.raised(stowline.BackupActions().createSettingFile)
        self.assertEqual((raised.errno, raised.filename, raised.args[:2]), (28, "/x", (28, error.strerror)))
        self.assertIs(raised.extra, extra)

    @unittest.skipIf(sys.version_info < (3,), "2.7 knows neither causes nor contexts")
    def test_causes_and_contexts_are_kept(self):
        cause, context = Odd("cause"), Odd("context")
        error = Odd("odd")
        error.__cause__, error.__context__ = cause, context
        self.replace("system", self.failing(error))
        raised = self.raised(stowline.BackupActions().createSettingFile)
        self.assertIs(raised.__cause__, cause)
        self.assertIs(raised.__context__, context)


class Nested(ErrorTest):
    """The framework calls the module, which calls the framework, which calls the module ..."""

    def fail_in_the_middle(self, error):
        def innermost(command):
            raise error

        class Engine(stowline.BackupActions):
            def createSettingFile(self):
                return super(Engine, self).createSettingFile()

        class Session(fakes.Session):
            def open(self, screen, *arguments, **keywords):
                engine.createSettingFile()

        self.replace("system", innermost)
        engine = Engine()
        restore = stowline.StowlineRestore(Session(), "configrestore", "/plugin")
        return lambda: press(restore, "ok")

    def test_an_error_is_the_same_object_through_every_layer(self):
        error = Odd("odd")
        self.assertIs(self.raised(self.fail_in_the_middle(error)), error)

    def test_the_traceback_tells_every_layer_of_python_code(self):
        use = self.fail_in_the_middle(Odd("odd"))
        try:
            use()
        except Odd:
            names = [entry[2] for entry in traceback.extract_tb(sys.exc_info()[2])]
        names = [name for name in names if name not in ("<lambda>", "press")]
        self.assertEqual(names, ["test_the_traceback_tells_every_layer_of_python_code", "open",
                                 "createSettingFile", "innermost"])

    def test_an_error_may_be_caught_between_the_layers(self):
        class Engine(stowline.BackupActions):
            def createSettingFile(self):
                try:
                    return super(Engine, self).createSettingFile()
                except Odd:
                    return True

        self.replace("system", self.failing(Odd("odd")))
        main = stowline.Stowline(self.session, "/plugin")
        main.backupactions = Engine()
        main["menu"].entries = [("settingbackup",)]
        main.runMenuEntry()
        self.assertEqual(self.session.opened[-1][1][0], "Settings backup finished succesfully")


class AsciiStream(object):
    """Takes texts that are ASCII, as the log of a receiver without a locale."""

    def __init__(self, error=None):
        self.text = u""
        self.error = error

    def write(self, text):
        if self.error:
            raise self.error
        line = text if isinstance(text, type(u"")) else text.decode("ascii")
        line.encode("ascii")
        self.text += line


NAMES = ["settings_%s_solo2.auto.tar.gz" % each for each in ("5", "4", "3", u"2\xe4", "1")]
if sys.version_info < (3,):
    NAMES = [name.encode("utf-8") for name in NAMES]
LINE = "[Qor Stowline] Housekeeping --> remove file "


class Log(ErrorTest):
    def setUp(self):
        super(Log, self).setUp()
        self.receiver.add_directory(DIRECTORY)
        for name in NAMES:
            self.receiver.add_file(full_path(name))

    def tidy(self, stream):
        """Tidies up with `stream` for the log. Returns what is left."""
        engine = stowline.BackupActions("auto")
        former, sys.stdout = sys.stdout, stream
        try:
            engine.houseKeeping()
        finally:
            sys.stdout = former
        return sorted(self.receiver.directories[DIRECTORY])

    def test_a_line_that_cannot_be_encoded_stops_nothing(self):
        stream = AsciiStream()
        self.assertEqual(self.tidy(stream), sorted(NAMES[:3]))
        self.assertIn(LINE + full_path(NAMES[4]), stream.text)

    def test_a_line_that_a_stream_of_the_library_cannot_encode_stops_nothing(self):
        content = io.BytesIO()
        if sys.version_info < (3,):
            stream = codecs.getwriter("ascii")(content)
        else:
            stream = io.TextIOWrapper(content, "ascii")
        self.assertEqual(self.tidy(stream), sorted(NAMES[:3]))
        stream.flush()
        self.assertIn((LINE + full_path(NAMES[4]) + "\n").encode("ascii"), content.getvalue())

    def test_a_line_goes_to_the_stream_of_the_moment(self):
        for stream in (fakes.Log(), fakes.Log()):
            self.setUp()
            self.tidy(stream)
            lines = [line for line in journal.take() if line.startswith("print")]
            self.assertEqual(len(lines), 2)

    def test_no_stream_at_all_stops_nothing(self):
        self.assertEqual(self.tidy(None), sorted(NAMES[:3]))

    def test_any_other_error_of_the_stream_is_the_callers(self):
        for error in (Odd("odd"), KeyboardInterrupt(), ValueError("closed"), OSError(28, "full")):
            self.setUp()
            self.assertIs(self.raised(self.tidy, AsciiStream(error)), error)
            self.assertEqual(len(self.receiver.directories[DIRECTORY]), len(NAMES) - 1)

    def test_a_stream_that_cannot_write_is_the_callers_error(self):
        self.assertIsInstance(self.raised(self.tidy, object()), AttributeError)


if __name__ == "__main__":
    unittest.main()
