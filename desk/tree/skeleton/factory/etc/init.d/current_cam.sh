#!/bin/sh
# Starts and stops the softcam that the user has chosen: none so far.
echo "current_cam.sh $1" >> /var/log/init.log
