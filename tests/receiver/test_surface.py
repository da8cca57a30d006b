"""Every operation and every attribute of the module as the interpreter's code sees them."""

import copy
import functools
import inspect
import unittest

from receiver_test import ReceiverTest, fakes, journal, stowline
from flows import CONFIGURATION, DIRECTORY, PLUGINS, SCRIPT, SETTINGS, STAMP
from flows import finish_layout, full_path, lay_out_backups, press

DONE = stowline.IpkgComponent.EVENT_DONE
ERROR = stowline.IpkgComponent.EVENT_ERROR
INSTALL = stowline.IpkgComponent.CMD_INSTALL
UPDATE = stowline.IpkgComponent.CMD_UPDATE

ARGUMENTS = {
    "session": fakes.Session(), "plugin_path": "/plugin", "screen_type": "restore",
    "restoretype": "settingrestore", "restorefile": CONFIGURATION,
    "fullrestorepath": full_path(CONFIGURATION), "backuptype": "auto", "ret": True, "event": DONE,
    "param": "x", "option": ("/media/usb", "/media/usb", None), "package_info": "/list",
    "start_strings": ["/files/a"], "search_dirs": ["/files"], "d": "/files",
}

CONSTRUCTED = {
    "BackupActions": ["manual"],
    "Stowline": [fakes.Session(), "/plugin", "restore"],
    "StowlineRestore": [fakes.Session(), "settingrestore", "/plugin"],
    "StowlineHelpScreen": [fakes.Session(), CONFIGURATION, full_path(CONFIGURATION)],
}

REQUIRED = object()
RET = ("ret", False)
EVENT = [("event", REQUIRED), ("param", REQUIRED)]

# Class, operation, parameters with their defaults.
OPERATIONS = [
    ("BackupActions", "__init__", [("backuptype", None)]),
    ("BackupActions", "createSettingFile", []),
    ("BackupActions", "createConfigFile", []),
    ("BackupActions", "createPluginList", []),
    ("BackupActions", "saveAtileUserFiles", []),
    ("BackupActions", "saveVFDSkinUserFiles", []),
    ("BackupActions", "saveUserFiles",
     [("package_info", REQUIRED), ("start_strings", REQUIRED), ("search_dirs", REQUIRED)]),
    ("BackupActions", "listdir_fullpath", [("d", REQUIRED)]),
    ("BackupActions", "houseKeeping", []),
    ("StowlineHelpScreen", "__init__",
     [("session", REQUIRED), ("restorefile", REQUIRED), ("fullrestorepath", REQUIRED)]),
    ("StowlineHelpScreen", "createMessage", []),
    ("StowlineHelpScreen", "keyGo", []),
    ("StowlineHelpScreen", "keyClose", []),
    ("Stowline", "__init__",
     [("session", REQUIRED), ("plugin_path", REQUIRED), ("screen_type", "backup")]),
    ("Stowline", "createMenu", []),
    ("Stowline", "runMenuEntry", [("ret", None)]),
    ("Stowline", "backuprestorepath_choosen", [("option", REQUIRED)]),
    ("Stowline", "checkFolders", []),
    ("Stowline", "keyCancel", []),
    ("Stowline", "ipkgCallback", EVENT),
    ("Stowline", "installLocalPlugins", []),
    ("StowlineRestore", "__init__",
     [("session", REQUIRED), ("restoretype", REQUIRED), ("plugin_path", REQUIRED)]),
    ("StowlineRestore", "fill_list", []),
    ("StowlineRestore", "KeyOk", []),
    ("StowlineRestore", "restoreSettings", []),
    ("StowlineRestore", "startRestore", [RET]),
    ("StowlineRestore", "runScript", [RET]),
    ("StowlineRestore", "deleteFile", []),
    ("StowlineRestore", "startDelete", [RET]),
    ("StowlineRestore", "keyCancel", [RET]),
    ("StowlineRestore", "ipkgCallback", EVENT),
    ("StowlineRestore", "installPlugins", []),
]

FUNCTIONS = {"getBackupRestorePath": DIRECTORY, "getDateTime": "20240305_07-04"}


