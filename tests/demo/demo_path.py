"""Lets tests import the demo's modules, and leaves the source tree as it is. Import it first."""

import pathlib
import sys

DRIVER = pathlib.Path(__file__).resolve().parents[2] / "tools" / "demo"
sys.dont_write_bytecode = True
sys.path.insert(0, str(DRIVER))
