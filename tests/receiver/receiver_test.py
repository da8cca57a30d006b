"""What the tests in the interpreter have in common: the module, loaded on the stand-in framework.

STOWLINE_MODULE_DIR names the directory of Stowline.so, STOWLINE_FLOWS the exported flows.
"""

import sys
import unittest

import paths  # noqa: F401

import fakes
import journal

stowline = fakes.import_module()
loading = journal.take()


class ReceiverTest(unittest.TestCase):
    """Each test has a receiver of its own, and sees standard output as operations."""

    def setUp(self):
        self.receiver = fakes.receiver = fakes.Receiver()
        self.session = fakes.Session()
        stowline.config.plugins.qorpanel.stowline.backuprestorepath.__dict__["content"] = "/media/hdd/"
        journal.take()
        self.stdout, sys.stdout = sys.stdout, fakes.Log()

    def tearDown(self):
        sys.stdout = self.stdout
        self.assertEqual(fakes.Lines.open_files, [])

    def raised(self, call, *args, **keywords):
        """Returns the exception that `call` raises, none when it raises none."""
        try:
            call(*args, **keywords)
        except Exception as error:
            return error
        return None
