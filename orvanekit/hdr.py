"""Radiance pictures (.hdr, .pic): shared exponents, with or without runs.

G. Ward, "Real Pixels", Graphics Gems II, 1991. A channel is its mantissa
times 2^(exponent - 136). The lines EXPOSURE and GAMMA are ignored.
"""

import array
import math
import operator
import re

_LONGEST_LINE = 4096
_MOST_LINES = 1000
_SIZE = re.compile(br"-Y (\d{1,9}) \+X (\d{1,9})\n")
# 0 to 255 times 2^(exponent - 136); exponent 0 is black.
_SCALES = [0.0] + [math.ldexp(1.0, exponent - 136)
                   for exponent in range(1, 256)]
# A scanline whose runs are those of whole channels begins with 2, 2.
_LEAST_WIDTH, _BEYOND_WIDTH = 8, 32768


def read(opened, size):
    """Read a Radiance picture.

    opened: the file, at its start
    size: its length in bytes

    Returns (width, height, planes) with three planes
    Raises ValueError.
    """
    width, height = _read_header(opened)
    if not width or not height:
        raise ValueError("a picture of %d x %d pixels" % (width, height))
    # The shortest scanline is one pixel and a run.
    left = size - opened.tell()
    if left < 4 * height:
        raise ValueError("%d bytes of pixels; expected %d or more for %d x %d"
                         % (left, 4 * height, width, height))
    data = opened.read(left)
    # Four channels of bytes: nothing is made of them before all are there.
    picture = [bytearray() for _ in range(4)]
    at = 0
    for row in range(height):
        try:
            scanline, at = _read_scanline(data, at, width)
        except ValueError as error:
            raise ValueError("scanline %d of %d %s" % (row, height, error))
        for whole, channel in zip(picture, scanline):
            whole.extend(channel)
    scales = map(_SCALES.__getitem__, picture.pop())
    return width, height, [array.array("d", map(operator.mul, channel, scales))
                           for channel in picture]


def encoded(width, height, planes, bits=8):
    """The bytes of a Radiance file without runs; negative values are black.

    Raises ValueError for what is not finite or above 1.7e38.
    """
    planes = planes if len(planes) == 3 else 3 * planes
    pixels = bytearray()
    for colour in zip(*planes):
        greatest = max(colour)
        if not (-1e308 < min(colour) and sum(colour) == sum(colour)
                and greatest < 1.7e38):
            raise ValueError("a pixel of %r; expected values below 1.7e38"
                             % (colour,))
        exponent = math.frexp(greatest)[1] + 128
        if greatest <= 0 or exponent < 1:
            pixels.extend(b"\0\0\0\0")
            continue
        scale = math.ldexp(1.0, 136 - exponent)
        pixels.extend([min(int(max(value, 0.0) * scale + 0.5), 255)
                       for value in colour] + [exponent])
    return b"#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y %d +X %d\n%s" % (
        height, width, pixels)


def _read_header(opened):
    """Read up to the pixels: (width, height)."""
    if not opened.readline(_LONGEST_LINE).startswith(b"#?"):
        raise ValueError("no Radiance file; expected #? at its start")
    for _ in range(_MOST_LINES):
        line = opened.readline(_LONGEST_LINE)
        if not line.endswith(b"\n"):
            break
        if line.startswith(b"FORMAT="):
            form = line[7:].strip()
            if form != b"32-bit_rle_rgbe":
                raise ValueError("format %r; expected 32-bit_rle_rgbe" % form)
        if line.strip():
            continue
        line = opened.readline(_LONGEST_LINE)
        size = _SIZE.match(line)
        if not size:
            raise ValueError("size %r; expected -Y height +X width"
                             % line[:40])
        return int(size.group(2)), int(size.group(1))
    raise ValueError("the header does not end")


def _read_scanline(data, at, width):
    """Read a row from data[at]: four channels and where the next begins."""
    begin = bytearray(data[at:at + 4])
    if len(begin) < 4:
        raise ValueError("is missing")
    if (begin[:2] == b"\2\2" and begin[2] < 128
            and _LEAST_WIDTH <= width < _BEYOND_WIDTH):
        if begin[2] * 256 + begin[3] != width:
            raise ValueError("has %d pixels; expected %d"
                             % (begin[2] * 256 + begin[3], width))
        return _read_channels(data, at + 4, width)
    return _read_pixels(data, at, width)


def _read_channels(data, at, width):
    """Four channels one after the other, each in runs and copies."""
    channels = []
    for _ in range(4):
        channel = bytearray()
        while len(channel) < width:
            count = ord(data[at:at + 1] or b"\0")
            if not count:
                raise ValueError("is cut short or has a run of no pixels")
            if count > 128:
                piece = data[at + 1:at + 2] * (count - 128)
                at += 2
            else:
                piece = data[at + 1:at + 1 + count]
                at += 1 + count
            if not piece:
                raise ValueError("is cut short")
            channel.extend(piece)
        if len(channel) > width or at > len(data):
            raise ValueError("has a run beyond its end")
        channels.append(channel)
    return channels, at


def _read_pixels(data, at, width):
    """Pixels one after the other; 1, 1, 1, n repeats the one before.

    Such marks in a row are the bytes of one number, the lowest first.
    """
    runs, shift, done = [], 0, 0
    while done < width:
        pixel = data[at:at + 4]
        if len(pixel) < 4:
            raise ValueError("is cut short")
        at += 4
        if pixel[:3] == b"\1\1\1":
            if not runs:
                raise ValueError("begins with a run")
            count = ord(pixel[3]) << shift
            pixel = runs[-1][0]
            shift += 8
        else:
            count = 1
            shift = 0
        runs.append((pixel, count))
        done += count
    if done > width:
        raise ValueError("has a run beyond its end")
    row = bytearray(b"".join([pixel * count for pixel, count in runs]))
    return [row[channel::4] for channel in range(4)], at
