#!/usr/bin/env python3
"""Draws the floors of the house: draw_floors.py > docs/images/floors.svg.

Each row is a floor of tools/lint/floors.txt, the ground at the bottom; each room tells what it
is for. `./dev lint map` compares the picture with the tree.
"""

import pathlib
import sys
from xml.sax.saxutils import escape

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "lint"))

from floors import KNOT, PUBLIC_ROOMS, load_rooms

WIDTH, ROW, GAP, MARGIN, TITLE = 1180, 46, 6, 12, 30
COLOURS = {"public": "#d7e8f7", "knot": "#f8e6cc", "": "#f1f1ee"}
FIRST_OF_STAGE = 30


def kind_of(folder):
    if folder.rpartition("/")[2] in PUBLIC_ROOMS:
        return "public"
    return "knot" if folder in KNOT else ""


def text(x, y, words, size, more=""):
    return (f'<text x="{x}" y="{y}" font-size="{size}" text-anchor="middle"{more}>'
            f"{escape(words)}</text>")


def draw_house(title, rooms, top):
    """The rows of one house from the roof down; returns the lines and where they end."""
    lines = [f'<text x="{MARGIN}" y="{top + 20}" font-size="15" font-weight="bold">{title}</text>']
    y = top + TITLE
    for floor in sorted({room.floor for room in rooms}, reverse=True):
        row = [room for room in rooms if room.floor == floor]
        width = (WIDTH - 2 * MARGIN - GAP * (len(row) - 1)) / len(row)
        for place, room in enumerate(row):
            x = MARGIN + place * (width + GAP)
            lines.append(f'<rect x="{x:.0f}" y="{y}" width="{width:.0f}" height="{ROW}" rx="4" '
                         f'fill="{COLOURS[kind_of(room.folder)]}" stroke="#8a8a85"/>')
            middle = f"{x + width / 2:.0f}"
            lines.append(text(middle, y + 18, room.folder, 13, ' font-weight="bold"'))
            lines.append(text(middle, y + 36, room.purpose, 11))
        y += ROW + GAP
    return lines, y


def draw():
    rooms = load_rooms()
    stage, y = draw_house("stage/: a host of our own",
                          [room for room in rooms if room.floor >= FIRST_OF_STAGE], 0)
    house, y = draw_house("src/: the library",
                          [room for room in rooms if room.floor < FIRST_OF_STAGE], y + 10)
    key = [f'<rect x="{MARGIN + place * 330}" y="{y + 8}" width="16" height="16" rx="3" '
           f'fill="{COLOURS[kind]}" stroke="#8a8a85"/>'
           f'<text x="{MARGIN + 24 + place * 330}" y="{y + 21}" font-size="12">{said}</text>'
           for place, (kind, said) in enumerate([
               ("public", "public: installed with the SDK"),
               ("knot", "the one knot: sources may include round"), ("", "private")])]
    height = y + 34
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" '
        f'font-family="DejaVu Sans, sans-serif" fill="#222">',
        f'<rect width="{WIDTH}" height="{height}" fill="#ffffff"/>',
        *stage, *house, *key, "</svg>", ""])


if __name__ == "__main__":
    sys.stdout.write(draw())
