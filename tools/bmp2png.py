#!/usr/bin/env python3
"""Converts a 24-bit bottom-up BMP (as the Windows tests write pictures of windows) to PNG.

Usage: tools/bmp2png.py IN.bmp OUT.png
"""
import struct
import sys
import zlib


def main(source, target):
    data = open(source, "rb").read()
    if data[:2] != b"BM":
        sys.exit(f"{source}: not a BMP file")
    offset = struct.unpack_from("<I", data, 10)[0]
    width, height = struct.unpack_from("<ii", data, 18)
    if struct.unpack_from("<H", data, 28)[0] != 24 or height <= 0:
        sys.exit(f"{source}: only 24-bit bottom-up BMP files are read")
    stride = (width * 3 + 3) & ~3
    rows = bytearray()
    for y in range(height - 1, -1, -1):
        bgr = data[offset + y * stride: offset + y * stride + width * 3]
        rgb = bytearray(len(bgr))
        rgb[0::3], rgb[1::3], rgb[2::3] = bgr[2::3], bgr[1::3], bgr[0::3]
        rows += b"\0" + rgb

    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body +
                struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    with open(target, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
                  chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b""))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
