from journal import bracketed, quoted
from Components.component import Component


class ActionMap(Component):
    def __init__(self, contexts=(), actions={}, prio=0):
        pairs = ["%s: %s" % (quoted(key), actions[key].__name__) for key in sorted(actions)]
        text = "%s(%s, {%s}" % (type(self).__name__, bracketed(contexts), ", ".join(pairs))
        Component.__init__(self, text + (", %d)" % prio if prio else ")"))
        self.actions = actions


class NumberActionMap(ActionMap):
    pass
