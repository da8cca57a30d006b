saturation=1.4
speed=35
