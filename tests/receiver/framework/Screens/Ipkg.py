class Ipkg(object):
    pass
