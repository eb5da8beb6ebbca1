#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Draws the framework's mark beside this script: a B with the streaks of a brindled coat, white on transparent.

The shape is told in points, y down. Its straight edges lie on whole points, so that they are sharp at one pixel a point
as at two.
"""

import pathlib
import struct
import zlib

WIDTH, HEIGHT = 15, 18
SAMPLES = 16  # along each side of a pixel


def in_bowl(x, y, right, top, bottom, radius):
    """Tells whether a point is in a box from the left edge on, round at its right end and a little at its left."""
    if not (1 <= x <= right and top <= y <= bottom):
        return False
    for edge, corner, direction in ((right, radius, 1), (1, 1.5, -1)):
        beyond = (x - edge) * direction + corner
        outside = max(top + corner - y, y - (bottom - corner))
        if beyond > 0 and outside > 0 and beyond**2 + outside**2 > corner**2:
            return False
    return True


def in_streak(x, y, left, right, top, bottom, lean):
    """Tells whether a point is in a stroke that tapers to the left and ends round at the right."""
    if not top <= y <= bottom:
        return False
    middle, radius = (top + bottom) / 2, (bottom - top) / 2
    start = left + (y - top) * lean
    return start <= x <= right - radius or (x - right + radius) ** 2 + (y - middle) ** 2 <= radius**2 and x > start


def in_mark(x, y):
    body = in_bowl(x, y, 13, 1, 9, 4) or in_bowl(x, y, 14, 8, 17, 4.5)
    streaks = (
        in_streak(x, y, 4, 10, 4, 6, 1.5)
        or in_streak(x, y, 0, 6, 8, 9, 0)
        or in_streak(x, y, 4, 11, 12, 14, 1.5)
    )
    return body and not streaks


def coverage(column, row, scale):
    hits = 0
    for i in range(SAMPLES):
        for j in range(SAMPLES):
            x = (column + (i + 0.5) / SAMPLES) / scale
            y = (row + (j + 0.5) / SAMPLES) / scale
            hits += in_mark(x, y)
    return round(255 * hits / SAMPLES**2)


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def picture(scale):
    """Answers the mark as a PNG file of white with alpha."""
    rows = bytearray()
    for row in range(HEIGHT * scale):
        rows.append(0)
        for column in range(WIDTH * scale):
            rows += bytes((255, 255, 255, coverage(column, row, scale)))
    header = struct.pack(">IIBBBBB", WIDTH * scale, HEIGHT * scale, 8, 6, 0, 0, 0)
    return (
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", header)
        + chunk(b"IDAT", zlib.compress(bytes(rows), 9))
        + chunk(b"IEND", b"")
    )


if __name__ == "__main__":
    folder = pathlib.Path(__file__).parent
    (folder / "apple.png").write_bytes(picture(1))
    (folder / "apple@2x.png").write_bytes(picture(2))
