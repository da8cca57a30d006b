class Console(object):
    pass
