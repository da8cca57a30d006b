"""What the framework's components have in common here: a name in the journal."""

from journal import note


class Component(object):
    def __init__(self, construction):
        self.name = self.construction = construction
        note(construction)
