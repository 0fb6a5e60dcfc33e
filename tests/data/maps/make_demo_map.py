#!/usr/bin/env python3
"""Draws the street-grid picture of the demo recording's area (Brisbane's
northern suburbs, 27.208 S to 27.214 S, 153.048 E to 153.056 E) as a PNG,
with its reference points beside it as a .rpt file.

    make_demo_map.py OUT.png SIZE [--no-points]
    make_demo_map.py --options OUT.dat PICTURE

The picture is north up and linear in latitude and longitude, so two
corners calibrate it; --no-points leaves the .rpt out, for trying the
calibration by hand. --options writes a settings record of the program's
defaults whose recent map 1 is PICTURE (the screenshots' --options)."""
import struct
import sys
import zlib

NORTH, SOUTH, WEST, EAST = -27.208, -27.214, 153.048, 153.056
PAPER, STREET, MAJOR, WATER, PARK, INK = (
    (246, 240, 222), (255, 255, 255), (240, 180, 90), (150, 190, 230), (190, 225, 170),
    (90, 80, 70))


def draw(size):
    rows = [[PAPER] * size for _ in range(size)]

    def box(x0, y0, x1, y1, colour):
        for y in range(max(0, y0), min(size, y1)):
            row = rows[y]
            for x in range(max(0, x0), min(size, x1)):
                row[x] = colour

    unit = size / 480.0
    box(int(300 * unit), int(40 * unit), int(420 * unit), int(140 * unit), PARK)
    box(0, int(380 * unit), size, int(410 * unit), WATER)
    step, width = int(60 * unit), max(2, int(6 * unit))
    for line in range(step // 2, size, step):
        box(line - width // 2, 0, line + width // 2, size, STREET)
        box(0, line - width // 2, size, line + width // 2, STREET)
    wide = max(3, int(10 * unit))
    box(int(240 * unit) - wide, 0, int(240 * unit) + wide, size, MAJOR)
    box(0, int(210 * unit) - wide, size, int(210 * unit) + wide, MAJOR)
    box(0, 0, size, 2, INK), box(0, size - 2, size, size, INK)
    box(0, 0, 2, size, INK), box(size - 2, 0, size, size, INK)
    return rows


def write_png(path, rows):
    height, width = len(rows), len(rows[0])
    raw = b"".join(b"\0" + bytes(c for pixel in row for c in pixel) for row in rows)

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    with open(path, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n")
        out.write(chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)))
        out.write(chunk(b"IDAT", zlib.compress(raw, 9)))
        out.write(chunk(b"IEND", b""))


def write_points(path, size):
    corners = [(0, 0, NORTH, WEST), (size, size, SOUTH, EAST)]
    with open(path, "w", newline="") as out:
        out.write("Tolvane Reference Points,1\r\nPicture,%d,%d\r\n" % (size, size))
        for number, (x, y, lat, lon) in enumerate(corners, 1):
            out.write("Point,%d,%.3f,%.3f,%.8f,%.8f\r\n" % (number, x, y, lat, lon))


def write_options(path, picture):
    record = bytearray(4904)

    def put(offset, fmt, *values):
        struct.pack_into("<" + fmt, record, offset, *values)

    record[0:10] = b"2.4.0.3151"
    for offset in (20, 24, 28, 32, 604, 4820, 4824, 4828, 4832, 4836, 4864, 4880):
        put(offset, "i", 1)
    put(56, "i", -1)
    put(3732, "8i", 50, 60, 70, 80, 90, 100, 110, 120)
    put(3764, "4i", 10, 20, 30, 60)
    put(4868, "i", 200)
    name = picture.encode("utf-16-le")
    record[1132:1132 + len(name)] = name
    with open(path, "wb") as out:
        out.write(record)


if __name__ == "__main__":
    if sys.argv[1] == "--options":
        write_options(sys.argv[2], sys.argv[3])
        sys.exit(0)
    out, size = sys.argv[1], int(sys.argv[2])
    write_png(out, draw(size))
    if "--no-points" not in sys.argv:
        write_points(out.rsplit(".", 1)[0] + ".rpt", size)