class SurfaceTest(ReceiverTest):
    def setUp(self):
        super(SurfaceTest, self).setUp()
        lay_out_backups(self.receiver)
        self.receiver.add_directory("/files", ["ab", "c"])
        self.receiver.add_file("/list", lines=["/files/ac\n"])
        self.receiver.add_file("/proc/mounts", lines=["x /media/hdd ext4\n"])

    def made(self, name, **attributes):
        made = getattr(stowline, name)(*CONSTRUCTED[name])
        for attribute in attributes:
            setattr(made, attribute, attributes[attribute])
        return made

    def menu(self, flavour="restore", cls=stowline.Stowline):
        return cls(self.session, "/plugin", flavour)

    def restore_list(self, restoretype="settingrestore", cls=stowline.StowlineRestore):
        return cls(self.session, restoretype, "/plugin")

    def ready(self, name):
        """An object on which every operation has something to do."""
        self.setUp()
        made = self.made(name)
        if name == "StowlineRestore":
            made.sel, made.val = SETTINGS, full_path(SETTINGS)
        if name == "Stowline":
            made.restoretype = ""
            made["menu"].entries = [("path",)]
        journal.take()
        return made

    def assertRefused(self, call, *arguments, **keywords):
        raised = self.raised(call, *arguments, **keywords)
        self.assertIsInstance(raised, TypeError, (call, arguments, keywords))


class Operations(SurfaceTest):
    def done(self, name, operation, arguments, keywords):
        """What a call does, and its result."""
        made = self.ready(name)
        result = getattr(made, operation)(*arguments, **keywords)
        return journal.take(), result

    def every(self, count=0):
        for name, operation, parameters in OPERATIONS:
            if len(parameters) >= count:
                yield name, operation, parameters, [ARGUMENTS[each] for each, _ in parameters]

    def test_every_operation_of_the_classes_is_in_the_table(self):
        for name in CONSTRUCTED:
            kinds = (type(getattr(stowline, name).__dict__["__init__"]),)
            found = [each for each, value in vars(getattr(stowline, name)).items()
                     if isinstance(value, kinds)]
            self.assertEqual(sorted(found), sorted(row[1] for row in OPERATIONS if row[0] == name))

    def test_parameters_are_taken_by_position_and_by_keyword_alike(self):
        for name, operation, parameters, arguments in self.every(1):
            expected = self.done(name, operation, arguments, {})
            for given in range(len(parameters)):
                keywords = dict((each, ARGUMENTS[each]) for each, _ in parameters[given:])
                self.assertEqual(self.done(name, operation, arguments[:given], keywords), expected,
                                 (name, operation, given))

    def test_a_parameter_left_out_has_its_default(self):
        for name, operation, parameters, arguments in self.every(1):
            default = parameters[-1][1]
            if default is not REQUIRED:
                self.assertEqual(self.done(name, operation, arguments[:-1], {}),
                                 self.done(name, operation, arguments[:-1] + [default], {}),
                                 (name, operation))

    def test_a_required_parameter_may_not_be_left_out(self):
        for name, operation, parameters, arguments in self.every(1):
            required = len([each for each in parameters if each[1] is REQUIRED])
            for given in range(required):
                self.assertRefused(getattr(self.ready(name), operation), *arguments[:given])

    def test_too_many_arguments_are_refused(self):
        for name, operation, _, arguments in self.every():
            self.assertRefused(getattr(self.ready(name), operation), *(arguments + [None]))

    def test_unknown_keywords_are_refused(self):
        for name, operation, _, arguments in self.every():
            self.assertRefused(getattr(self.ready(name), operation), *arguments, **{"other": 1})

    def test_repeated_keywords_are_refused(self):
        for name, operation, parameters, arguments in self.every(1):
            for each, _ in parameters:
                self.assertRefused(getattr(self.ready(name), operation), *arguments,
                                   **{each: ARGUMENTS[each]})

    def test_a_refused_call_does_nothing(self):
        for name, operation, _, arguments in self.every():
            made = self.ready(name)
            self.raised(getattr(made, operation), *(arguments + [None]))
            self.assertEqual(journal.take(), [])

    def test_operations_are_refused_without_their_object(self):
        for name, operation, _, _ in self.every():
            self.assertRefused(getattr(stowline, name).__dict__[operation])

    def test_operations_know_their_name(self):
        for name, operation, _, _ in self.every():
            self.assertEqual(getattr(self.ready(name), operation).__name__, operation)

    def test_every_operation_has_a_line_of_documentation(self):
        for name, operation, _, _ in self.every():
            self.assertEqual(getattr(self.ready(name), operation).__doc__.count("\n"), 0)

    @unittest.skipUnless(hasattr(inspect, "signature"), "this interpreter has no signatures")
    def test_every_operation_has_its_signature(self):
        for name, operation, parameters, _ in self.every():
            signature = inspect.signature(getattr(self.ready(name), operation))
            self.assertEqual([(each.name, REQUIRED if each.default is each.empty else each.default)
                              for each in signature.parameters.values()], parameters)

    def test_functions_return_their_texts_and_take_nothing(self):
        for name in FUNCTIONS:
            function = getattr(stowline, name)
            self.assertEqual(function(), FUNCTIONS[name])
            self.assertEqual(function.__name__, name)
            self.assertRefused(function, None)
            self.assertRefused(function, ret=None)


