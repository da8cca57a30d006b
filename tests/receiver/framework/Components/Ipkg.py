from journal import note


class IpkgComponent(object):
    EVENT_INSTALL = 0
    EVENT_DONE = 10
    EVENT_ERROR = 11
    CMD_INSTALL = 0
    CMD_UPDATE = 3

    def __init__(self):
        note("IpkgComponent()")
        self.callbacks = []

    def addCallback(self, callback):
        note("ipkg.addCallback(%s)" % callback.__name__)
        self.callbacks.append(callback)

    def startCmd(self, command, args=None):
        names = {self.CMD_UPDATE: "CMD_UPDATE", self.CMD_INSTALL: "CMD_INSTALL"}
        note("ipkg.startCmd(%s)" % names[command])
