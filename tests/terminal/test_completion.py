"""The words of the command, completed by real shells."""

import os
import re
import subprocess
import unittest

from terminal import PROMPT, STOWLINE, Directory, wait_until

COMMANDS = ("", "auto", "completion", "desk", "doctor", "list", "receiver", "receiver new", "receiver flash", "show",
            "verify")


def help_of(command):
    return subprocess.run([STOWLINE, *command.split(), "--help"], check=True, stdout=subprocess.PIPE).stdout.decode()


def offered(*words):
    """Returns what bash offers for the last of the words."""
    script = '. <("$0" completion bash); COMP_WORDS=(stowline "$@"); COMP_CWORD=$#; _stowline; printf "%s\\n" "${COMPREPLY[@]}"'
    done = subprocess.run(["bash", "-c", script, STOWLINE, *words], check=True, stdout=subprocess.PIPE)
    return done.stdout.decode().split()


class WordsTest(unittest.TestCase):
    def test_every_option_of_every_command_is_offered(self):
        for command in COMMANDS:
            with self.subTest(command):
                options = re.findall(r"^  (?:-h,)?(--[a-z-]+)", help_of(command), re.MULTILINE)
                self.assertGreater(len(options), 0)
                self.assertEqual(sorted(offered(*command.split(), "--")), sorted(options))

    def test_commands_and_values_are_offered(self):
        for words, expected in (
                (("",), ["receiver", "desk", "auto", "doctor", "list", "show", "verify", "completion"]),
                (("receiver", ""), ["new", "flash"]),
                (("completion", ""), ["bash", "zsh"]),
                (("auto", "--jobs", ""), ["settings", "config", "plugins"]),
                (("auto", "--jobs", "c"), ["config"]),
                (("auto", "--jobs", "config,"), ["config,settings", "config,config", "config,plugins"]),
                (("auto", "--jobs", "config,settings,p"), ["config,settings,plugins"]),
                (("desk", "--theme", ""), ["plain", "dark", "light"])):
            with self.subTest(words):
                self.assertEqual([word for word in offered(*words) if not word.startswith("--")], expected)

    def test_where_a_file_is_meant_the_shell_offers_its_own_names(self):
        for words in (("verify", ""), ("list", "/me"), ("show", "x", "--against", ""), ("desk", "--log", "")):
            with self.subTest(words):
                self.assertEqual(offered(*words), [])


class ShellTest(unittest.TestCase):
    def setUp(self):
        self.directory = Directory(self)
        os.symlink(STOWLINE, os.path.join(self.directory.path, "stowline"))
        with open(os.path.join(self.directory.path, "a backup"), "w", encoding="ascii"):
            pass
        self.terminal = self.directory.terminal()

    def start(self, shell, *commands):
        """Has the shell read its completion, after these commands."""
        for command in ("cd %s; PATH=.:$PATH" % self.directory.path, *commands):
            self.terminal.shell(command)
        self.terminal.shell(". <(stowline completion %s); clear; echo re''ady" % shell)
        wait_until(lambda: self.terminal.lines()[0] == "ready", "the shell", self.terminal.text)

    def assert_completed(self, typed, line):
        self.terminal.press(*[{" ": "Space"}.get(key, key) for key in typed], "Tab")
        wait_until(lambda: any(shown.endswith(line) for shown in self.terminal.lines()), line, self.terminal.text)
        self.terminal.press("C-u")

    def assert_shell_completes(self):
        self.assert_completed("stowline ver", "stowline verify")
        self.assert_completed("stowline auto --jo", "stowline auto --jobs")
        self.assert_completed("stowline auto --jobs pl", "stowline auto --jobs plugins")
        self.assert_completed("stowline auto --jobs config,pl", "stowline auto --jobs config,plugins")
        self.assert_completed("stowline verify a", "stowline verify a\\ backup")

    def test_bash_completes_at_the_tab_key(self):
        self.start("bash")
        self.assert_shell_completes()

    def test_zsh_completes_at_the_tab_key(self):
        self.start("zsh", "PS1='%s' exec zsh -f" % PROMPT, "autoload -U compinit; compinit -D")
        self.assert_shell_completes()


if __name__ == "__main__":
    unittest.main()
