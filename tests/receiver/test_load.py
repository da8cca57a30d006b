"""What the module binds and makes when it is loaded, and what happens when a part of that fails.

Each load is one of a process of its own, by an interpreter that has never loaded the module.
"""

import gc
import io
import json
import os
import shutil
import sys
import tempfile
import threading
import types
import unittest
from xml.etree import ElementTree

import paths  # noqa: F401

import fakes
import journal
from children import in_child

try:
    import builtins
except ImportError:
    import __builtin__ as builtins

with io.open(os.environ["STOWLINE_FLOWS"], encoding="utf-8") as exported:
    LOAD = [str(line) for flow in json.load(exported) if flow["name"] == "Load"
            for line in flow["operations"]]

STAR = "from Tools.Directories import *"
SCREENS = ["Stowline", "StowlineRestore", "StowlineHelpScreen"]


class Binding(object):
    """One line: a name of a unit, and the name that it is bound under."""

    def __init__(self, line):
        words = line.split()
        self.line = line
        self.unit = words[1]
        self.name = words[3]
        self.bound_as = words[-1]

    def real_unit(self):
        """The unit's name in this interpreter."""
        return builtins.__name__ if self.unit == "builtins" else self.unit


BINDINGS = [Binding(line) for line in LOAD if line.startswith("from ")]
FROM_UNITS = [index for index, binding in enumerate(BINDINGS) if binding.unit != "builtins"]


class Proxy(types.ModuleType):
    """Stands for a unit, and notes what is taken from it. `failing`: what some of its names raise."""

    def __init__(self, unit, real, failing=None):
        types.ModuleType.__init__(self, unit)
        self.__dict__.update(_unit=unit, _real=real, _failing=failing or {})
        if "__all__" in vars(real):
            self.__dict__["__all__"] = real.__all__

    def __getattribute__(self, name):
        look = types.ModuleType.__getattribute__
        if name.startswith("__") and name != "__all__":
            return look(self, name)
        line = "from %s import %s" % (look(self, "_unit"), "*" if name == "__all__" else name)
        journal.note(line)
        if name in look(self, "_failing"):
            raise look(self, "_failing")[name]
        return getattr(look(self, "_real"), name)


def real_of(binding):
    return __import__(binding.real_unit(), fromlist=["x"])


def put_proxies(failing=None):
    """Puts a proxy of every unit into sys.modules. `failing`: a binding and what it raises."""
    for binding in BINDINGS:
        real = real_of(binding)
        if not isinstance(real, Proxy):
            sys.modules[binding.real_unit()] = Proxy(binding.unit, real)
    if failing:
        binding, error = failing
        unit = sys.modules[binding.real_unit()]
        unit.__dict__["_failing"] = {failing_name(binding): error}


def failing_name(binding):
    return "resolveFilename" if binding.name == "*" else binding.name


def remove_proxies():
    for binding in BINDINGS:
        unit = sys.modules[binding.real_unit()]
        if isinstance(unit, Proxy):
            sys.modules[binding.real_unit()] = unit.__dict__["_real"]


def loaded():
    return fakes.import_module()


def error_of_load(load=loaded):
    try:
        load()
    except BaseException as error:
        return error
    return None


class Odd(Exception):
    """An exception of a kind that nothing expects."""


def is_alive(module):
    """Whether a module is whole: it has its classes, and they work."""
    fakes.receiver = fakes.Receiver()
    if not hasattr(module, "StowlineRestore"):
        return False
    module.StowlineHelpScreen(fakes.Session(), "a", "/a").createMessage()
    return module.BackupActions("auto").executiontime == "20240305_07-04_solo2.auto"


# In the child.

def once(lines):
    """What the star takes is noted as many lines; they are one."""
    taken = []
    for line in lines:
        if line.startswith("from Tools.Directories"):
            line = STAR
            if taken and taken[-1] == STAR:
                continue
        taken.append(line)
    return taken


