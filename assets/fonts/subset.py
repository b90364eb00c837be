#!/usr/bin/python3
"""Makes the carried fonts anew, each with every character of the texts it is for.

    assets/fonts/subset.py NotoSansCJK-Regular.ttc

VarnhalSans.otf is for the pictures and the client's programs: it has the characters of all texts in setup/, client/ and
assets/ (but the word lists, which no program shows), so a sentence that is changed mostly finds its characters there
already. VarnhalSansSetup.otf is the installer's, which is to be little more than its payload: it has those of setup/
and the skin alone. Both have all of ASCII. Run this when the build says that a font lacks a character. It wants
Debian's fonttools, and the face of the package fonts-noto-cjk.
"""
import pathlib
import re
import sys

from fontTools import subset
from fontTools.ttLib import TTCollection

ROOT = pathlib.Path(__file__).resolve().parents[2]
SIMPLIFIED_CHINESE = 2  # of the faces in the collection
FONTS = {  # family: the folders and files whose texts it is for
    "Varnhal Sans": ("setup", "client", "assets"),
    "Varnhal Sans Setup": ("setup", "assets/skin.xml"),
}
ASCENT, DESCENT = 880, 240  # of 1000; what the glyphs reach. The face itself asks for half as much again as leading,
                            # which would make text of a given cell height too small to read.


def text_of(path):
    """The file's text: UTF-8, or else code page 936. Empty: it is no text."""
    data = path.read_bytes()
    for encoding in ("utf-8", "gbk"):
        try:
            return data.decode(encoding)
        except UnicodeDecodeError:
            pass
    return ""


def characters(places):
    found = {chr(code) for code in range(0x20, 0x7F)}
    for place in places:
        for path in [ROOT / place, *(ROOT / place).rglob("*")]:
            if path.suffix in (".cpp", ".h", ".rc", ".xml", ".svg", ".txt") and path.name != "words.txt":
                text = text_of(path)
                for run in re.findall(r"(?:\\x[0-9A-Fa-f]{2})+", text):  # bytes of code page 936
                    text += bytes.fromhex(run.replace("\\x", "")).decode("gbk")
                found.update(c for c in text if c.isprintable())
    return found


def make(face, family, places):
    font = TTCollection(face, recalcTimestamp=False).fonts[SIMPLIFIED_CHINESE]
    options = subset.Options(layout_features=[], name_IDs=[0, 1, 2, 3, 4, 5, 6, 13, 14], name_languages=[0x409])
    subsetter = subset.Subsetter(options)
    subsetter.populate(text="".join(characters(places)))
    subsetter.subset(font)
    name = family.replace(" ", "")
    for record in font["name"].names:
        if record.nameID in (1, 3, 4, 6):
            record.string = name if record.nameID in (3, 6) else family
    font["hhea"].ascent, font["hhea"].descent = ASCENT, -DESCENT
    font["OS/2"].sTypoAscender, font["OS/2"].sTypoDescender = ASCENT, -DESCENT
    font["OS/2"].usWinAscent, font["OS/2"].usWinDescent = ASCENT, DESCENT
    font["CFF "].cff.fontNames[0] = name
    font.save(pathlib.Path(__file__).with_name(name + ".otf"))


for family, places in FONTS.items():
    make(sys.argv[1], family, places)