class Thing(str):
    """What other code may keep in an attribute."""


THING = Thing("thing")

# Class, attribute, value after the construction. An operation that sets another brings it into being.
ATTRIBUTES = [
    ("BackupActions", "executiontime", STAMP),
    ("BackupActions", "boxtype", "solo2"),
    ("StowlineHelpScreen", "restorefile", CONFIGURATION),
    ("StowlineHelpScreen", "fullrestorepath", full_path(CONFIGURATION)),
    ("StowlineHelpScreen", "title", "Qor Stowline"),
    ("Stowline", "skin_path", "/plugin"),
    ("Stowline", "title", "QOR Stowline (Restore)"),
    ("Stowline", "screentype", "restore"),
    ("Stowline", "reloadPluginlist", False),
    ("Stowline", "list", []),
    ("Stowline", "cmdList", []),
    ("StowlineRestore", "skin_path", "/plugin"),
    ("StowlineRestore", "restoretype", "settingrestore"),
    ("StowlineRestore", "title", "QOR Stowline"),
    ("StowlineRestore", "sel", []),
    ("StowlineRestore", "val", []),
    ("StowlineRestore", "entry", True),
    ("StowlineRestore", "exe", False),
    ("StowlineRestore", "path", DIRECTORY),
    ("StowlineRestore", "flist", [SETTINGS]),
    ("StowlineRestore", "cmdList", []),
]
COMPONENTS = {"Stowline": ["Console", "ipkg", "session", "backupactions"], "StowlineRestore": ["Console", "ipkg", "session"],
              "StowlineHelpScreen": ["session"], "BackupActions": []}


class Attributes(SurfaceTest):
    def test_attributes_begin_with_their_documented_values(self):
        for name in CONSTRUCTED:
            made = self.made(name)
            expected = dict((attribute, value) for cls, attribute, value in ATTRIBUTES if cls == name)
            found = dict((each, vars(made)[each]) for each in vars(made)
                         if each not in COMPONENTS[name] + ["onLayoutFinish", "onClose", "closed"])
            self.assertEqual(found, expected)
            for attribute in expected:
                self.assertIs(type(found[attribute]), type(expected[attribute]))

    def test_a_list_that_is_not_filled_has_selected_and_listed_nothing(self):
        class Unfilled(stowline.StowlineRestore):
            def fill_list(self):
                pass
        made = Unfilled(self.session, "settingrestore", "/plugin")
        self.assertEqual((made.path, made.flist, made.sel, made.val, made.entry, made.exe), ("", [], [], [], False, False))

    def test_components_begin_as_the_frameworks(self):
        for name in ("Stowline", "StowlineRestore"):
            made = self.made(name)
            self.assertIsInstance(made.Console, stowline.ComConsole)
            self.assertIsInstance(made.ipkg, stowline.IpkgComponent)
            self.assertEqual(made.ipkg.callbacks, [made.ipkgCallback])
        self.assertIs(type(self.made("Stowline").backupactions), stowline.BackupActions)

    def test_a_session_is_the_one_that_was_given(self):
        for name in ("Stowline", "StowlineRestore", "StowlineHelpScreen"):
            made = getattr(stowline, name)(self.session, *CONSTRUCTED[name][1:])
            self.assertIs(made.session, self.session)

    def test_an_attribute_takes_any_object_and_can_be_deleted(self):
        for name, attribute, _ in ATTRIBUTES:
            made = self.made(name, **{attribute: THING})
            self.assertIs(vars(made)[attribute], THING)
            delattr(made, attribute)
            self.assertFalse(hasattr(made, attribute))

    def test_an_attribute_that_is_gone_is_the_callers_error(self):
        for name, attribute, operation in (("BackupActions", "executiontime", "createSettingFile"),
                                           ("StowlineHelpScreen", "fullrestorepath", "keyGo"),
                                           ("Stowline", "screentype", "createMenu"),
                                           ("StowlineRestore", "exe", "KeyOk")):
            made = self.made(name)
            delattr(made, attribute)
            self.assertIsInstance(self.raised(getattr(made, operation)), AttributeError)

    def test_lists_are_live(self):
        main = self.menu()
        main.createMenu()
        self.assertIs(main["menu"].entries, main.list)
        restore = self.restore_list()
        self.assertIs(restore["filelist"].rows, restore.flist)
        main.cmdList.append("other")
        self.assertEqual(main.cmdList, ["other"])

    def test_texts_stay_the_objects_that_they_were(self):
        class Text(str):
            pass

        name, path, translation = Text("name"), Text("/path"), Text("Sicherung")
        screen = stowline.StowlineHelpScreen(self.session, name, path)
        self.assertIs(screen.restorefile, name)
        self.assertIs(screen.fullrestorepath, path)
        self.receiver.translations["QOR Stowline"] = translation
        self.assertIs(self.restore_list().title, translation)

    def test_attributes_of_a_class_are_not_those_of_its_objects(self):
        for name, attribute, _ in ATTRIBUTES:
            found = getattr(getattr(stowline, name), attribute, None)
            self.assertFalse(isinstance(found, (str, list, bool)), (name, attribute))

    def test_objects_take_attributes_of_others(self):
        for name in CONSTRUCTED:
            made = self.made(name, extra=THING)
            self.assertIs(made.extra, THING)
            del made.extra
            self.assertFalse(hasattr(made, "extra"))

    def test_attributes_set_are_those_that_operations_use(self):
        engine = self.made("BackupActions", executiontime="X", boxtype="duo")
        engine.createSettingFile()
        self.assertEqual(engine.settingfile, DIRECTORY + "/settings_X.tar.gz")
        screen = self.made("StowlineHelpScreen", restorefile="shown")
        screen.createMessage()
        self.assertIn("\nshown\n", screen["messagetext"].text)
        main = self.made("Stowline", screentype="neither")
        main.createMenu()
        self.assertEqual([row[0] for row in main.list], ["path"])
        restore = self.made("StowlineRestore", restoretype="personalscript")
        restore.fill_list()
        self.assertEqual(restore.flist, [SCRIPT])


