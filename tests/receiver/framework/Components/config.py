"""The configuration tree. An attribute that is set is noted with its place in the tree."""

from journal import note, quoted


class ConfigSubsection(object):
    def __init__(self):
        self.__dict__["place"] = None

    def __setattr__(self, name, element):
        place = "%s.%s" % (self.place, name)
        if not getattr(element, "quiet", False):
            note("%s = %s" % (place, element.construction()))
        element.__dict__["place"] = place
        self.__dict__[name] = element

    def construction(self):
        return "ConfigSubsection()"

    def save(self):
        note(self.place + ".save()")


class ConfigText(object):
    def __init__(self, **keywords):
        self.__dict__.update(keywords, content=keywords["default"], place=None)

    def construction(self):
        return "ConfigText(default=%s, visible_width=%s, fixed_size=%s)" % (
            quoted(self.default), self.visible_width, self.fixed_size)

    @property
    def value(self):
        note(self.place + ".value")
        return self.content

    def __setattr__(self, name, value):
        assert name == "value", name
        note("%s.value = %s" % (self.place, quoted(value)))
        self.__dict__["content"] = value

    def save(self):
        note(self.place + ".save()")


class Branch(ConfigSubsection):
    """A branch that is there before the module is."""
    quiet = True


class Config(Branch):
    def __init__(self):
        self.__dict__["place"] = "config"


class ConfigSelection(object):
    pass


class ConfigLocations(object):
    pass


def getConfigListEntry(*args):
    return args


config = Config()
config.plugins = Branch()
config.plugins.qorpanel = Branch()
