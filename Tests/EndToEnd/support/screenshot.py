"""Turns the screen that an X server keeps in a file (the format of `xwd`) into a PNG image."""

import struct
import zlib

# The header is of 32-bit words; these are the places of those that matter here.
_HEADER_SIZE, _WIDTH, _HEIGHT, _BYTES_PER_LINE, _COLOR_COUNT = 0, 4, 5, 12, 19
_COLOR_SIZE = 12


def save_screenshot(screen, path):
    """`screen` must have 32 bits a pixel, with the blue first."""
    with open(screen, "rb") as file:
        data = file.read()
    words = struct.unpack(">25I", data[:100])
    start = words[_HEADER_SIZE] + words[_COLOR_COUNT] * _COLOR_SIZE
    rows = []
    for row in range(words[_HEIGHT]):
        pixels = data[start + row * words[_BYTES_PER_LINE]:][:words[_WIDTH] * 4]
        colors = bytearray(words[_WIDTH] * 3)
        colors[0::3], colors[1::3], colors[2::3] = pixels[2::4], pixels[1::4], pixels[0::4]
        rows.append(b"\0" + bytes(colors))
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n")
        file.write(_chunk(b"IHDR", struct.pack(">IIBBBBB", words[_WIDTH], words[_HEIGHT], 8, 2, 0, 0, 0)))
        file.write(_chunk(b"IDAT", zlib.compress(b"".join(rows))))
        file.write(_chunk(b"IEND", b""))


def _chunk(kind, content):
    return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))