class Equal(object):
    def __init__(self, answer):
        self.answer = answer

    def __eq__(self, other):
        return self.answer

    __hash__ = None


class Unequal(object):
    def __eq__(self, other):
        raise KeyError("no comparison")

    __hash__ = None


def comparing(base, answer):
    """A class derived from a built-in one whose objects compare as told."""
    return type("Comparing", (base,), {"__eq__": lambda self, other: answer, "__hash__": None})


# What a job returns or a dialog answers, in groups by whether it equals true.
TRUE = [True, 1, 1.0, Equal(True), Equal("x")]
FALSE = [False, None, 0, 2, -1, 0.5, 1 << 70, "", "x", "True", [], [1], (True,), {1: 1}, object(), u"x",
         Equal(False), Equal([])]

# The same for objects that derive from what has a comparison of its own.
DERIVED_TRUE = [comparing(int, True)(0), comparing(str, True)("x"), comparing(list, True)([]),
                comparing(float, True)(0.0), comparing(tuple, 1)()]
DERIVED_FALSE = [comparing(int, False)(1), comparing(float, False)(1.0), comparing(str, False)("x")]


class Jobs(object):
    def __init__(self, result):
        self.result = result

    def createSettingFile(self):
        return self.result

    createConfigFile = createPluginList = createSettingFile


ENTRIES = {
    "createpluginlist": ("List of installed plugins was created succesfully",
                         "Creating list of installed plugins failed"),
    "settingbackup": ("Settings backup finished succesfully", "Backup settings failed"),
    "configbackup": ("Common configuration backup finished succesfully",
                     "Backup of common configurations failed"),
}


