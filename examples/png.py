"""RGB pictures as PNG files, with nothing but the standard library."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
HEADER = ">IIBBBBB"  # width, height, bits a channel, colour type, compression, filters, interlace
RGB8 = (8, 2, 0, 0, 0)
FILTER_UP = b"\x02"  # a row is stored as its differences to the row above


def write_png(path, width, height, pixels):
    """Write a picture to the file `path`.

    pixels: buffer of width * height * 3 bytes, row by row from the top, red, green, blue
    """
    pixels = bytearray(pixels)
    stride = width * 3
    if len(pixels) != stride * height:
        raise ValueError("%d bytes of pixels; expected %d for %d x %d"
                         % (len(pixels), stride * height, width, height))
    filtered = bytearray()
    above = bytearray(stride)
    for start in range(0, len(pixels), stride):
        row = pixels[start:start + stride]
        filtered.extend(FILTER_UP)
        filtered.extend([(here - up) & 255 for here, up in zip(row, above)])
        above = row
    with open(path, "wb") as png:
        png.write(SIGNATURE)
        png.write(_chunk(b"IHDR", struct.pack(HEADER, width, height, *RGB8)))
        png.write(_chunk(b"IDAT", zlib.compress(bytes(filtered), 9)))
        png.write(_chunk(b"IEND", b""))


def read_png(path):
    """Read back a file that write_png wrote: (width, height, pixels), pixels as a bytearray."""
    with open(path, "rb") as png:
        data = png.read()
    chunks = {}
    position = len(SIGNATURE)
    while position < len(data):
        length, name = struct.unpack(">I4s", data[position:position + 8])
        chunks[name] = data[position + 8:position + 8 + length]
        position += length + 12
    width, height = struct.unpack(HEADER, chunks[b"IHDR"])[:2]
    filtered = bytearray(zlib.decompress(chunks[b"IDAT"]))
    stride = width * 3
    pixels = bytearray()
    above = bytearray(stride)
    for start in range(1, len(filtered), stride + 1):
        differences = filtered[start:start + stride]
        above = bytearray([(here + up) & 255 for here, up in zip(differences, above)])
        pixels.extend(above)
    return width, height, pixels


def _chunk(name, body):
    checksum = zlib.crc32(name + body) & 0xFFFFFFFF
    return struct.pack(">I", len(body)) + name + body + struct.pack(">I", checksum)
