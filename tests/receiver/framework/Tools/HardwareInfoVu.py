import fakes
from journal import note


class HardwareInfoVu(object):
    def get_device_name(self):
        note("HardwareInfoVu().get_device_name()")
        return fakes.receiver.model
