from journal import bracketed, note
from Components.component import Component


class MenuList(Component):
    class Content(object):
        def __init__(self, owner):
            self.owner = owner

        def setList(self, rows):
            note("%s.l.setList(%s)" % (self.owner.name, bracketed(rows)))
            self.owner.rows = rows

    def __init__(self, list):
        Component.__init__(self, "MenuList(%s)" % bracketed(list))
        self.rows = list
        self.index = 0
        self.l = MenuList.Content(self)

    def getCurrent(self):
        note(self.name + ".getCurrent()")
        return self.rows[self.index] if self.index < len(self.rows) else None
