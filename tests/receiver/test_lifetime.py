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


def remove(screen):
    """Takes a screen out of its own cycles, as a framework does that is done with it."""
    screen.clear()
    del screen.onLayoutFinish[:]
    if hasattr(screen, "ipkg"):
        del screen.ipkg.callbacks[:]


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

    def test_a_screen_out_of_its_cycles_is_freed_at_once(self):
        gc.disable()
        try:
            for kind in SCREENS:
                screen = self.opened(kind)
                remove(screen)
                screen.sub = None
                released = weakref.ref(screen)
                del screen
                self.assertIsNone(released(), kind)
        finally:
            gc.enable()

    def test_a_screen_in_its_cycles_is_freed_by_the_collector(self):
        for kind in SCREENS:
            released = weakref.ref(self.opened(kind))
            gc.collect()
            self.assertIsNone(released(), kind)

    def holding(self, kind, attribute, form):
        """A screen that holds a thing which holds the screen. Returns both."""
        screen, thing = SCREENS[kind](self.session), Thing()
        thing.screen = screen
        setattr(screen, attribute, form(thing))
        return screen, thing

    def test_a_cycle_through_an_attribute_is_freed_by_the_collector(self):
        for kind, attribute in HOLDING:
            for form in FORMS.get(attribute, [plainly]):
                released = list(map(weakref.ref, self.holding(kind, attribute, form)))
                gc.collect()
                self.assertEqual([each() for each in released], [None, None], attribute)

    def test_what_others_hold_too_outlives_the_screen(self):
        for kind, attribute in HOLDING:
            screen, thing = self.holding(kind, attribute, FORMS.get(attribute, [plainly])[0])
            held = getattr(screen, attribute)
            released = weakref.ref(screen)
            del screen
            thing.screen = None
            gc.collect()
            self.assertIsNone(released(), attribute)
            self.assertIs(held[0] if attribute == "list" else held, thing)
            self.assertIs(thing.createSettingFile(), True)

    def test_an_attribute_lives_as_long_as_its_screen(self):
        screen = menu(self.session)
        engine = weakref.ref(screen.backupactions)
        gc.collect()
        self.assertIs(engine(), screen.backupactions)
        screen.backupactions = None
        gc.collect()
        self.assertIsNone(engine())

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


class Thing(object):
    """Anything, with the three jobs."""

    def createSettingFile(self):
        return True

    createConfigFile = createPluginList = createSettingFile


# The attributes that hold what the caller gives them.
HOLDING = [("menu", "ipkg"), ("menu", "Console"), ("menu", "backupactions"), ("menu", "list"),
           ("restore_list", "sel"), ("restore_list", "val"), ("restore_list", "ipkg"),
           ("restore_list", "Console")]


def plainly(thing):
    return thing


def in_a_list(thing):
    return [thing]


def in_a_row(thing):
    return [("row", thing)]


def deep(thing):
    return [[[[[[[thing]]]]]]]


# How they may hold it, where that is not plainly.
FORMS = {"list": [in_a_list, in_a_row, deep], "sel": [plainly, in_a_row, deep], "val": [plainly, in_a_row]}


