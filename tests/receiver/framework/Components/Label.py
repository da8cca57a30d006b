from journal import note, quoted
from Components.component import Component


class Label(Component):
    def __init__(self, text=""):
        Component.__init__(self, "Label(%s)" % quoted(text))
        self.text = text

    def setText(self, text):
        note("%s.setText(%s)" % (self.name, quoted(text)))
        self.text = text
