#!/bin/sh
# Starts and stops the softcam that the user has chosen: the card relay.
cam=/usr/scam/cardrelay.conf
echo "current_cam.sh $1" >> /var/log/init.log
[ -f $cam ] || echo "current_cam.sh: $cam is missing" >> /var/log/init.log
