def loadSkin(name, scope=None):
    pass
