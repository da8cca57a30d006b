from journal import note


class Console(object):
    def __init__(self):
        note("ComConsole()")
