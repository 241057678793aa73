"""PFM pictures: 32-bit floats, the lowest row first."""

import array
import re
import sys

_HEADER = re.compile(br"P([Ff])\s+(\d{1,9})\s+(\d{1,9})\s+"
                     br"([-+]?[0-9.]{1,20}(?:[eE][-+]?\d{1,3})?)\s")
_LONGEST_HEADER = 256


def read(opened, size):
    """Read a PFM picture; the size of its scale is ignored, as others do.

    opened: the file, at its start
    size: its length in bytes

    Returns (width, height, planes), one or three of them
    Raises ValueError.
    """
    header = _HEADER.match(opened.read(_LONGEST_HEADER))
    if not header:
        raise ValueError("no PFM file; expected Pf or PF, width, height and "
                         "scale")
    kind, width, height = header.group(1), int(header.group(2)), int(
        header.group(3))
    try:
        scale = float(header.group(4))
    except ValueError:
        scale = 0.0
    if not width or not height:
        raise ValueError("a picture of %d x %d pixels" % (width, height))
    if not scale:
        raise ValueError("scale %s; expected a positive or negative number"
                         % header.group(4))
    channels = 3 if kind == b"F" else 1
    expected = width * height * channels * 4
    if size - header.end() < expected:
        raise ValueError("%d bytes of pixels; expected %d for %d x %d"
                         % (size - header.end(), expected, width, height))
    opened.seek(header.end())
    floats = array.array("f", opened.read(expected))
    if (scale < 0) != (sys.byteorder == "little"):
        floats.byteswap()
    return width, height, [
        array.array("d", _upside_down(floats[first::channels], width))
        for first in range(channels)]


def encoded(width, height, planes, bits=32):
    """The bytes of a PFM file of one or three planes, little-endian."""
    channels = len(planes)
    floats = array.array("f", [0.0]) * (channels * width * height)
    for channel, plane in enumerate(planes):
        floats[channel::channels] = _upside_down(array.array("f", plane),
                                                 width)
    if sys.byteorder == "big":
        floats.byteswap()
    return b"P%s\n%d %d\n-1.0\n%s" % (
        b"f" if channels == 1 else b"F", width, height, floats.tostring())


def _upside_down(values, width):
    turned = array.array(values.typecode)
    for start in range(len(values) - width, -1, -width):
        turned.extend(values[start:start + width])
    return turned
