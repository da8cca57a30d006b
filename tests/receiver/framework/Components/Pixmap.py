class Pixmap(object):
    pass