def call_with_enough(operation):
    """Calls an operation with as many arguments as it takes."""
    return operation(*{"ipkgCallback": (10, None), "backuprestorepath_choosen": (None,)}.get(
        operation.__name__, ()))


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

    # Deletion and missing state.

    def test_deleting_any_attribute_ends_nothing(self):
        self.each(self.delete_attribute, [(kind,) for kind in SCREENS])

    def delete_attribute(self, kind):
        names = [name for name in dir(type(SCREENS[kind](self.session))) if not name.startswith("__")]
        for name in names + ["_stowline", "session", "title", "skin_path", "onLayoutFinish"]:
            screen = SCREENS[kind](self.session)
            self.raised(delattr, screen, name)
            self.raised(getattr, screen, name)
            self.raised(USES[kind], screen, self.session)

    def test_nothing_can_be_used_before_the_constructor(self):
        self.each(self.use_before_construction, [(kind,) for kind in SCREENS])

    def use_before_construction(self, kind):
        cls = type(SCREENS[kind](self.session))
        others = [SCREENS[other](self.session) for other in SCREENS if other != kind]
        for state in [None, Thing(), {}] + [other._stowline for other in others]:
            screen = cls.__new__(cls)
            if state is not None:
                screen._stowline = state
            self.assert_unusable(cls, screen)

    def assert_unusable(self, cls, screen):
        for name in sorted(vars(cls)):
            if name.startswith("__") or name == "skin":
                continue
            found = self.raised(getattr, screen, name)
            if found is None:
                found = self.raised(call_with_enough, getattr(screen, name))
            assert isinstance(found, (AttributeError, TypeError)), (name, found)

    def test_an_operation_ends_without_the_internal_state_that_it_began_with(self):
        self.each(self.delete_state_meanwhile, [(kind,) for kind in SCREENS])

    def delete_state_meanwhile(self, kind):
        screen = SCREENS[kind](self.session)

        def delete_state(*arguments):
            self.raised(delattr, screen, "_stowline")

        stowline.system = stowline.fileExists = delete_state
        translate = fakes.builtins._
        fakes.builtins._ = lambda text: delete_state() or translate(text)
        self.raised(USES[kind], screen, self.session)
        gc.collect()
        assert isinstance(self.raised(USES[kind], screen, self.session), AttributeError)

    def test_a_constructor_may_run_again_while_an_operation_runs(self):
        self.each(self.construct_meanwhile, [(kind,) for kind in SCREENS])

    def construct_meanwhile(self, kind):
        screen = SCREENS[kind](self.session)
        arguments = {"menu": (self.session, "/other"), "confirmation": (self.session, "b", "/b"),
                     "restore_list": (self.session, "settingrestore", "/other")}[kind]
        translate = fakes.builtins._

        def translate_once(text):
            fakes.builtins._ = translate
            screen.__init__(*arguments)
            gc.collect()
            return text

        fakes.builtins._ = translate_once
        self.raised(USES[kind], screen, self.session)
        USES[kind](screen, self.session)

    def test_a_constructor_may_run_again_while_it_runs(self):
        self.survives(self.construct_within_construction)

    def construct_within_construction(self):
        test = self

        class Again(stowline.StowlineRestore):
            left = 3

            def fill_list(self):
                self.left -= 1
                if self.left > 0:
                    self.__init__(fakes.Session(), "personalscript", "/plugin")
                    test.raised(delattr, self, "_stowline")
                    gc.collect()

        screen = Again(self.session, "settingrestore", "/plugin")
        assert isinstance(self.raised(getattr, screen, "restoretype"), AttributeError)
        screen.__init__(self.session, "settingrestore", "/plugin")
        assert screen.restoretype == "settingrestore"

    # What runs while an attribute changes.

    def test_what_an_attribute_gives_up_may_use_the_attribute(self):
        self.each(self.use_attribute_when_given_up,
                  [(kind, attribute, use) for kind, attribute in HOLDING for use in ("get", "set")])

    def use_attribute_when_given_up(self, kind, attribute, use):
        screen = SCREENS[kind](self.session)

        class Dropped(Thing):
            def __del__(self):
                if use == "get":
                    kept.append(getattr(screen, attribute))
                else:
                    setattr(screen, attribute, [Thing()] if attribute == "list" else Thing())

        kept = []
        for _ in range(20):
            setattr(screen, attribute, [Dropped() for _ in range(5)] if attribute == "list" else Dropped())
            setattr(screen, attribute, [])
        getattr(screen, attribute)
        assert kept == [[]] * len(kept), "the former value is there while it is given up"

    def test_what_a_rebuilt_menu_gives_up_may_rebuild_it(self):
        self.survives(self.rebuild_menu_when_given_up)

    def rebuild_menu_when_given_up(self):
        screen = menu(self.session)

        class Dropped(object):
            def __del__(self):
                screen.createMenu()

        for _ in range(20):
            screen.list = [Dropped() for _ in range(5)]
            screen.createMenu()
        assert len(screen.list) == 6, screen.list

    def test_what_a_new_selection_gives_up_may_read_the_selection(self):
        self.survives(self.read_selection_when_given_up)

    def read_selection_when_given_up(self):
        screen = restore_list(self.session)

        class Dropped(object):
            def __del__(self):
                kept.extend([screen.sel, screen.val])

        kept = []
        for _ in range(20):
            screen.sel = Dropped()
            screen.val = Dropped()
            screen.deleteFile()
        del kept[:]
        assert screen.sel == SETTINGS, screen.sel

    def test_a_selection_may_be_replaced_while_its_text_is_taken(self):
        self.survives(self.replace_selection_in_its_text)

    def replace_selection_in_its_text(self):
        screen = restore_list(self.session)

        class Evil(object):
            def __str__(self):
                screen.val = None
                return "evil"

        journal.take()
        screen.val = [Evil(), "x" * 100, "y" * 100]
        screen.restoreSettings()
        text = "[evil, %s, %s]" % ("x" * 100, "y" * 100)
        assert journal.take()[8] == 'os.system("tar xzf %s -C /")' % text

    def test_a_list_of_commands_may_be_emptied_while_it_is_taken(self):
        self.survives(self.empty_commands_while_taken)

    def empty_commands_while_taken(self):
        screen = menu(self.session)

        class Evil(object):
            def __eq__(self, other):
                del commands[:]
                return True

        commands = [(Evil(), {"package": "package %d" % i}) for i in range(100)]
        screen.cmdList = commands
        assert len(screen.cmdList) == 100 and not commands

    def test_keywords_may_be_given_up_while_they_are_used(self):
        self.survives(self.empty_keywords_while_used)

    def empty_keywords_while_used(self):
        screen = menu(self.session)
        compared = []

        class Evil(object):
            def __eq__(self, other):
                keywords.clear()
                compared.append(self.name)
                return False

        for i in range(50):
            keywords = {"event": Evil(), "param": None}
            keywords["event"].name = "event %d" % i
            screen.ipkgCallback(**keywords)
        assert compared == ["event %d" % i for i in range(50) for _ in range(2)], compared

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

    def test_a_closed_screen_may_lose_its_attributes(self):
        self.each(self.lose_attributes, [(kind,) for kind in SCREENS])

    def lose_attributes(self, kind):
        screen = SCREENS[kind](self.session)
        screen.close = lambda *result: (screen.clear(), screen.__dict__.clear())
        press(screen, "cancel")
        assert screen.__dict__ == {} and not screen
        if kind != "confirmation":
            screen.ipkgCallback(10, None)
            assert screen.restoretype == ("" if kind == "menu" else "settingrestore")

    def test_the_collector_may_replace_a_list_while_it_is_read(self):
        self.each(self.collect_while_reading,
                  [("menu", "list"), ("menu", "ipklist"), ("menu", "cmdList"), ("restore_list", "flist"),
                   ("restore_list", "sel")])

    def collect_while_reading(self, kind, attribute):
        screen = SCREENS[kind](self.session)
        rows = {"cmdList": [(0, {"package": "x%d" % i}) for i in range(50)],
                "sel": [("row %d" % i, "x", "y") for i in range(50)]}
        names = ["a name that is long enough for memory of its own %d" % i for i in range(50)]
        for threshold in range(1, 60):
            if attribute == "list":
                screen.createMenu()
            else:
                setattr(screen, attribute, rows.get(attribute, names))
            gc.collect()
            gc.disable()
            cycle = Thing()
            cycle.itself = cycle
            watching = weakref.ref(cycle, lambda _: setattr(screen, attribute, []))
            del cycle
            gc.set_threshold(threshold)
            gc.enable()
            getattr(screen, attribute)
            gc.collect()
            assert watching() is None

    def test_a_list_may_be_replaced_while_its_operation_logs(self):
        self.survives(self.replace_packages_while_logging)

    def replace_packages_while_logging(self):
        screen = menu(self.session)
        packages = [full_path("plugins/") + "a package with a long name %d.ipk" % i for i in range(50)]
        self.receiver.outputs[INSTALLED] = [package + "\n" for package in packages]
        self.receiver.add_directory(full_path("plugins"))
        for package in packages:
            self.receiver.add_file(package)
        written = []

        class Stream(object):
            def write(self, text):
                written.append(text)
                screen.ipklist = ["y" * 100]
                screen.ipklist = []

        sys.stdout = Stream()
        screen.installLocalPlugins()
        line = "[QOR-Stowline] Plugin %s is already installed\n"
        assert written == [line % package for package in packages], written

    def test_a_path_may_be_taken_away_while_it_is_used(self):
        self.each(self.take_path_away, [("listdir", "menu"), ("chmod", "restore_list"),
                                        ("_", "restore_list")])

    def take_path_away(self, name, kind):
        screen = SCREENS[kind](self.session)
        screen.path = DIRECTORY
        if kind == "restore_list":
            screen.sel, screen.val = SETTINGS, full_path(SETTINGS)

        def take(*arguments):
            screen.path = None
            return ["a.ipk", "b.ipk"] if name == "listdir" else "text"

        if name == "_":
            fakes.builtins._ = take
        else:
            setattr(stowline, name, take)
        use = {"listdir": lambda: screen.installLocalPlugins(), "chmod": lambda: screen.runScript(True),
               "_": lambda: screen.startRestore(True)}[name]
        error = self.raised(use)
        assert error is None or isinstance(error, TypeError), error
        if error is None:
            shown = str(self.session.opened[-1][2])
            assert DIRECTORY in shown, shown

    def test_a_component_may_be_replaced_while_it_is_asked(self):
        self.survives(self.replace_component_while_asked)

    def replace_component_while_asked(self):
        screen = menu(self.session)

        class Replaced(object):
            def __getattr__(self, name):
                if name == "startCmd":
                    screen.ipkg = None
                    gc.collect()
                    return lambda command: None
                raise AttributeError(name)

            def createSettingFile(self):
                screen.backupactions = None
                gc.collect()
                return True

        for key, attribute in (("installlocalplugin", "ipkg"), ("settingbackup", "backupactions")):
            setattr(screen, attribute, Replaced())
            screen["menu"].entries = [(key,)]
            screen.runMenuEntry()
            assert getattr(screen, attribute) is None, attribute

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
            remove(screen)
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
        row = {"list": [], "tuple": ((), ()), "number": 1 << 70, "object": Thing(), "none": None}[kind]
        screen = restore_list(self.session)
        screen["filelist"].rows = [row]
        screen.KeyOk()
        screen.deleteFile()
        main = menu(self.session)
        main["menu"].entries = [row]
        main.runMenuEntry()


if __name__ == "__main__":
    unittest.main()
