from journal import described, note


class Selection(object):
    def getRoot(self):
        note("servicelist.getRoot()")
        return "<root>"

    def getCurrentSelection(self):
        note("servicelist.getCurrentSelection()")
        return "<service>"

    def setRoot(self, root):
        note("servicelist.setRoot(%s)" % root)

    def setCurrentSelection(self, service):
        note("servicelist.setCurrentSelection(%s)" % service)


class InfoBar(object):
    class Instance(object):
        selection = Selection()

        @property
        def servicelist(self):
            note("InfoBar.instance.servicelist")
            return self.selection

    instance = Instance()
