#!/usr/bin/python3
"""Makes VarnhalSans.otf anew: the carried font, with every character of the programs' own texts.

    assets/fonts/subset.py NotoSansCJK-Regular.ttc

Run it when the build says that the font lacks a character. Wants Debian's fonttools, and the face of the package
fonts-noto-cjk. The characters are those of all texts in setup/, client/ and assets/ (but the word lists, which no
program shows) and all of ASCII; so a sentence that is changed mostly finds its characters there already.
"""
import pathlib
import re
import sys

from fontTools import subset
from fontTools.ttLib import TTCollection

ROOT = pathlib.Path(__file__).resolve().parents[2]
SIMPLIFIED_CHINESE = 2  # of the faces in the collection
FAMILY = "Varnhal Sans"
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


def characters():
    found = {chr(code) for code in range(0x20, 0x7F)}
    for folder in ("setup", "client", "assets"):
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix in (".cpp", ".h", ".rc", ".xml", ".svg", ".txt") and path.name != "words.txt":
                text = text_of(path)
                for run in re.findall(r"(?:\\x[0-9A-Fa-f]{2})+", text):  # bytes of code page 936
                    text += bytes.fromhex(run.replace("\\x", "")).decode("gbk")
                found.update(c for c in text if c.isprintable())
    return found


def main():
    font = TTCollection(sys.argv[1], recalcTimestamp=False).fonts[SIMPLIFIED_CHINESE]
    options = subset.Options(layout_features=[], name_IDs=[0, 1, 2, 3, 4, 5, 6, 13, 14], name_languages=[0x409])
    subsetter = subset.Subsetter(options)
    subsetter.populate(text="".join(characters()))
    subsetter.subset(font)
    for record in font["name"].names:
        if record.nameID in (1, 3, 4, 6):
            record.string = FAMILY.replace(" ", "") if record.nameID in (3, 6) else FAMILY
    font["hhea"].ascent, font["hhea"].descent = ASCENT, -DESCENT
    font["OS/2"].sTypoAscender, font["OS/2"].sTypoDescender = ASCENT, -DESCENT
    font["OS/2"].usWinAscent, font["OS/2"].usWinDescent = ASCENT, DESCENT
    font["CFF "].cff.fontNames[0] = FAMILY.replace(" ", "")
    font.save(pathlib.Path(__file__).with_name("VarnhalSans.otf"))


main()