def offer_all():
    """A proxy has only the names that it is asked for: __all__ tells them."""
    directories = real_of(Binding(STAR))
    directories.__all__ = [name for name in vars(directories) if not name.startswith("_")]


def recorded_load():
    offer_all()
    put_proxies()
    journal.take()
    __import__("Stowline")
    lines = journal.take()
    remove_proxies()
    return once(lines)


def bound_objects():
    module = loaded()
    wrong = []
    for binding in BINDINGS:
        if binding.name == "*":
            continue
        expected = REPLACED.get((binding.unit, binding.name), getattr(real_of(binding), binding.name))
        if getattr(module, binding.bound_as, None) is not expected:
            wrong.append(binding.line)
    return wrong


REPLACED = dict(((unit.__name__.replace("__builtin__", "builtins"), name), fake)
                for unit, name, fake in fakes.REPLACED)


def failed_then_loaded(break_unit, mend, expected, load=loaded):
    """Loads twice, with something broken and with it mended. `expected`: judges the error."""
    break_unit()
    error = error_of_load(load)
    verdict = [type(error).__name__, bool(expected(error))]
    mend()
    journal.take()
    module = loaded()
    return verdict + [is_alive(module)]


def failing_binding(index):
    error = Odd("odd")
    offer_all()
    return failed_then_loaded(lambda: put_proxies((BINDINGS[index], error)), remove_proxies,
                              lambda raised: raised is error)


def failing_offer():
    """The unit of the star raises when it is asked what it offers."""
    error = Odd("odd")
    offer_all()

    def break_unit():
        put_proxies()
        sys.modules["Tools.Directories"].__dict__["_failing"] = {"__all__": error}

    return failed_then_loaded(break_unit, remove_proxies, lambda raised: raised is error)


def failing_unit(index):
    """The unit's import raises."""
    error = Odd("odd")
    name = BINDINGS[index].real_unit()
    unit = real_of(BINDINGS[index])
    original = builtins.__import__

    def importing(unit, *arguments, **keywords):
        if unit == name:
            raise error
        return original(unit, *arguments, **keywords)

    def break_unit():
        del sys.modules[name]
        builtins.__import__ = importing

    def mend():
        sys.modules[name] = unit
        builtins.__import__ = original

    return failed_then_loaded(break_unit, mend, lambda raised: raised is error)


def missing_unit(index):
    """The import system is told that there is no such unit."""
    name = BINDINGS[index].real_unit()
    unit = __import__(name, fromlist=["x"])

    def break_unit():
        sys.modules[name] = None

    def mend():
        sys.modules[name] = unit

    return failed_then_loaded(break_unit, mend, lambda raised: isinstance(raised, ImportError))


def missing_name(index):
    binding = BINDINGS[index]
    unit = real_of(binding)
    original = getattr(unit, binding.name)
    kind = NameError if binding.unit == "builtins" else ImportError
    return failed_then_loaded(lambda: delattr(unit, binding.name),
                              lambda: setattr(unit, binding.name, original),
                              lambda raised: isinstance(raised, kind) and binding.name in str(raised),
                              lambda: __import__("Stowline"))


def without_panel():
    from Components.config import config
    panel = config.plugins.__dict__.pop("qorpanel")
    return failed_then_loaded(lambda: None, lambda: config.plugins.__dict__.update(qorpanel=panel),
                              lambda raised: type(raised) is AttributeError and "qorpanel" in str(raised))


def failing_setup(index):
    """One of the two attachments to the configuration tree raises."""
    import Components.config as unit
    error = Odd("odd")
    name = ["ConfigSubsection", "ConfigText"][index]
    original = getattr(unit, name)

    def refuse(*arguments, **keywords):
        raise error

    return failed_then_loaded(lambda: setattr(unit, name, refuse),
                              lambda: setattr(unit, name, original), lambda raised: raised is error)


