from journal import note


class eServiceReference(object):
    pass


class eServiceCenter(object):
    pass


class eDVBDB(object):
    @classmethod
    def getInstance(cls):
        return cls()

    def reloadServicelist(self):
        note("eDVBDB.getInstance().reloadServicelist()")

    def reloadBouquets(self):
        note("eDVBDB.getInstance().reloadBouquets()")
