from journal import note


class NimManager(object):
    def readTransponders(self):
        note("nimmanager.readTransponders()")


nimmanager = NimManager()