def attached_afresh():
    from Components.config import Branch, ConfigSubsection, config
    panel = config.plugins.qorpanel
    panel.stowline = former = Branch()
    journal.take()
    loaded()
    lines = [line for line in journal.take() if line.startswith("config")]
    fresh = panel.stowline
    return [lines, fresh is not former, type(fresh) is ConfigSubsection,
            sorted(name for name in vars(fresh) if name != "place")]


def loaded_twice():
    from Components.config import config
    first = loaded()
    former = config.plugins.qorpanel.stowline
    del sys.modules["Stowline"]
    second = loaded()
    return [first is not second, config.plugins.qorpanel.stowline is not former,
            first.Stowline is not second.Stowline, is_alive(first), is_alive(second)]


def given_up():
    first = loaded()
    classes = first.BackupActions, first.StowlineHelpScreen
    del sys.modules["Stowline"], first
    gc.collect()
    second = loaded()
    fakes.receiver = fakes.Receiver()
    engine, screen = classes
    screen(fakes.Session(), "a", "/a").createMessage()
    return [engine("auto").executiontime == "20240305_07-04_solo2.auto", is_alive(second)]


class Stop(Exception):
    pass


def failed_among_its_classes():
    """The first screen's class is made, and kept, when the making of the second fails."""
    from Screens.Screen import Screen
    made = []

    class Meta(type):
        def __new__(mcs, name, bases, content):
            if made:
                raise Stop()
            cls = type.__new__(mcs, name, bases, content)
            if name != "Screen":
                made.append(cls)
            return cls

    sys.modules["Screens.Screen"].Screen = Meta("Screen", (Screen,), {})
    error = error_of_load()
    fakes.receiver = fakes.Receiver()
    screen = made[0](fakes.Session(), "a", "/a")
    screen.createMessage()
    return [type(error).__name__, screen.restorefile == "a"]


def skins_of_classes_being_made():
    from Screens.Screen import Screen
    seen = []
    Screen.__init_subclass__ = classmethod(lambda cls: seen.append([cls.__name__, "skin" in vars(cls)]))
    loaded()
    return seen


SLOW_UNIT = """
import threading, time
started.set()
time.sleep(0.3)
class ServiceReference(object):
    pass
"""


def imported_meanwhile():
    """Another thread is in the middle of a unit when the module asks for it."""
    directory = tempfile.mkdtemp()
    try:
        with open(os.path.join(directory, "ServiceReference.py"), "w") as unit:
            unit.write(SLOW_UNIT)
        sys.modules.pop("ServiceReference", None)
        sys.path.insert(0, directory)
        builtins.started = threading.Event()
        thread = threading.Thread(target=lambda: __import__("ServiceReference"))
        thread.start()
        builtins.started.wait(10)
        module = loaded()
        thread.join()
        return is_alive(module)
    finally:
        shutil.rmtree(directory)


def star_names(has_all):
    import Tools.Directories as unit
    unit._underscored = unit.offered = unit.withheld = "x"
    unit.__version__ = "x"
    if has_all:
        unit.__all__ = ["resolveFilename", "SCOPE_PLUGINS", "fileExists", "offered", "_underscored"]
    module = loaded()
    return [hasattr(module, name) for name in ("offered", "withheld", "_underscored", "__version__",
                                               "fileExists")]


def star_with_missing_name():
    import Tools.Directories as unit
    unit.__all__ = ["resolveFilename", "nobody"]
    error = error_of_load()
    return [isinstance(error, (ImportError, AttributeError)), "nobody" in str(error)]


def star_rebinds():
    """A public name of the unit takes the place of one bound before, and later ones take its place."""
    import Tools.Directories as unit
    import Screens.InfoBar
    unit.Label = unit.InfoBar = "from the star"
    module = loaded()
    return [module.Label, module.InfoBar is Screens.InfoBar.InfoBar]


