#!/usr/bin/python3
"""Takes the outlines of the standby clock's characters out of the terminal's fonts.

usage: make_clock_digits.py FOLDER TARGET

FOLDER holds Debian's collections; TARGET becomes rows of C++ for screens/recognize/clock_digits.cpp.
"""
import pathlib
import sys

from fontTools.pens.recordingPen import RecordingPen
from fontTools.ttLib import TTCollection

CHARACTERS = "0123456789:"
# The face of a collection by its number is the same in all of them.
KOREAN = 1
VERBS = {"moveTo": "'M'", "lineTo": "'L'", "curveTo": "'C'"}


def rows(folder, weight):
    with TTCollection(folder / f"NotoSansCJK-{weight}.ttc", lazy=True) as collection:
        face = collection.fonts[KOREAN]
        glyphs, names = face.getGlyphSet(), face.getBestCmap()
        for character in CHARACTERS:
            glyph = glyphs[names[ord(character)]]
            pen = RecordingPen()
            glyph.draw(pen)
            steps = [(VERBS[verb], [value for point in points for value in point])
                     for verb, points in pen.value if verb in VERBS]
            text = ", ".join("{%s, {%s}}" % (verb, ", ".join(f"{value:g}" for value in values))
                             for verb, values in steps)
            yield f"{{QFont::{weight}, '{character}', {glyph.width:g}, {{{text}}}}},"


source, target = map(pathlib.Path, sys.argv[1:])
target.write_text("\n".join(row for weight in ("Light", "Medium") for row in rows(source, weight))
                  + "\n")
