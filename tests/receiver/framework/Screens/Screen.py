import os

from journal import described, note, quoted

# Some frameworks have the title as a property, which shows it at once.
HAS_TITLE_PROPERTY = os.environ.get("STOWLINE_TITLE") == "property"


class Hooks(list):
    def append(self, hook):
        note("onLayoutFinish.append(%s)" % hook.__name__)
        list.append(self, hook)


class Screen(dict):
    """A screen: a widget table whose attributes and items are noted as they are set."""

    def __init__(self, session):
        note("Screen.__init__(session)")
        self.onLayoutFinish = Hooks()
        self.onClose = []
        self.closed = []

    def __setattr__(self, name, value):
        if name in ("title", "skin_path"):
            note("self.%s = %s" % (name, quoted(value)))
        object.__setattr__(self, name, value)

    def __setitem__(self, key, component):
        name = "self[%s]" % quoted(key)
        note("%s = %s" % (name, component.construction))
        component.name = name
        dict.__setitem__(self, key, component)

    def close(self, *result):
        note("close(%s)" % ", ".join(described(item) for item in result))
        self.closed.append(result)

    def doClose(self):
        """What a session does with a closed screen when its last operation has returned."""
        for hook in self.onClose:
            hook()
        self.clear()
        self.__dict__.clear()

    if HAS_TITLE_PROPERTY:
        @property
        def title(self):
            return self.shown_title

        @title.setter
        def title(self, title):
            self.shown_title = title
