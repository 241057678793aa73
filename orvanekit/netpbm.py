"""Binary PGM and PPM pictures (P5, P6) of 8 or 16 bits a channel."""

import array
import re
import sys

# Width, height and brightest value, each behind white space or comments to
# the line's end; then one white space.
_SPACE = br"(?:\s|#[^\n]*\n)+"
_HEADER = re.compile(br"P([56])" + 3 * (_SPACE + br"(\d{1,9})") + br"\s")
_LONGEST_HEADER = 4096


def read(opened, size):
    """Read a PGM or PPM picture.

    opened: the file, at its start
    size: its length in bytes

    Returns (width, height, planes), one or three of them, from 0 to 1
    Raises ValueError.
    """
    header = _HEADER.match(opened.read(_LONGEST_HEADER))
    if not header:
        raise ValueError("no binary PGM or PPM file; expected P5 or P6, "
                         "width, height and brightest value")
    kind, width, height, brightest = [int(number) for number
                                      in header.groups()]
    if not width or not height:
        raise ValueError("a picture of %d x %d pixels" % (width, height))
    if not 0 < brightest < 65536:
        raise ValueError("brightest value %d; expected 1 to 65535" % brightest)
    channels = 3 if kind == 6 else 1
    expected = width * height * channels * (2 if brightest > 255 else 1)
    if size - header.end() < expected:
        raise ValueError("%d bytes of pixels; expected %d for %d x %d"
                         % (size - header.end(), expected, width, height))
    opened.seek(header.end())
    pixels = integers(opened.read(expected), 16 if brightest > 255 else 8)
    if max(pixels) > brightest:
        raise ValueError("a pixel of %d; the brightest is %d"
                         % (max(pixels), brightest))
    values = map(levels(brightest).__getitem__, pixels)
    return width, height, [array.array("d", values[first::channels])
                           for first in range(channels)]


def encoded(width, height, planes, bits):
    """The bytes of a PGM (one plane) or PPM file (three)."""
    return b"P%d\n%d %d\n%d\n%s" % (
        5 if len(planes) == 1 else 6, width, height, (1 << bits) - 1,
        quantised(planes, bits))


def integers(data, bits):
    """The numbers that bytes hold, 16 bits with the upper byte first."""
    if bits == 8:
        return bytearray(data)
    numbers = array.array("H", data)
    if sys.byteorder == "little":
        numbers.byteswap()
    return numbers


def levels(brightest):
    """What each integer from 0 to `brightest` stands for, 0 to 1."""
    return [level / float(brightest) for level in range(brightest + 1)]


def quantised(planes, bits):
    """Values from 0 to 1 as pixels of 8 or 16 bits, cut at both ends.

    Raises ValueError where a value is not a number.
    """
    brightest = (1 << bits) - 1
    channels = len(planes)
    pixels = array.array("B" if bits == 8 else "H",
                         [0]) * (len(planes[0]) * channels)
    for channel, plane in enumerate(planes):
        try:
            pixels[channel::channels] = array.array(pixels.typecode, [
                int(min(max(value, 0.0), 1.0) * brightest + 0.5)
                if value == value else None for value in plane])
        except TypeError:
            raise ValueError("a value is not a number")
    if bits == 16 and sys.byteorder == "little":
        pixels.byteswap()
    return pixels.tostring()
