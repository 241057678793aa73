"""Pictures of floats, in the files that other programs read and write.

A picture's values are in rows from the pole, theta = 0, downwards, each
from phi = 0.
"""

import array
import os

from . import files, hdr, netpbm, pfm, png

# How a file of each kind begins.
_READERS = ((b"\x89P", png.read), (b"#?", hdr.read), (b"PF", pfm.read),
            (b"Pf", pfm.read), (b"P5", netpbm.read), (b"P6", netpbm.read))
_KINDS = "PNG, Radiance HDR, PFM, or binary PGM or PPM"
# What writes each ending, with the bits that it may have; the first unless
# another is asked for.
_WRITERS = {".png": (png.encoded, (8, 16)), ".pgm": (netpbm.encoded, (8, 16)),
            ".ppm": (netpbm.encoded, (8, 16)), ".pfm": (pfm.encoded, (32,)),
            ".hdr": (hdr.encoded, (8,))}
_LUMINANCE = (0.2126, 0.7152, 0.0722)


def read_image(path, colour=False):
    """Read a picture: PNG, Radiance HDR, PFM, and binary PGM and PPM.

    The contents tell the kind, not the name. Integers become 0 to 1 by
    their maximum, without a correction for gamma; floats stay what they
    are. Transparency is ignored.

    path: the file
    colour: False for luminance, by the weights of ITU-R BT.709, 0.2126 red
        + 0.7152 green + 0.0722 blue; True for three channels, equal ones
        where the picture is grey

    Returns (width, height, values): values as array.array('d') of
    width * height doubles, or a tuple of three such (red, green, blue)
    Raises ValueError, beginning with the path, for a file that is
    truncated, malformed or of another kind, or does not hold the pixels
    that it claims; IOError.
    """
    with open(path, "rb") as opened:
        size = os.fstat(opened.fileno()).st_size
        begin = opened.read(2)
        opened.seek(0)
        try:
            for start, read in _READERS:
                if begin == start:
                    width, height, planes = read(opened, size)
                    break
            else:
                raise ValueError("no picture of a known kind; expected "
                                 + _KINDS)
        except ValueError as error:
            raise ValueError("%s: %s" % (path, error))
    if colour:
        return width, height, tuple(planes if len(planes) == 3
                                    else 3 * planes)
    if len(planes) == 1:
        return width, height, planes[0]
    red, green, blue = _LUMINANCE
    return width, height, array.array("d", [
        red * r + green * g + blue * b for r, g, b in zip(*planes)])


def write_image(path, width, height, values, bits=None):
    """Write a picture whose kind the ending tells, whole or not at all.

    .png, .pgm and .ppm hold 0 to 1 and cut off what is beyond; .pfm holds
    single precision; .hdr holds what is not negative, with 8 bits.

    path: the file, ending in .png, .pgm, .ppm, .pfm or .hdr
    width, height: in pixels, 1 or more
    values: width * height floats, or a tuple of three such sequences (red,
        green, blue)
    bits: 8 (the default) or 16 for a channel of PNG, PGM and PPM

    Raises ValueError, beginning with the path, for another ending, a wrong
    number of values, what is not a number, or colour in a PGM file;
    IOError.
    """
    ending = os.path.splitext(path)[1].lower()
    planes = [values]
    if isinstance(values, tuple) and values and hasattr(values[0], "__len__"):
        planes = list(values)
    try:
        if ending not in _WRITERS:
            raise ValueError("ending %r; expected one of %s"
                             % (ending, " ".join(sorted(_WRITERS))))
        encoded, allowed = _WRITERS[ending]
        bits = bits or allowed[0]
        if bits not in allowed:
            raise ValueError("%r bits; expected %s" % (
                bits, " or ".join(map(str, allowed))))
        if width < 1 or height < 1:
            raise ValueError("a picture of %d x %d pixels" % (width, height))
        if len(planes) not in (1, 3):
            raise ValueError("%d channels; expected 1 or 3" % len(planes))
        for plane in planes:
            if len(plane) != width * height:
                raise ValueError("%d values; expected %d for %d x %d" % (
                    len(plane), width * height, width, height))
        if ending == ".pgm" and len(planes) == 3:
            raise ValueError("colour; expected one channel, or the ending "
                             ".ppm")
        if ending == ".ppm" and len(planes) == 1:
            planes = 3 * planes
        contents = encoded(width, height, planes, bits)
    except ValueError as error:
        raise ValueError("%s: %s" % (path, error))
    files.write_whole(path, contents)
