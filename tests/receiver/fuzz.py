"""Uses the module as nobody would, for so many seconds: random scenarios with objects that raise, call back or come
back to life wherever they are touched, operations nested without an end, in threads with a small stack, and without
memory where the interpreter can pretend that (its own test module, where it has one). Whatever is raised is fine; what ends
the process is not, nor what stays alive.

    fuzz.py SECONDS [SEED]
"""

import gc
import random
import sys
import threading
import time

import scenarios
from scenarios import Scenario, fakes, journal, stowline

try:
    import _testcapi
except ImportError:
    _testcapi = None

SMALL_STACK = 256 * 1024  # bytes
WARMING = 200             # scenarios
OBJECT_SLACK = 0.25       # a scenario: what the stand-in framework keeps; a leak is one in most scenarios

RAISED = [ValueError, KeyError, OSError, UnicodeError, MemoryError, KeyboardInterrupt, SystemExit, StopIteration]


class Nasty(object):
    """Raises, or does something with the objects of the scenario, whatever it is asked for."""
    scenario = None
    kept = []

    def __init__(self, pick):
        self.__dict__["pick"] = pick

    def act(self, *result):
        pick = self.__dict__["pick"]
        what = pick(["raise", "raise", "result", "result", "clear", "delete", "call", "itself"])
        if what == "raise":
            raise pick(RAISED)("nasty")
        if what == "itself":
            return self
        target = pick(Nasty.scenario.objects or [None])
        if what == "clear" and target is not None:
            target.__dict__.clear()
        if what == "delete" and target is not None and vars(target):
            vars(target).pop(pick(sorted(vars(target))), None)
        if what == "call" and target is not None:
            Nasty.scenario.attempt(Nasty.scenario.call)
        return pick(list(result) + [None, 1, "text", [], self])

    def __eq__(self, other):
        return self.act(True, False)

    def __lt__(self, other):
        return self.act(True, False)

    __ge__ = __lt__

    def __getattr__(self, name):
        if name.startswith("__"):
            raise AttributeError(name)
        return self.act()

    def __call__(self, *args, **keywords):
        return self.act()

    def __getitem__(self, key):
        return self.act()

    def __setitem__(self, key, value):
        self.act()

    def __iter__(self):
        return self.act(iter([1, self, "text"]))

    def __next__(self):
        return self.act()

    next = __next__

    def __len__(self):
        return self.act(0, 3)

    def __contains__(self, item):
        return self.act(True, False)

    def __add__(self, other):
        return self.act()

    __radd__ = __mod__ = __rmod__ = __add__

    def __str__(self):
        return self.act("text")

    def __bool__(self):
        return self.act(True, False)

    __nonzero__ = __bool__
    __hash__ = None

    def __del__(self):
        if self.__dict__["pick"]([True, False, False]) and len(Nasty.kept) < 10:
            Nasty.kept.append(self)  # back to life


class Fuzzed(Scenario):
    def __init__(self, seed):
        super(Fuzzed, self).__init__(seed)
        Nasty.scenario = self

    def nested(self):
        """Makes an operation call itself without an end."""
        target = self.pick(self.objects)
        name = self.pick([name for name in dir(type(target)) if not name.startswith("_") and name not in dir(dict)])
        setattr(target, name, lambda *args, **keywords: getattr(type(target), name)(target, *args, **keywords))
        target.fill_list = target.createMenu = lambda: self.call()

    def in_a_thread(self):
        threading.stack_size(self.pick([0, SMALL_STACK]))
        threads = [threading.Thread(target=self.attempt, args=(self.call,)) for _ in range(2)]
        threading.stack_size(0)
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    def without_memory(self):
        start = self.random.randrange(1, 200)
        _testcapi.set_nomemory(start, self.pick([start + 1, start + 1, start + 20, 0]))
        try:
            self.call()
        finally:
            _testcapi.remove_mem_hooks()

    STEPS = Scenario.STEPS + [(nested, 1)]
    if hasattr(_testcapi, "set_nomemory"):
        STEPS = STEPS + [(without_memory, 4)]
    # Not in one half: a thread may be about to end while the memory runs out, which the interpreter itself cannot bear.
    STEPS_WITH_THREADS = Scenario.STEPS + [(nested, 1), (in_a_thread, 2)]


def values_of(values, pick):
    return lambda: values() + [Nasty(pick) for _ in range(12)]


def shown(value, depth=3):
    return None  # looking at the objects would only wake them up


def play(seed):
    try:
        Fuzzed(seed).play()
    except (Exception, KeyboardInterrupt, SystemExit):
        pass  # the scenario's own steps stumble over what the objects do


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2]) if len(sys.argv) > 2 else int(time.time())
    scenarios.odd_values = values_of(scenarios.odd_values, random.Random(seed).choice)
    scenarios.shown = shown
    output, names = sys.stdout, dict(stowline.__dict__)
    end, played, before = time.time() + seconds, 0, None
    while time.time() < end:
        if time.time() > end - seconds / 2:
            Fuzzed.STEPS = Fuzzed.STEPS_WITH_THREADS
        play(seed + played)
        sys.stdout = output
        stowline.__dict__.clear()
        stowline.__dict__.update(names)
        played += 1
        if played == WARMING:
            before = objects()
    print("%d scenarios from seed %d" % (played, seed))
    left = objects() - before if before is not None else 0
    if left > OBJECT_SLACK * played:
        sys.exit("%d objects are left over" % left)


def objects():
    Nasty.scenario = None
    del Nasty.kept[:], journal.lines[:], fakes.Lines.open_files[:]
    fakes.receiver = fakes.Receiver()
    journal.fail_at(-1, None)
    for _ in range(3):
        gc.collect()
        del Nasty.kept[:]
    return len(gc.get_objects())


if __name__ == "__main__":
    main()
