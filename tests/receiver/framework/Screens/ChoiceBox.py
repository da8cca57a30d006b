class ChoiceBox(object):
    pass
