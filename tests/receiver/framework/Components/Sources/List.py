from journal import bracketed, note
from Components.component import Component


class List(Component):
    def __init__(self, list=()):
        Component.__init__(self, "List(%s)" % bracketed(list))
        self.entries = list
        self.index = 0

    def setList(self, list):
        note("%s.setList(%s)" % (self.name, bracketed(list)))
        self.entries = list

    def getCurrent(self):
        note(self.name + ".getCurrent()")
        return self.entries[self.index] if self.index < len(self.entries) else None