# Name of a fake, a use of the module that reaches it.
REACHED = {
    "system": lambda module, engine: engine.createSettingFile(),
    "listdir": lambda module, engine: engine.listdir_fullpath("/media"),
    "popen": lambda module, engine: module.StowlineRestore(
        fakes.Session(), "x", "/plugin").installPlugins(),
    "makedirs": lambda module, engine: module.getBackupRestorePath(),
    "chmod": lambda module, engine: restore_with_selection(module).runScript(True),
    "remove": lambda module, engine: restore_with_selection(module).startDelete(True),
    "open": lambda module, engine: engine.saveUserFiles("/media/hdd/x", [], []),
    "localtime": lambda module, engine: module.getDateTime(),
    "path": lambda module, engine: module.getBackupRestorePath(),
}


def restore_with_selection(module):
    restore = module.StowlineRestore(fakes.Session(), "settingrestore", "/plugin")
    restore.sel, restore.val = "x", "/media/hdd/x"
    return restore


def reached(name, when):
    """How often a replacement is called that was made "before" or "after" the load."""
    unit = [unit for unit, each, _ in fakes.REPLACED if each == name][0]
    calls = []
    fake = [fake for _, each, fake in fakes.REPLACED if each == name][0]
    if name == "path":
        replacement = type("Path", (fake,), {"exists": staticmethod(
            lambda path: calls.append(path) or fake.exists(path))})
    else:
        def replacement(*arguments):
            calls.append(arguments)
            return fake(*arguments)
    if when == "before":
        fakes.REPLACED[:] = [(u, n, replacement if n == name else f) for u, n, f in fakes.REPLACED]
    module = loaded()
    use_with_replacement(module, name, unit, replacement if when == "after" else None)
    return len(calls)


def use_with_replacement(module, name, unit, replacement):
    fakes.receiver.add_file("/media/hdd/x")
    fakes.receiver.add_directory("/media", ["hdd"])
    if name != "makedirs":
        fakes.receiver.add_directory("/media/hdd/qor-stowline")
    engine = module.BackupActions()
    original = getattr(unit, name)
    try:
        if replacement:
            setattr(unit, name, replacement)
        REACHED[name](module, engine)
    finally:
        setattr(unit, name, original)


def replaced_class(when):
    """The label of a new screen, whose class was replaced before or after the load."""
    import Components.Label as unit

    class Other(unit.Label):
        pass

    if when == "before":
        unit.Label = Other
    module = loaded()
    unit.Label = Other
    return type(module.StowlineHelpScreen(fakes.Session(), "a", "/a")["messagetext"]) is Other


def replaced_name():
    """What is replaced among the module's own names is what it uses."""
    module = loaded()
    module.localtime = lambda: fakes.time.struct_time((1999, 12, 31, 23, 59, 0, 4, 365, 0))
    module.HardwareInfoVu = lambda: type("Hardware", (), {"get_device_name": lambda self: "duo"})()
    text = module.BackupActions().executiontime
    del module.localtime
    try:
        module.getDateTime()
    except NameError as error:
        return [text, "localtime" in str(error)]


def translations():
    module = loaded()
    screen = module.StowlineHelpScreen(fakes.Session(), "a", "/a")
    shown = []
    for translate in (lambda text: "1", lambda text: "2"):
        builtins._ = translate
        screen.createMessage()
        shown.append(screen["messagetext"].text)
    del builtins._
    try:
        screen.createMessage()
    except NameError as error:
        shown.append("'_'" in str(error))
    builtins._ = lambda text: "3"
    screen.createMessage()
    return shown + [screen["messagetext"].text]


def load_without_translation():
    del builtins._
    return sorted(name for name in vars(loaded()) if name == "Stowline")


