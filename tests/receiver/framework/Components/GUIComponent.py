class GUIComponent(object):
    pass