class Results(SurfaceTest):
    def box(self, key, result):
        main = self.menu("backup")
        main.backupactions = Jobs(result)
        main["menu"].entries = [(key,)]
        main.runMenuEntry()
        return self.session.opened[-1]

    def assertBox(self, key, result, done):
        kind = stowline.MessageBox.TYPE_INFO if done else stowline.MessageBox.TYPE_ERROR
        self.assertEqual(self.box(key, result),
                         (stowline.MessageBox, (ENTRIES[key][0 if done else 1], kind), {"timeout": 10}),
                         (key, result))

    def test_a_result_that_equals_true_is_a_success(self):
        for key in ENTRIES:
            for result in TRUE:
                self.assertBox(key, result, True)

    def test_any_other_result_is_a_failure(self):
        for key in ENTRIES:
            for result in FALSE:
                self.assertBox(key, result, False)

    def test_a_result_is_compared_as_its_own_class_compares(self):
        for key in ENTRIES:
            for result in DERIVED_TRUE:
                self.assertBox(key, result, True)
            for result in DERIVED_FALSE:
                self.assertBox(key, result, False)

    def test_a_comparison_that_fails_is_the_callers_error(self):
        for key in ENTRIES:
            self.assertIsInstance(self.raised(self.box, key, Unequal()), KeyError)
            self.assertEqual(self.session.opened, [])

    def test_a_job_that_is_missing_is_the_callers_error(self):
        main = self.menu("backup")
        main.backupactions = object()
        main["menu"].entries = [("settingbackup",)]
        self.assertIsInstance(self.raised(main.runMenuEntry), AttributeError)

    def acts(self, operation, answer):
        self.setUp()
        restore = self.restore_list()
        restore.sel, restore.val = SETTINGS, full_path(SETTINGS)
        journal.take()
        getattr(restore, operation)(answer)
        return journal.take() != []

    def test_callbacks_act_on_an_answer_that_equals_true_and_on_no_other(self):
        for operation in ("startRestore", "runScript", "startDelete"):
            for answer in TRUE:
                self.assertTrue(self.acts(operation, answer), (operation, answer))
            for answer in FALSE:
                self.assertFalse(self.acts(operation, answer), (operation, answer))
            self.assertIsInstance(self.raised(self.acts, operation, Unequal()), KeyError)

    def test_an_answer_is_compared_as_its_own_class_compares(self):
        for operation in ("startRestore", "runScript", "startDelete"):
            for answer in DERIVED_TRUE:
                self.assertTrue(self.acts(operation, answer), (operation, type(answer).__mro__))
            for answer in DERIVED_FALSE:
                self.assertFalse(self.acts(operation, answer), (operation, type(answer).__mro__))

    def test_answers_that_are_ignored_may_be_anything(self):
        for answer in TRUE + FALSE + [Unequal()]:
            restore = self.restore_list()
            restore.keyCancel(answer)
            self.assertEqual(restore.closed, [()])
            main = self.menu()
            main["menu"].entries = [("settingrestore",)]
            main.runMenuEntry(answer)
            self.assertEqual(self.session.opened[-1][1], ("settingrestore", "/plugin"))

    def test_the_status_of_a_command_is_not_looked_at(self):
        system = stowline.system
        try:
            for status in (None, "x", 256, -1, 1 << 70, object()):
                stowline.system = lambda command: status
                self.assertEqual(stowline.BackupActions().createSettingFile(), False)
        finally:
            stowline.system = system

    def assertMedium(self, value, text):
        for option in (("shown", value, None), ["shown", value]):
            self.menu().backuprestorepath_choosen(option)
            self.assertEqual(stowline.config.plugins.qorpanel.stowline.backuprestorepath.content, text)

    def test_the_chosen_medium_is_the_text_form_of_the_second_item(self):
        for value, text in [("/media/usb", "/media/usb"), (5, "5"), (None, "None"), (True, "True"),
                            (1 << 70, str(1 << 70)), (Named(), "named")]:
            self.assertMedium(value, text)

    def test_the_text_form_of_a_medium_is_the_interpreters(self):
        for value in (0.5, 1e100, (1, "a"), [None], ["a", ("b",)]):
            self.assertMedium(value, str(value))


class Named(object):
    def __str__(self):
        return "named"


# Kind of screen, how its operation is begun, the operation.
MENU_USES = [
    ("ok", "runMenuEntry"), ("cancel", "keyCancel"), ("red", "keyCancel"), ("layout", "createMenu"),
    ("event", "ipkgCallback"), ("path", "backuprestorepath_choosen"),
]
RESTORE_USES = [
    ("ok", "KeyOk"), ("green", "KeyOk"), ("cancel", "keyCancel"), ("red", "keyCancel"),
    ("yellow", "deleteFile"), ("event", "ipkgCallback"),
]
HELP_USES = [
    ("ok", "keyGo"), ("green", "keyGo"), ("cancel", "keyClose"), ("red", "keyClose"),
    ("layout", "createMessage"),
]

# Restore type, the key that asks, the operation that gets the answer.
ANSWERED = [
    ("settingrestore", "ok", "keyCancel"), ("settingrestore", "yellow", "startDelete"),
    ("personalscript", "ok", "runScript"),
]


def overriding(base, operations, calls):
    """A class derived from `base` that notes the calls of some operations, and passes them on."""
    def overridden(name):
        def operation(self, *arguments):
            calls.append(name)
            return getattr(base, name)(self, *arguments)
        operation.__name__ = name
        return operation
    return type("Sub", (base,), dict((name, overridden(name)) for name in operations))