class Load(unittest.TestCase):
    def test_every_name_is_bound_once_in_source_order_from_its_unit(self):
        # The built-ins are looked up where the interpreter keeps them, which no proxy sees.
        expected = [line.split(" as ")[0] for line in LOAD if not line.startswith("from builtins")]
        recorded = [line for line in in_child(recorded_load) if not line.startswith("from builtins")]
        self.assertEqual(recorded, expected)

    def test_every_name_is_bound_to_the_object_of_its_unit(self):
        self.assertEqual(in_child(bound_objects), [])

    def each(self, break_load, indices, type_name=None):
        for index in indices:
            name, is_expected, works_again = in_child(break_load, index)
            line = BINDINGS[index].line
            self.assertTrue(is_expected, "%s: %s" % (line, name))
            self.assertTrue(works_again, line)
            if type_name:
                self.assertEqual(name, type_name, line)

    def test_an_error_of_a_name_is_that_of_the_import_and_a_later_import_works(self):
        self.each(failing_binding, FROM_UNITS, "Odd")

    def test_an_error_of_what_the_star_is_offered_is_that_of_the_import(self):
        self.assertEqual(in_child(failing_offer), ["Odd", True, True])

    def test_an_error_of_a_unit_is_that_of_the_import_and_a_later_import_works(self):
        self.each(failing_unit, FROM_UNITS, "Odd")

    def test_a_missing_unit_is_an_import_error_and_a_later_import_works(self):
        self.each(missing_unit, [index for index in FROM_UNITS
                                 if BINDINGS[index].unit not in ("os", "time")])

    def test_a_missing_name_is_an_import_error_and_a_later_import_works(self):
        self.each(missing_name, [index for index in FROM_UNITS if BINDINGS[index].name != "*"])

    def test_a_missing_built_in_is_a_name_error_and_a_later_import_works(self):
        built_in = [index for index in range(len(BINDINGS)) if index not in FROM_UNITS]
        self.each(missing_name, built_in, "NameError")

    def test_a_missing_panel_is_an_attribute_error_and_a_later_import_works(self):
        self.assertEqual(in_child(without_panel), ["AttributeError", True, True])

    def test_an_error_of_the_configuration_tree_is_that_of_the_import(self):
        for index in range(2):
            self.assertEqual(in_child(failing_setup, index), ["Odd", True, True])

    def test_the_subsection_and_the_key_are_made_afresh(self):
        self.assertEqual(in_child(attached_afresh), [LOAD[-2:], True, True, ["backuprestorepath"]])

    @unittest.skipIf(sys.version_info < (3,), "2.7 loads a module from a file once")
    def test_each_load_is_a_module_of_its_own(self):
        self.assertEqual(in_child(loaded_twice), [True] * 5)

    @unittest.skipIf(sys.version_info < (3,), "2.7 empties the names of a module that nobody holds")
    def test_a_module_that_is_given_up_stays_whole_for_its_classes_and_a_later_import(self):
        self.assertEqual(in_child(given_up), [True, True])

    @unittest.skipIf(sys.version_info < (3,), "2.7 empties the names of a module that nobody holds")
    def test_classes_of_an_import_that_failed_stay_whole(self):
        self.assertEqual(in_child(failed_among_its_classes), ["Stop", True])

    @unittest.skipIf(sys.version_info < (3, 6), "only later versions have a hook there")
    def test_the_confirmation_has_its_skin_while_its_class_is_made(self):
        self.assertEqual(in_child(skins_of_classes_being_made),
                         [["StowlineHelpScreen", True], ["Stowline", False], ["StowlineRestore", False]])

    def test_a_unit_that_another_thread_imports_is_waited_for(self):
        self.assertTrue(in_child(imported_meanwhile))

    def test_the_star_takes_what_all_offers(self):
        self.assertEqual(in_child(star_names, True), [True, False, True, False, True])

    def test_the_star_takes_no_underscored_names(self):
        self.assertEqual(in_child(star_names, False), [True, True, False, False, True])

    def test_the_star_misses_what_all_offers_in_vain(self):
        self.assertEqual(in_child(star_with_missing_name), [True, True])

    def test_the_star_takes_its_turn_in_the_order(self):
        self.assertEqual(in_child(star_rebinds), ["from the star", True])

    def test_what_is_replaced_before_the_load_is_called(self):
        for name in sorted(REACHED):
            self.assertGreater(in_child(reached, name, "before"), 0, name)

    def test_what_is_replaced_after_the_load_is_not_called(self):
        for name in sorted(REACHED):
            self.assertEqual(in_child(reached, name, "after"), 0, name)

    def test_a_class_of_the_framework_is_the_one_that_was_there_at_the_load(self):
        self.assertTrue(in_child(replaced_class, "before"))
        self.assertFalse(in_child(replaced_class, "after"))

    def test_what_is_replaced_among_the_modules_names_is_used(self):
        self.assertEqual(in_child(replaced_name), ["19991231_23-59_duo", True])

    def test_the_translation_is_looked_up_at_each_use(self):
        self.assertEqual(in_child(translations), ["1a\n\n1", "2a\n\n2", True, "3a\n\n3"])

    def test_the_load_needs_no_translation(self):
        self.assertEqual(in_child(load_without_translation), ["Stowline"])


