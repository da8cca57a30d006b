"""Every use of the module does on the framework what it does on the recorder, and every error of
every operation ends where it ends there, as the very object that was raised."""

import io
import json
import os
import unittest

from receiver_test import ReceiverTest, journal, stowline
from flows import PREPARE

NOT_HERE = ["Load"]  # tested in test_load


def text(value):
    """Returns `value` with its texts in the interpreter's own kind of string."""
    if isinstance(value, dict):
        return dict((text(key), text(value[key])) for key in value)
    if isinstance(value, list):
        return [text(item) for item in value]
    return value if isinstance(value, str) else value.encode("utf-8")


with io.open(os.environ["STOWLINE_FLOWS"], encoding="utf-8") as exported:
    FLOWS = text(json.load(exported))


class Odd(Exception):
    """An exception of a kind that nothing expects."""


class Flows(ReceiverTest):
    def prepared(self, flow):
        self.setUp()
        run = PREPARE[flow["name"]](stowline, self.receiver)
        journal.take()
        return run

    def stateAfter(self, flow, index):
        state = None
        for operation, after in flow["states"]:
            if flow["operations"].index(operation) <= index:
                state = after
        return state

    def failAt(self, flow, index, error):
        operation = flow["operations"][index]
        run = self.prepared(flow)
        journal.fail_at(index, error)
        raised = self.raised(run.go)
        done = journal.take()
        caught = flow["caught"].get(operation)
        self.assertIs(raised, error if caught is None else None)
        self.assertEqual(done, flow["operations"][:index + 1] + (caught or []))
        state = self.stateAfter(flow, index)
        if state is not None:
            self.assertEqual(run.state(), state)

    def test_every_exported_flow_is_run(self):
        names = [flow["name"] for flow in FLOWS]
        self.assertEqual(sorted(names), sorted(list(PREPARE) + NOT_HERE))


def runs_to_its_end(flow):
    def test(self):
        run = self.prepared(flow)
        run.go()
        self.assertEqual(journal.take(), flow["operations"])
        if "end" in flow:
            self.assertEqual(run.state(), flow["end"])
    return test


def errors_end_where_they_should(flow):
    def test(self):
        for index in range(len(flow["operations"])):
            for error in (OSError(28, "No space left on device"), Odd("odd")):
                try:
                    self.failAt(flow, index, error)
                except AssertionError as failure:
                    self.fail("%r at %s: %s" % (error, flow["operations"][index], failure))
    return test


for _flow in FLOWS:
    if _flow["name"] not in NOT_HERE:
        setattr(Flows, "test_%s_runs_to_its_end" % _flow["name"], runs_to_its_end(_flow))
        setattr(Flows, "test_errors_of_%s_end_where_they_should" % _flow["name"],
                errors_end_where_they_should(_flow))

if __name__ == "__main__":
    unittest.main()
