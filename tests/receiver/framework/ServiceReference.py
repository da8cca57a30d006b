class ServiceReference(object):
    pass