def event_of(restoretype):
    def begin(screen):
        screen.restoretype = restoretype
        screen.ipkgCallback(DONE, None)
    return begin


# Class, the operations that one of it calls in their order, how that one is begun.
CALLING = [
    ("Stowline", ["checkFolders", "createMenu"], lambda screen: screen.backuprestorepath_choosen(None)),
    ("Stowline", ["installLocalPlugins"], event_of("installlocalplugin")),
    ("StowlineRestore", ["fill_list"], lambda screen: None),
    ("StowlineRestore", ["fill_list", "restoreSettings"], lambda screen: screen.KeyOk()),
    ("StowlineRestore", ["fill_list", "fill_list"],
     lambda screen: (screen.deleteFile(), screen.startDelete(True))),
    ("StowlineRestore", ["fill_list", "installPlugins"], event_of("plugininstall")),
    ("BackupActions", ["saveAtileUserFiles", "saveUserFiles", "saveVFDSkinUserFiles", "saveUserFiles"],
     lambda engine: engine.createConfigFile()),
    ("BackupActions", ["listdir_fullpath"], lambda engine: engine.saveUserFiles("/list", ["/"], [DIRECTORY])),
]


class SubClasses(SurfaceTest):
    def begin(self, screen, how):
        if how == "layout":
            finish_layout(screen)
        elif how == "event":
            screen.restoretype = ""
            screen.ipkg.callbacks[0](DONE, None)
        elif how == "path":
            screen["menu"].entries = [("path",)]
            screen.runMenuEntry()
            self.session.answer(None)
        else:
            press(screen, how)

    def test_keys_callbacks_and_hooks_call_the_overriding_operation(self):
        for name, uses in (("Stowline", MENU_USES), ("StowlineRestore", RESTORE_USES),
                           ("StowlineHelpScreen", HELP_USES)):
            for how, operation in uses:
                calls = []
                cls = overriding(getattr(stowline, name), [operation], calls)
                screen = cls(self.session, *CONSTRUCTED[name][1:])
                self.begin(screen, how)
                self.assertEqual(calls, [operation], (name, how))

    def test_answers_reach_the_overriding_operation(self):
        for restoretype, key, operation in ANSWERED:
            calls = []
            cls = overriding(stowline.StowlineRestore, [operation], calls)
            press(self.restore_list(restoretype, cls), key)
            self.assertEqual(calls, [])
            self.session.answer(True)
            self.assertEqual(calls, [operation])

    def test_operations_call_the_overriding_ones_of_their_object(self):
        for name, others, begin in CALLING:
            calls = []
            cls = overriding(getattr(stowline, name), others, calls)
            begin(cls(*CONSTRUCTED[name]))
            self.assertEqual(calls, others, name)

    def test_the_results_of_overriding_operations_count(self):
        class Failing(stowline.StowlineRestore):
            restoreSettings = lambda self: False  # noqa: E731

        press(self.restore_list("settingrestore", Failing), "ok")
        self.assertEqual(self.session.opened[-1][1][0], "Restoring settings failed")

        class Own(stowline.BackupActions):
            saveAtileUserFiles = lambda self: ("/a", "/b")  # noqa: E731

        journal.take()
        Own().createConfigFile()
        self.assertIn('_user_files /a /b")', "".join(journal.take()))

    def test_the_operation_of_another_object_is_called_for_that_one(self):
        main, other = self.menu(), self.menu()
        main.createMenu = other.createMenu
        main.checkFolders()
        self.assertEqual((len(main.list), len(other.list)), (0, 6))

    def test_an_operation_put_into_an_object_or_a_class_is_called_too(self):
        calls = []
        main = self.menu()
        main.createMenu = lambda: calls.append("object")
        main.checkFolders()
        former = stowline.StowlineRestore.fill_list
        stowline.StowlineRestore.fill_list = lambda self: calls.append("class")
        try:
            self.restore_list("settingrestore")
        finally:
            stowline.StowlineRestore.fill_list = former
        self.assertEqual(calls, ["object", "class"])

    def test_operations_and_attributes_are_there_while_the_constructor_runs(self):
        seen = []

        class Watching(stowline.StowlineRestore):
            def __setitem__(self, key, component):
                super(Watching, self).__setitem__(key, component)
                if key == "filelist":
                    seen.append((self.restoretype, self.entry, self.fill_list()))

        screen = Watching(self.session, "settingrestore", "/plugin")
        self.assertEqual(seen, [("settingrestore", False, None)])
        self.assertIs(screen.entry, True)

    def test_a_sub_class_may_have_its_own_constructor_and_attributes(self):
        class Own(stowline.Stowline):
            def __init__(self, session):
                self.before = "before"
                super(Own, self).__init__(session, "/own", "restore")
                self.after = self.title

        screen = Own(self.session)
        self.assertEqual((screen.before, screen.after), ("before", "QOR Stowline (Restore)"))
        self.assertEqual(screen.skin_path, "/own")
        self.assertEqual(type(screen).__name__, "Own")

    def test_a_sub_class_may_call_its_operations_before_its_constructor_only_in_vain(self):
        class Early(stowline.StowlineRestore):
            def __init__(self, session):
                self.fill_list()

        self.assertIsInstance(self.raised(Early, self.session), AttributeError)

    def test_a_sub_class_may_override_an_attribute(self):
        class Fixed(stowline.Stowline):
            restoretype = property(lambda self: "fixed")
            extra = "extra"

        screen = Fixed(self.session, "/plugin")
        self.assertEqual((screen.restoretype, screen.extra), ("fixed", "extra"))

    def test_a_sub_class_of_a_sub_class_of_the_engine_is_an_engine(self):
        class First(stowline.BackupActions):
            def createSettingFile(self):
                self.called = "first"
                return super(First, self).createSettingFile()

        class Second(First):
            def __init__(self, extra, **keywords):
                super(Second, self).__init__(**keywords)
                self.extra = extra

        engine = Second("x", backuptype="auto")
        self.receiver.add_file(full_path("settings_%s.auto.tar.gz" % STAMP))
        main = self.menu("backup")
        main.backupactions = engine
        main["menu"].entries = [("settingbackup",)]
        main.runMenuEntry()
        self.assertIs(main.backupactions, engine)
        self.assertEqual((engine.called, engine.extra), ("first", "x"))
        self.assertEqual(self.session.opened[-1][1][0], "Settings backup finished succesfully")

    def test_a_sub_class_may_override_what_the_constructor_sets(self):
        titles = []

        class Titled(stowline.StowlineHelpScreen):
            title = property(lambda self: "fixed", lambda self, text: titles.append(text))

        self.assertEqual(Titled(self.session, "a", "/a").title, "fixed")
        self.assertEqual(titles, ["Qor Stowline"])


