#!/bin/sh
# How full the media are.
du -s /media/hdd /media/usb
