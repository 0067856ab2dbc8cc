#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the tray's icons into resources/images.

All shapes lie on a grid of 18 points. The pictures have 12 pixels to a point, so that every size
from 18 pixels up to 216 that divides 216 comes out of them with sharp edges.
"""

import pathlib
import struct
import sys
import zlib

GRID = 18
SCALE = 12
SAMPLES = 4  # in each direction within a pixel

ROOF = ((1, 8), (9, 1), (17, 8), (17, 10.65), (9, 3.65), (1, 10.65))
# Left edge, top, width, height: the level of a voice under the roof.
BARS = ((4, 11, 2, 5), (8, 8, 2, 9), (12, 11, 2, 5))
# The same within the round of the active icon.
SMALL_ROOF = ((3, 8.5), (9, 3), (15, 8.5), (15, 10.9), (9, 5.4), (3, 10.9))
SMALL_BARS = ((5, 11, 2, 3), (8, 8, 2, 7), (11, 11, 2, 3))
RED = (224, 49, 43)
WHITE = (255, 255, 255)
BLACK = (0, 0, 0)
# Readable on dark and on light, for panels that do not colour symbols themselves.
GREY = (134, 134, 134)


def in_polygon(x, y, corners):
    inside = False
    for (x1, y1), (x2, y2) in zip(corners, corners[1:] + corners[:1]):
        if (y1 > y) != (y2 > y) and x < x1 + (y - y1) / (y2 - y1) * (x2 - x1):
            inside = not inside
    return inside


def in_rounded(x, y, left, top, width, height, radius):
    dx = max(left + radius - x, x - (left + width - radius), 0)
    dy = max(top + radius - y, y - (top + height - radius), 0)
    on_it = left <= x <= left + width and top <= y <= top + height
    return on_it and dx * dx + dy * dy <= radius * radius


def in_glyph(x, y, roof=ROOF, bars=BARS):
    return in_polygon(x, y, roof) or any(in_rounded(x, y, *bar, 1) for bar in bars)


def in_small_glyph(x, y):
    return in_glyph(x, y, SMALL_ROOF, SMALL_BARS)


def coverage(shape, px, py):
    hits = 0
    for sy in range(SAMPLES):
        for sx in range(SAMPLES):
            x = (px + (sx + 0.5) / SAMPLES) / SCALE
            y = (py + (sy + 0.5) / SAMPLES) / SCALE
            hits += shape(x, y)
    return hits / SAMPLES**2


def template(colour):
    def pixel(px, py):
        return (*colour, round(255 * coverage(in_glyph, px, py)))

    return pixel


def active(px, py):
    body = coverage(lambda x, y: in_rounded(x, y, 0, 0, GRID, GRID, 5), px, py)
    glyph = coverage(in_small_glyph, px, py)
    mixed = (round(r + (w - r) * glyph) for r, w in zip(RED, WHITE))
    return (*mixed, round(255 * body))


def png(pixel):
    size = GRID * SCALE
    rows = b"".join(
        b"\0" + b"".join(bytes(pixel(x, y)) for x in range(size)) for y in range(size)
    )

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return (
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", header)
        + chunk(b"IDAT", zlib.compress(rows, 9))
        + chunk(b"IEND", b"")
    )


def symbol():
    """The template for panels that colour symbols by themselves."""
    corners = " ".join(f"{x},{y}" for x, y in ROOF)
    bars = "".join(
        f'<rect x="{x}" y="{y}" width="{w}" height="{h}" rx="1"/>' for x, y, w, h in BARS
    )
    return (
        '<svg xmlns="http://www.w3.org/2000/svg" width="18" height="18" viewBox="0 0 18 18">'
        f'<g fill="#{"".join(f"{c:02x}" for c in GREY)}"><polygon points="{corners}"/>{bars}</g>'
        "</svg>\n"
    )


def main():
    folder = pathlib.Path(__file__).resolve().parent.parent / "resources" / "images"
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "MenuIcon.png").write_bytes(png(template(BLACK)))
    (folder / "MenuIconActive.png").write_bytes(png(active))
    (folder / "MenuIcon-symbolic.png").write_bytes(png(template(GREY)))
    (folder / "MenuIcon-symbolic.svg").write_text(symbol(), encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