def definitions():
    """What the module defines, and how."""
    import Screens.Screen
    module = loaded()
    screens = [getattr(module, name) for name in SCREENS]
    return {
        "callable": [callable(getattr(module, name)) for name in ("getBackupRestorePath", "getDateTime")],
        "names": [cls.__name__ for cls in screens + [module.BackupActions]],
        "modules": [cls.__module__ for cls in screens + [module.BackupActions]],
        "bases": [cls.__bases__ == (Screens.Screen.Screen,) for cls in screens],
        "kinds": [type(cls) is type(Screens.Screen.Screen) for cls in screens],
        "engine": [base.__name__ for base in module.BackupActions.__mro__],
        "skinned": ["skin" in vars(cls) for cls in screens],
        "skin": module.StowlineHelpScreen.skin,
        "name": module.__name__,
    }


BUTTON = "/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_%s.png"
LABEL = {"render": "Label", "zPosition": "1", "size": "150,40", "font": "Regular;20", "halign": "left",
         "valign": "center", "transparent": "1"}
SKIN = [
    ("widget", {"name": "messagetext", "position": "10,10", "size": "630,210", "font": "Regular;20",
                "halign": "center", "valign": "center", "transparent": "1"}),
    ("widget", dict(LABEL, source="key_red", position="40,213")),
    ("widget", dict(LABEL, source="key_green", position="225,213")),
    ("ePixmap", {"pixmap": BUTTON % "red", "position": "10,220", "size": "25,25", "alphatest": "on"}),
    ("ePixmap", {"pixmap": BUTTON % "green", "position": "195,220", "size": "25,25", "alphatest": "on"}),
]


class Definitions(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.found = in_child(definitions)

    def test_functions_and_classes_are_there_under_their_names(self):
        self.assertEqual(self.found["callable"], [True, True])
        self.assertEqual(self.found["names"], SCREENS + ["BackupActions"])
        self.assertEqual(self.found["modules"], ["Stowline"] * 4)
        self.assertEqual(self.found["name"], "Stowline")

    def test_screens_derive_from_the_frameworks(self):
        self.assertEqual(self.found["bases"], [True] * 3)
        self.assertEqual(self.found["kinds"], [True] * 3)

    def test_the_engine_is_an_ordinary_class(self):
        self.assertEqual(self.found["engine"], ["BackupActions", "object"])

    def test_only_the_confirmation_has_a_skin_of_its_own(self):
        self.assertEqual(self.found["skinned"], [False, False, True])

    def test_the_skin_is_the_confirmations(self):
        screen = ElementTree.fromstring(self.found["skin"].encode("utf-8"))
        self.assertEqual((screen.tag, screen.attrib),
                         ("screen", {"name": "StowlineHelpScreen", "position": "center,center",
                                     "size": "650,250"}))
        self.assertEqual([(each.tag, each.attrib) for each in screen], SKIN)


if __name__ == "__main__":
    unittest.main()
