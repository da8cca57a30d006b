import fakes
from journal import note, quoted

SCOPE_PLUGINS = 5


def resolveFilename(scope, base="", path_prefix=None):
    assert scope == SCOPE_PLUGINS, scope
    note("resolveFilename(SCOPE_PLUGINS%s)" % (", " + quoted(base) if base else ""))
    return "/usr/lib/enigma2/python/Plugins/" + base


def fileExists(path, mode="r"):
    note("fileExists(%s)" % quoted(path))
    return fakes.receiver.has(path)
