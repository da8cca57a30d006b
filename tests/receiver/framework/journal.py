"""What the module does on the stand-in framework, one line an operation.

The lines are spelled like those of the recorder, so that one list of expected operations serves
both. Any operation can be made to fail.
"""

lines = []
_at = None
_error = None
_count = 0

ESCAPES = {"\n": "\\n", "\r": "\\r", "\t": "\\t", '"': '\\"', "\\": "\\\\"}


def note(line):
    """Takes note of an operation, and raises the chosen error if it is its turn."""
    global _count
    lines.append(line)
    _count += 1
    if _at is not None and _count - 1 == _at:
        raise _error


def fail_at(index, error):
    """Raises `error` at the operation number `index` from now on, counted from 0."""
    global _at, _error, _count
    _at, _error, _count = index, error, 0


def take():
    """Returns the operations so far and forgets them, and with them what was to fail."""
    global _at
    _at = None
    taken = list(lines)
    del lines[:]
    return taken


def quoted(text):
    return '"' + "".join(ESCAPES.get(character, character) for character in text) + '"'


def described(value):
    """Texts in quotes, lists and tuples alike as tuples, other objects in their own form."""
    if isinstance(value, (list, tuple)):
        return "(" + ", ".join(described(item) for item in value) + ")"
    if isinstance(value, (type(""), type(u""))):
        return quoted(value)
    return str(value)


def bracketed(values):
    return "[" + ", ".join(described(value) for value in values) + "]"
