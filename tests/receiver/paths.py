"""Lets the tests find the stand-in framework and the module: STOWLINE_MODULE_DIR names its directory."""

import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "framework"))
sys.path.insert(0, os.environ["STOWLINE_MODULE_DIR"])
