#!/usr/bin/python3
"""Takes one face out of each of Debian's font collections, as a device has its fonts.

usage: single_faces.py TARGET

Writes the Korean faces that the terminal registers to the folder TARGET, by the device's names.
"""
import pathlib
import sys

from fontTools.ttLib import TTCollection

SOURCE = pathlib.Path("/usr/share/fonts/opentype/noto")
FAMILY = 1  # a name's number

target = pathlib.Path(sys.argv[1])
target.mkdir(parents=True, exist_ok=True)
for weight in ("Light", "Regular", "Medium", "Bold"):
    with TTCollection(SOURCE / f"NotoSansCJK-{weight}.ttc", lazy=True) as collection:
        korean = next(
            face
            for face in collection
            if face["name"].getDebugName(FAMILY).startswith("Noto Sans CJK KR")
        )
        korean.save(target / f"NotoSansCJKkr-{weight}.otf", reorderTables=None)
