from journal import note, quoted


class Pixmap(object):
    def __init__(self, path):
        self.path = path

    def __str__(self):
        return "<pixmap %s>" % self.path


def LoadPixmap(**keywords):
    path, cached = keywords.pop("path"), keywords.pop("cached")
    assert not keywords, keywords
    note("LoadPixmap(path=%s, cached=%s)" % (quoted(path), cached))
    return Pixmap(path)
