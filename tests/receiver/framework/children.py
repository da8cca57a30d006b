"""Runs a part of a test in a process of its own: a fresh one for each load of the module, and one that
may die without taking the test with it."""

import json
import os
import sys
import traceback


def answer_of(function, arguments):
    try:
        return ["returned", function(*arguments)]
    except BaseException:
        return ["raised", traceback.format_exc()]


def run_child(writing, function, arguments):
    status = 1
    try:
        answer = json.dumps(answer_of(function, arguments)).encode("ascii")
        with os.fdopen(writing, "wb") as pipe:
            pipe.write(answer)
        status = 0
    finally:
        os._exit(status)


def in_child(function, *arguments):
    """Returns what `function` returns there. What it raises, or its death, is an AssertionError here."""
    sys.stdout.flush()
    reading, writing = os.pipe()
    child = os.fork()
    if child == 0:
        os.close(reading)
        run_child(writing, function, arguments)
    os.close(writing)
    with os.fdopen(reading, "rb") as pipe:
        answer = pipe.read()
    status = os.waitpid(child, 0)[1]
    if status != 0:
        raise AssertionError("the process died: wait status %d" % status)
    kind, result = json.loads(answer.decode("ascii"))
    if kind == "raised":
        raise AssertionError(result)
    return result
