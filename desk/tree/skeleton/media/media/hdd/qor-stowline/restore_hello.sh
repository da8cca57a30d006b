#!/bin/sh
# A script of the user's own: says hello, and writes down that it did.
echo "Hello from $(cat /etc/hostname)"
date > /media/hdd/restore_hello.done
