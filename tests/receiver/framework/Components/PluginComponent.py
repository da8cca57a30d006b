from journal import note, quoted


class PluginComponent(object):
    def clearPluginList(self):
        note("plugins.clearPluginList()")

    def readPluginList(self, directory):
        note("plugins.readPluginList(%s)" % quoted(directory))


plugins = PluginComponent()