class Framework(SurfaceTest):
    """What others may replace is asked for where it is used."""

    def test_replaced_widgets_are_used(self):
        main, restore = self.menu(), self.restore_list()
        other = self.made("Stowline")["menu"]
        main["menu"] = other
        main.createMenu()
        self.assertEqual([row[0] for row in other.entries], [row[0] for row in main.list])
        other.index = 2
        main.runMenuEntry()
        self.assertEqual(main.restoretype, "settingrestore")
        rows = self.made("StowlineRestore")["filelist"]
        restore["filelist"] = rows
        rows.rows = ["other"]
        restore.deleteFile()
        self.assertEqual((restore.sel, restore.val), ("other", full_path("other")))
        screen = self.made("StowlineHelpScreen")
        screen["messagetext"] = label = stowline.Label("")
        screen.createMessage()
        self.assertIn(CONFIGURATION, label.text)

    def test_a_missing_widget_is_a_key_error(self):
        for name, widget, operation in (("Stowline", "menu", "createMenu"),
                                        ("StowlineRestore", "filelist", "fill_list"),
                                        ("StowlineHelpScreen", "messagetext", "createMessage")):
            made = self.made(name)
            del made[widget]
            self.assertIsInstance(self.raised(getattr(made, operation)), KeyError)

    def test_a_replaced_session_is_used(self):
        for name, key in (("Stowline", "settingrestore"), ("StowlineRestore", None)):
            made, other = self.made(name), fakes.Session()
            made.session = other
            if key:
                made["menu"].entries = [(key,)]
            press(made, "ok")
            self.assertEqual(len(other.opened), 1, name)

    def test_a_replaced_skin_path_is_used(self):
        main = self.menu()
        main.skin_path = "/other"
        main["menu"].entries = [("settingrestore",)]
        main.runMenuEntry()
        self.assertEqual(self.session.opened[-1][1], ("settingrestore", "/other"))

    def test_a_replaced_close_is_called(self):
        closed = []
        main = self.menu()
        main.close = lambda *result: closed.append(result)
        press(main, "cancel")
        self.assertEqual(closed, [(True,)])

    def test_a_replaced_package_component_is_used(self):
        for name, key in (("Stowline", "installlocalplugin"), ("StowlineRestore", None)):
            made = self.made(name)
            made.ipkg = component = Commands()
            if key:
                made["menu"].entries = [(key,)]
            else:
                made.restoretype = "plugininstall"
            press(made, "ok")
            self.assertEqual(component.started, [UPDATE], name)

    def test_a_framework_may_define_title_as_a_property(self):
        titles = {}
        stowline.Screen.title = property(lambda self: titles[id(self)],
                                         lambda self, text: titles.__setitem__(id(self), text))
        try:
            for name, title in (("Stowline", "QOR Stowline (Restore)"),
                                ("StowlineRestore", "QOR Stowline"),
                                ("StowlineHelpScreen", "Qor Stowline")):
                made = self.made(name)
                self.assertEqual((titles[id(made)], made.title), (title, title))
                self.assertEqual(made["title"].text, title)
                self.assertNotIn("title", vars(made))
        finally:
            del stowline.Screen.title

    def test_a_constructor_may_be_called_again(self):
        main = self.menu()
        main.reloadPluginlist = True
        main.restoretype = "x"
        engine = main.backupactions
        main.__init__(self.session, "/again", "backup")
        self.assertEqual((main.skin_path, main.screentype), ("/again", "backup"))
        self.assertEqual((main.reloadPluginlist, main.list), (False, []))
        self.assertIsNot(main.backupactions, engine)

    def test_replaced_names_of_the_module_are_used(self):
        names = dict(vars(stowline))
        try:
            stowline.BackupActions = lambda kind: "engine " + kind
            stowline.getBackupRestorePath = lambda: "/replaced"
            stowline._ = lambda text: "<%s>" % text
            main = self.menu()
            main.checkFolders()
            self.assertEqual((main.backupactions, main.backuprestorepath, main.title),
                             ("engine manual", "/replaced", "<QOR Stowline> (<Restore>)"))
            del stowline.getBackupRestorePath
            self.assertIsInstance(self.raised(main.checkFolders), NameError)
        finally:
            vars(stowline).clear()
            vars(stowline).update(names)

    def test_the_frameworks_constructor_gets_the_session(self):
        original, given = stowline.Screen.__init__, []

        def construct(self, session):
            given.append(session)
            original(self, session)

        stowline.Screen.__init__ = construct
        try:
            for name in ("Stowline", "StowlineRestore", "StowlineHelpScreen"):
                made = self.made(name)
                self.assertEqual(given, [made.session], name)
                del given[:]
        finally:
            stowline.Screen.__init__ = original

    def test_what_a_package_lists_may_be_of_any_type(self):
        class Anything(object):
            __hash__ = None

            def __eq__(self, other):
                return True

        class Line(str):
            def strip(self):
                return Anything()

        self.receiver.add_file("/list", lines=[Line("/files/b")])
        self.receiver.add_directory("/files", ["a"])
        self.assertEqual(stowline.BackupActions().saveUserFiles("/list", ["/files/"], ["/files"]), [])

    def test_an_operation_can_be_wrapped(self):
        wrapped = functools.wraps(stowline.Stowline.keyCancel)(lambda self: None)
        self.assertEqual((wrapped.__module__, wrapped.__name__), ("Stowline", "keyCancel"))

    def test_a_copy_of_an_object_is_one(self):
        copied = copy.copy(self.made("BackupActions"))
        self.receiver.add_file(full_path("settings_%s.tar.gz" % STAMP))
        self.assertIs(copied.createSettingFile(), True)

    def test_an_object_may_become_one_of_another_class(self):
        main = self.menu()
        main.__class__ = stowline.StowlineRestore
        self.assertIsInstance(self.raised(main.KeyOk), AttributeError)

    def test_the_events_are_the_frameworks(self):
        restore = self.made("StowlineRestore", restoretype="plugininstall", val=full_path(PLUGINS))
        original = stowline.IpkgComponent.EVENT_DONE
        stowline.IpkgComponent.EVENT_DONE = "done"
        try:
            restore.ipkgCallback(original, None)
            self.assertEqual(restore.restoretype, "plugininstall")
            restore.ipkgCallback("done", None)
            self.assertEqual(restore.restoretype, "")
        finally:
            stowline.IpkgComponent.EVENT_DONE = original


class Commands(object):
    def __init__(self):
        self.started = []

    def startCmd(self, command):
        self.started.append(command)


if __name__ == "__main__":
    unittest.main()
