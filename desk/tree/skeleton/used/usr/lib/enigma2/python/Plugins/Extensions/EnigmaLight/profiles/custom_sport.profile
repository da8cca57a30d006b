saturation=1.1
speed=80
