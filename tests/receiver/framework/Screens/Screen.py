from journal import described, note, quoted


class Hooks(list):
    def append(self, hook):
        note("onLayoutFinish.append(%s)" % hook.__name__)
        list.append(self, hook)


class Screen(dict):
    """A screen: a widget table whose attributes and items are noted as they are set."""

    def __init__(self, session):
        note("Screen.__init__(session)")
        self.onLayoutFinish = Hooks()
        self.closed = []

    def __setattr__(self, name, value):
        if name in ("title", "skin_path"):
            note("self.%s = %s" % (name, quoted(value)))
        dict.__setattr__(self, name, value)

    def __setitem__(self, key, component):
        name = "self[%s]" % quoted(key)
        note("%s = %s" % (name, component.construction))
        component.name = name
        dict.__setitem__(self, key, component)

    def close(self, *result):
        note("close(%s)" % ", ".join(described(item) for item in result))
        self.closed.append(result)
