#!/usr/bin/env python3
"""Draws the pictures of this folder: html/assets/draw.py. Each drawing has one letter per pixel; "." is transparent."""

import pathlib
import struct

COLOURS = {"o": (0x8A, 0x63, 0x14), "y": (0xF4, 0xC8, 0x5E), "l": (0xFB, 0xE0, 0x9A), "d": (0xD9, 0xA2, 0x34),
           "b": (0x4A, 0x80, 0xC4)}

CLOSED = """
................
................
.....b..........
.....bb.........
.....bbb........
.....bbbb.......
.....bbbbb......
.....bbbbbb.....
.....bbbbb......
.....bbbb.......
.....bbb........
.....bb.........
.....b..........
................
................
................
"""

FOLDER = """
................
................
..ooooo.........
.oyyyyyo........
.oyyyyyyoooooo..
.oyyyyyyyyyyyyo.
.ollllllllllllo.
.oyyyyyyyyyyyyo.
.oyyyyyyyyyyyyo.
.oyyyyyyyyyyyyo.
.oyyyyyyyyyyyyo.
.oyyyyyyyyyyyyo.
.oddddddddddddo.
..oooooooooooo..
................
................
"""

FOLDER_EXPANDED = """
................
................
..ooooo.........
.oyyyyyo........
.oyyyyyyoooooo..
.oddddddddddddo.
.oddooooooooooooo
.odollllllllllllo
.odoyyyyyyyyyyyo
.oolyyyyyyyyyyyo
.ooyyyyyyyyyyyo.
.ooyyyyyyyyyyyo.
.oyyyyyyyyyyyo..
.oooooooooooo...
................
................
"""


def rows(drawing):
    return [row[:16].ljust(16, ".") for row in drawing.strip("\n").split("\n")]


def turned(drawing):
    """Rotates by a quarter turn clockwise."""
    return "\n".join("".join(column) for column in zip(*reversed(rows(drawing))))


def codes(pixels):
    """Encodes with LZW codes of three bits only: the table is cleared before longer ones are needed."""
    bits, count = 0, 0
    for i, pixel in enumerate(pixels):
        if i % 6 == 0:
            bits, count = bits | 8 << count, count + 4
        bits, count = bits | pixel << count, count + 4
    bits, count = bits | 9 << count, count + 4
    return bits.to_bytes((count + 7) // 8, "little")


def gif(drawing):
    image = rows(drawing)
    palette = [(0, 0, 0)] + list(COLOURS.values())
    numbers = {letter: number + 1 for number, letter in enumerate(COLOURS)}
    pixels = [numbers.get(letter, 0) for row in image for letter in row]
    table = b"".join(bytes(colour) for colour in palette).ljust(24, b"\0")
    data = codes(pixels)
    blocks = b"".join(bytes([len(data[i:i + 255])]) + data[i:i + 255] for i in range(0, len(data), 255))
    return (b"GIF89a" + struct.pack("<HHBBB", 16, len(image), 0xA2, 0, 0) + table +
            b"\x21\xF9\x04\x01\0\0\0\0" + b"\x2C" + struct.pack("<HHHHB", 0, 0, 16, len(image), 0) +
            b"\x03" + blocks + b"\0\x3B")


def main():
    folder = pathlib.Path(__file__).parent
    for name, drawing in {"closed": CLOSED, "open": turned(CLOSED), "rolledup": CLOSED, "rolleddown": turned(CLOSED),
                          "folder": FOLDER, "folder-expanded": FOLDER_EXPANDED}.items():
        (folder / (name + ".gif")).write_bytes(gif(drawing))


main()
