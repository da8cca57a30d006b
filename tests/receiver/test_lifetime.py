"""Screens come and go without a trace, and no use of one, however odd and whenever, ends the process.

What might end it runs in a process of its own. STOWLINE_ROUNDS tells how often a screen is opened.
"""

import gc
import os
import resource
import sys
import threading
import unittest
import weakref

from receiver_test import ReceiverTest, fakes, journal, stowline
from children import in_child
from flows import CONFIGURATION, DIRECTORY, INSTALLED, SETTINGS, finish_layout, full_path, press
from flows import lay_out_backups, lay_out_local_packages

ROUNDS = int(os.environ.get("STOWLINE_ROUNDS", "5000"))
WARMING = max(ROUNDS // 10, 250)
COLLECTED = 50         # rounds between two runs of the cycle collector
OBJECT_SLACK = 10      # objects that the interpreter itself may keep
BLOCK_SLACK = 400 + ROUNDS // 4  # its dictionaries settle slowly; a leak is at least one a round
MEMORY_SLACK = 1 << 19  # bytes that the allocators may keep: about 100 a round
SANITIZED = "asan" in os.environ.get("LD_PRELOAD", "")

CLASSES = [stowline.Screen, stowline.Label, stowline.StaticText, stowline.List, stowline.MenuList,
           stowline.ActionMap, stowline.NumberActionMap, stowline.ComConsole, stowline.IpkgComponent,
           stowline.MessageBox, stowline.ChoiceBox, stowline.Console, stowline.Ipkg,
           stowline.BackupActions, stowline.Stowline, stowline.StowlineRestore,
           stowline.StowlineHelpScreen]


def menu(session):
    return stowline.Stowline(session, "/plugin", "restore")


def restore_list(session):
    return stowline.StowlineRestore(session, "settingrestore", "/plugin")


def confirmation(session):
    return stowline.StowlineHelpScreen(session, CONFIGURATION, full_path(CONFIGURATION))


SCREENS = {"menu": menu, "restore_list": restore_list, "confirmation": confirmation}


def lay_out(receiver):
    lay_out_local_packages(receiver)
    lay_out_backups(receiver)
    receiver.add_file("/proc/mounts", lines=["x /media/hdd ext4\n"])


def use_menu(screen, session):
    finish_layout(screen)
    press(screen, "ok")
    session.answer(("/media/hdd", "/media/hdd", None))
    screen.restoretype = "installlocalplugin"
    screen.ipkgCallback(stowline.IpkgComponent.EVENT_DONE, None)
    screen.sub = screen.backupactions.createSettingFile
    press(screen, "red")


def use_restore_list(screen, session):
    press(screen, "ok")
    session.answer(True)
    press(screen, "yellow")
    session.answer(False)
    press(screen, "red")


def use_confirmation(screen, session):
    finish_layout(screen)
    press(screen, "green")
    press(screen, "red")


USES = {"menu": use_menu, "restore_list": use_restore_list, "confirmation": use_confirmation}


def resident_memory():
    with open("/proc/self/statm") as status:
        return int(status.read().split()[1]) * resource.getpagesize()


class Rounds(ReceiverTest):
    def setUp(self):
        super(Rounds, self).setUp()
        lay_out(self.receiver)

    def round(self, kind, session):
        screen = SCREENS[kind](session)
        session.current = screen
        USES[kind](screen, session)
        session.current = session.callback = None
        del session.opened[:]
        journal.take()

    def rounds(self, kind, count):
        session = fakes.Session()
        for number in range(count):
            self.round(kind, session)
            if number % COLLECTED == 0:
                gc.collect()
        gc.collect()

    def held(self, kind, count):
        """Returns what the process holds after so many rounds: objects, blocks, references, bytes."""
        self.rounds(kind, count)
        allocated_blocks = getattr(sys, "getallocatedblocks", lambda: 0)  # 2.7 does not count them
        return (len(gc.get_objects()), allocated_blocks(), [sys.getrefcount(each) for each in CLASSES],
                resident_memory())

    def leaves_nothing(self, kind):
        objects, blocks, references, memory = self.held(kind, WARMING)
        objects_then, blocks_then, references_then, memory_then = self.held(kind, ROUNDS)
        self.assertLessEqual(objects_then - objects, OBJECT_SLACK, "objects")
        self.assertLessEqual(blocks_then - blocks, BLOCK_SLACK, "blocks")
        self.assertEqual(references_then, references, "references to the module's classes")
        if not SANITIZED:  # the sanitizer keeps what is freed
            self.assertLessEqual(memory_then - memory, MEMORY_SLACK, "bytes")


for _kind in SCREENS:
    setattr(Rounds, "test_opening_and_closing_a_%s_leaves_nothing" % _kind,
            lambda self, kind=_kind: self.leaves_nothing(kind))


class Release(ReceiverTest):
    def setUp(self):
        super(Release, self).setUp()
        lay_out(self.receiver)

    def opened(self, kind):
        screen = SCREENS[kind](self.session)
        USES[kind](screen, self.session)
        self.session.callback = None
        del self.session.opened[:]
        return screen

    def test_a_closed_screen_is_freed_at_once(self):
        gc.disable()
        try:
            for kind in SCREENS:
                released = []
                for _ in range(500):
                    screen = self.opened(kind)
                    screen.doClose()
                    released.append(weakref.ref(screen))
                    del screen
                    journal.take()
                self.assertEqual([each for each in released if each() is not None], [], kind)
        finally:
            gc.enable()

    def test_a_screen_in_its_cycles_is_freed_by_the_collector(self):
        for kind in SCREENS:
            released = weakref.ref(self.opened(kind))
            gc.collect()
            self.assertIsNone(released(), kind)

    def test_a_bound_method_keeps_its_screen(self):
        for kind, name in (("menu", "keyCancel"), ("restore_list", "keyCancel"),
                           ("confirmation", "keyClose")):
            method = getattr(SCREENS[kind](self.session), name)
            gc.collect()
            journal.take()
            method()
            self.assertEqual(len(journal.take()), 1)

    def test_a_failed_construction_is_freed(self):
        for kind in SCREENS:
            journal.take()
            SCREENS[kind](self.session)
            operations = len(journal.take())
            for index in range(operations):
                error = OverflowError("at %d" % index)
                created = []
                journal.fail_at(index, error)
                self.raised(self.construct, kind, created)
                journal.take()
                forget_traceback(error)
                gc.collect()
                self.assertIsNone(created[0](), "%s at %d" % (kind, index))

    def construct(self, kind, created):
        """Constructs a screen that is known before its constructor returns, or fails."""
        arguments = {"menu": (self.session, "/plugin", "restore"),
                     "restore_list": (self.session, "settingrestore", "/plugin"),
                     "confirmation": (self.session, "a", "/a")}[kind]
        base = {"menu": stowline.Stowline, "restore_list": stowline.StowlineRestore,
                "confirmation": stowline.StowlineHelpScreen}[kind]
        screen = base.__new__(base)
        created.append(weakref.ref(screen))
        screen.__init__(*arguments)


def forget_traceback(error):
    """Lets go of the frames that an error went through, and of what they hold."""
    error.__traceback__ = error.__context__ = None
    if hasattr(sys, "exc_clear"):
        sys.exc_clear()


class Survival(ReceiverTest):
    """Each test runs in a process of its own, and passes when that comes to its end."""

    def setUp(self):
        super(Survival, self).setUp()
        lay_out(self.receiver)

    def survives(self, use, *arguments):
        return in_child(use, *arguments)

    def each(self, use, table):
        failures = []
        for row in table:
            try:
                self.survives(use, *row)
            except AssertionError as failure:
                failures.append("%s: %s" % (row, failure))
        if failures:
            self.fail("\n".join(failures))

    def test_deleting_any_attribute_ends_nothing(self):
        self.each(self.delete_attribute, [(kind,) for kind in SCREENS])

    def delete_attribute(self, kind):
        for name in sorted(vars(SCREENS[kind](self.session))):
            screen = SCREENS[kind](self.session)
            delattr(screen, name)
            self.raised(USES[kind], screen, self.session)

    def test_a_finalizer_may_use_a_screen_whose_construction_fails(self):
        self.each(self.finalize_in_failed_construction, [(kind,) for kind in SCREENS])

    def finalize_in_failed_construction(self, kind):
        arguments = {"menu": (self.session, "/plugin"), "restore_list": (self.session, "settingrestore", "/plugin"),
                     "confirmation": (self.session, "a", "/a")}[kind]
        base = type(SCREENS[kind](self.session))

        class Watched(base):
            def __setitem__(self, key, component):
                component.watcher = Watcher(self)
                base.__setitem__(self, key, component)

        class Watcher(object):
            def __init__(self, screen):
                self.screen = screen

            def __del__(self):
                for name in sorted(vars(self.screen)) + ["path", "restoretype"]:
                    getattr(self.screen, name, None)

        class Refusing(list):
            def append(self, hook):
                raise KeyError("no hooks")

        for index in range(40):
            screen = Watched.__new__(Watched)
            journal.fail_at(index, OverflowError("at %d" % index))
            self.raised(screen.__init__, *arguments)
            journal.take()
            del screen
            gc.collect()

    def test_a_hook_may_take_the_engine_away_during_construction(self):
        self.survives(self.take_engine_away)

    def take_engine_away(self):
        class Without(stowline.Stowline):
            def __setitem__(self, key, component):
                self.backupactions = None
                stowline.Stowline.__setitem__(self, key, component)

        screen = Without(self.session, "/plugin")
        screen["menu"].entries = [("settingbackup",)]
        assert isinstance(self.raised(screen.runMenuEntry), AttributeError)

    # Operations of several threads in one screen, which wait where they call the framework.

    def test_operations_of_several_threads_may_end_in_any_order(self):
        self.survives(self.end_in_any_order)

    def end_in_any_order(self):
        screen = menu(self.session)
        screen["menu"].entries = [("settingbackup",)]
        first_waits, second_waits, first_is_done = (threading.Event() for _ in range(3))

        class Engine(object):
            def createSettingFile(self):
                if not first_waits.is_set():
                    first_waits.set()
                    second_waits.wait(10)
                else:
                    second_waits.set()
                    first_is_done.wait(10)
                return True

        def first():
            screen.runMenuEntry()
            first_is_done.set()

        def second():
            first_waits.wait(10)
            screen.runMenuEntry()

        screen.backupactions = Engine()
        threads = [threading.Thread(target=use) for use in (first, second)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        texts = [arguments[0] for _, arguments, _ in self.session.opened]
        assert texts == ["Settings backup finished succesfully"] * 2, texts

    # What the framework's closing takes away.

    def test_a_callback_after_closing_finds_no_attribute(self):
        self.each(self.call_after_closing, [("menu",), ("restore_list",)])

    def call_after_closing(self, kind):
        screen = SCREENS[kind](self.session)
        callback = screen.ipkg.callbacks[0]
        screen.doClose()
        journal.take()
        assert isinstance(self.raised(callback, stowline.IpkgComponent.EVENT_DONE, None), AttributeError)
        assert journal.take() == []

    # Resurrection, threads of calls without an end, answers without a bottom.

    def test_a_screen_may_come_back_to_life(self):
        self.each(self.resurrect, [(kind,) for kind in SCREENS])

    def resurrect(self, kind):
        base = type(SCREENS[kind](self.session))
        living = []

        class Undead(base):
            def __del__(self):
                if len(living) < 3:
                    living.append(self)

        arguments = {"menu": ("/plugin", "restore"), "restore_list": ("settingrestore", "/plugin"),
                     "confirmation": (CONFIGURATION, full_path(CONFIGURATION))}[kind]
        for _ in range(3):
            screen = Undead(self.session, *arguments)
            screen.doClose()
            del screen
        gc.collect()
        assert len(living) == 3, living
        for screen in living:
            assert screen.__class__ is Undead
            screen.__init__(self.session, *arguments)
            USES[kind](screen, self.session)
        del screen, living[:]
        gc.collect()

    def test_operations_without_an_end_run_into_the_interpreters_limit(self):
        self.each(self.recur, [("system",), ("listdir",), ("_",), ("answer",)])

    def recur(self, how):
        engine = stowline.BackupActions()
        screen = restore_list(self.session)

        class Answer(object):
            def __eq__(self, other):
                return screen.startDelete(self)

        stowline.system = lambda command: screen.restoreSettings()
        stowline.listdir = engine.listdir_fullpath
        use = {"system": screen.restoreSettings, "listdir": lambda: engine.listdir_fullpath("/"),
               "answer": lambda: screen.startDelete(Answer()), "_": screen.deleteFile}[how]
        if how == "_":
            fakes.builtins._ = lambda text: screen.deleteFile()
        error = self.raised(use)
        assert isinstance(error, RuntimeError), error

    def test_operations_without_an_end_stop_in_a_thread_with_a_small_stack_too(self):
        self.survives(self.recur_in_thread)

    def recur_in_thread(self):
        errors = []
        screen = restore_list(self.session)
        stowline.system = lambda command: screen.restoreSettings()
        threading.stack_size(256 * 1024)
        thread = threading.Thread(target=lambda: errors.append(self.raised(screen.restoreSettings)))
        thread.start()
        thread.join()
        assert isinstance(errors[0], RuntimeError), errors

    def test_an_answer_may_contain_itself(self):
        self.survives(self.answer_with_itself, 1)

    def test_an_answer_may_contain_itself_many_times(self):
        self.survives(self.answer_with_itself, 2000)

    def answer_with_itself(self, times):
        if SANITIZED:
            times = min(times, 20)
        else:
            resource.setrlimit(resource.RLIMIT_AS, (1 << 30, 1 << 30))
        answer = []
        answer.extend([answer] * times)
        screen = restore_list(self.session)
        screen.startDelete(answer)
        screen.runScript((answer, answer))
        screen.keyCancel(answer)
        screen.sel = answer
        assert screen.sel
        main = menu(self.session)
        main.list = answer
        main.runMenuEntry(answer)
        del main.list[:]
        self.raised(main.backuprestorepath_choosen, answer)

    def test_widgets_may_return_anything(self):
        self.each(self.odd_rows, [("list",), ("tuple",), ("number",), ("object",), ("none",)])

    def odd_rows(self, kind):
        row = {"list": [], "tuple": ((), ()), "number": 1 << 70, "object": object(), "none": None}[kind]
        screen = restore_list(self.session)
        screen["filelist"].rows = [row]
        self.raised(screen.KeyOk)
        self.raised(screen.deleteFile)
        main = menu(self.session)
        main["menu"].entries = [row]
        self.raised(main.runMenuEntry)


if __name__ == "__main__":
    unittest.main()
