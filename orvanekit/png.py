"""PNG pictures: grey, colour and palette, not interlaced.

The format: Portable Network Graphics, second edition, W3C 2003.
Transparency is ignored, and so are colour profiles.
"""

import array
import itertools
import operator
import struct
import zlib

from .netpbm import integers, levels, quantised

SIGNATURE = b"\x89PNG\r\n\x1a\n"
# Width, height, bits, colour type, compression, filters, interlace.
_HEADER = struct.Struct(">IIBBBBB")
_CHUNK = struct.Struct(">I4s")
_GREY, _COLOUR, _PALETTE, _GREY_ALPHA, _COLOUR_ALPHA = 0, 2, 3, 4, 6
_CHANNELS = {_GREY: 1, _COLOUR: 3, _PALETTE: 1, _GREY_ALPHA: 2,
             _COLOUR_ALPHA: 4}
_BITS = {_GREY: (1, 2, 4, 8, 16), _PALETTE: (1, 2, 4, 8)}
_FILTER_UP = b"\x02"  # a row is stored as its differences to the row above
# Where the chunk after the header begins.
_TEXT_AT = len(SIGNATURE) + _CHUNK.size + _HEADER.size + 4
_KEYWORD = b"Comment\0"
# No compressed byte stands for more than this many.
_MOST_EXPANSION = 1032


def read(opened, size):
    """Read a PNG picture.

    opened: the file, at its start
    size: its length in bytes

    Returns (width, height, planes), one or three of them, from 0 to 1
    Raises ValueError.
    """
    if opened.read(len(SIGNATURE)) != SIGNATURE:
        raise ValueError("no PNG file")
    header, palette, packed = None, None, []
    for name, body in _chunks(opened, size):
        if name == b"IHDR":
            header = _read_header(body)
        elif header is None:
            raise ValueError("chunk %r before IHDR" % name)
        elif name == b"PLTE":
            palette = _read_palette(body)
        elif name == b"IDAT":
            packed.append(body)
        elif name[:1].isupper() and name != b"IEND":
            raise ValueError("unknown chunk %r" % name)
    if header is None:
        raise ValueError("no header (IHDR)")
    width, height, bits, kind = header
    if kind == _PALETTE and palette is None:
        raise ValueError("no palette (PLTE)")
    channels = _CHANNELS[kind]
    stride = (width * channels * bits + 7) // 8
    packed = b"".join(packed)
    if (stride + 1) * height > _MOST_EXPANSION * len(packed):
        raise ValueError("%d bytes of packed pixels; too few for %d x %d"
                         % (len(packed), width, height))
    data = _read_rows(packed, stride, height, max(1, channels * bits // 8))
    if bits < 8:
        pixels = _unpacked(data, bits, stride, width)
    else:
        pixels = integers(bytes(data), bits)
    if kind == _PALETTE:
        if max(pixels) >= len(palette):
            raise ValueError("colour %d of a palette of %d"
                             % (max(pixels), len(palette)))
        return width, height, [
            array.array("d", map([colour[channel] for colour
                                  in palette].__getitem__, pixels))
            for channel in range(3)]
    level = levels((1 << bits) - 1).__getitem__
    return width, height, [
        array.array("d", map(level, pixels[first::channels]))
        for first in range(3 if channels > 2 else 1)]


def encoded(width, height, planes, bits=8):
    """The bytes of a grey (one plane) or colour (three) PNG file."""
    return packed(width, height, quantised(planes, bits), len(planes), bits)


def packed(width, height, pixels, channels, bits=8):
    """The bytes of a PNG file with these pixels.

    pixels: height * width * channels integers as bytes, row by row
    channels: 1 for grey, 3 for red, green, blue
    bits: 8, or 16 with the upper byte first

    Raises ValueError where their number is another.
    """
    stride = width * channels * bits // 8
    pixels = bytearray(pixels)
    if len(pixels) != stride * height:
        raise ValueError("%d bytes of pixels; expected %d for %d x %d"
                         % (len(pixels), stride * height, width, height))
    filtered = bytearray()
    above = bytearray(stride)
    for start in range(0, len(pixels), stride or 1):
        row = pixels[start:start + stride]
        filtered.extend(_FILTER_UP)
        filtered.extend([(here - up) & 255 for here, up in zip(row, above)])
        above = row
    header = _HEADER.pack(width, height, bits,
                          _GREY if channels == 1 else _COLOUR, 0, 0, 0)
    return b"".join([SIGNATURE, _chunk(b"IHDR", header),
                     _chunk(b"IDAT", zlib.compress(bytes(filtered), 9)),
                     _chunk(b"IEND", b"")])


def with_text(contents, text):
    """A PNG file with a comment, which stands right after its header.

    contents: the bytes of a file without one
    text: Latin-1
    """
    return contents[:_TEXT_AT] + _chunk(
        b"tEXt", _KEYWORD + text) + contents[_TEXT_AT:]


def without_text(contents):
    """The bytes of a file before with_text, and the text.

    Raises ValueError where none is there or its check sum does not fit.
    """
    start = _TEXT_AT + _CHUNK.size
    if contents[start - 4:start + len(_KEYWORD)] != b"tEXt" + _KEYWORD:
        raise ValueError("no comment after the header")
    end = start + _CHUNK.unpack(contents[_TEXT_AT:start])[0]
    text = contents[start + len(_KEYWORD):end]
    plain = contents[:_TEXT_AT] + contents[end + 4:]
    if with_text(plain, text) != contents:
        raise ValueError("the check sum of the comment does not fit")
    return plain, text


def _chunk(name, body):
    return b"".join([_CHUNK.pack(len(body), name), body,
                     struct.pack(">I", zlib.crc32(name + body) & 0xFFFFFFFF)])


def _chunks(opened, size):
    """Yield name and body of each chunk up to IEND; sums are checked."""
    name = None
    while name != b"IEND":
        head = opened.read(_CHUNK.size)
        if len(head) < _CHUNK.size:
            raise ValueError("cut short: no end (IEND)")
        length, name = _CHUNK.unpack(head)
        if length > size - opened.tell() - 4:
            raise ValueError("chunk %r of %d bytes in a file of %d"
                             % (name, length, size))
        body = opened.read(length)
        if _chunk(name, body)[-4:] != opened.read(4):
            raise ValueError("the check sum of chunk %r does not fit" % name)
        yield name, body


def _read_header(body):
    """IHDR: (width, height, bits, kind)."""
    if len(body) != _HEADER.size:
        raise ValueError("a header of %d bytes; expected %d"
                         % (len(body), _HEADER.size))
    width, height, bits, kind, packing, filters, interlace = _HEADER.unpack(
        body)
    if not 0 < width < 1 << 31 or not 0 < height < 1 << 31:
        raise ValueError("a picture of %d x %d pixels" % (width, height))
    if kind not in _CHANNELS or bits not in _BITS.get(kind, (8, 16)):
        raise ValueError("%d bits of colour type %d" % (bits, kind))
    if packing or filters:
        raise ValueError("compression %d, filters %d; expected 0"
                         % (packing, filters))
    if interlace:
        raise ValueError("interlaced; expected a picture that is not")
    return width, height, bits, kind


def _read_palette(body):
    """PLTE: a list of (red, green, blue), each 0 to 1."""
    if len(body) % 3 or not 3 <= len(body) <= 768:
        raise ValueError("a palette of %d bytes" % len(body))
    values = [level / 255.0 for level in bytearray(body)]
    return zip(values[::3], values[1::3], values[2::3])


def _read_rows(packed_rows, stride, height, pixel):
    """Unpack rows and undo their filters.

    pixel: bytes of a pixel, at least 1
    """
    unpacker = zlib.decompressobj()
    data = bytearray()
    above = bytearray(stride)
    for _ in range(height):
        row = b""
        while len(row) <= stride:
            try:
                piece = unpacker.decompress(packed_rows, stride + 1 - len(row))
            except zlib.error as error:
                raise ValueError("packed pixels: %s" % error)
            packed_rows = unpacker.unconsumed_tail
            if not piece and not packed_rows:
                raise ValueError("%d rows of pixels; expected %d"
                                 % (len(data) // stride, height))
            row += piece
        kind = ord(row[0])
        if kind >= len(_UNFILTER):
            raise ValueError("row filter %d; expected 0 to 4" % kind)
        above = _UNFILTER[kind](bytearray(row[1:]), above, pixel)
        data.extend(above)
    return data


def _none(row, _above, _pixel):
    return row


def _sub(row, _above, pixel):
    for first in range(pixel):
        left = 0
        result = []
        for here in row[first::pixel]:
            left = (here + left) & 255
            result.append(left)
        row[first::pixel] = bytearray(result)
    return row


def _up(row, above, _pixel):
    return bytearray([total & 255 for total
                      in itertools.imap(operator.add, row, above)])


def _average(row, above, pixel):
    for first in range(pixel):
        left = 0
        result = []
        for here, up in zip(row[first::pixel], above[first::pixel]):
            left = (here + ((left + up) >> 1)) & 255
            result.append(left)
        row[first::pixel] = bytearray(result)
    return row


def _paeth(row, above, pixel):
    for first in range(pixel):
        left = corner = 0
        result = []
        for here, up in zip(row[first::pixel], above[first::pixel]):
            # How far left + up - corner is from each of the three.
            from_left = up - corner
            from_up = left - corner
            from_corner = from_left + from_up
            if from_left < 0:
                from_left = -from_left
            if from_up < 0:
                from_up = -from_up
            if from_corner < 0:
                from_corner = -from_corner
            if from_left > from_up or from_left > from_corner:
                left = up if from_up <= from_corner else corner
            left = (here + left) & 255
            result.append(left)
            corner = up
        row[first::pixel] = bytearray(result)
    return row


_UNFILTER = (_none, _sub, _up, _average, _paeth)


def _unpacked(data, bits, stride, width):
    """Pixels of 1, 2 or 4 bits as bytes, the upper ones of a byte first."""
    mask = (1 << bits) - 1
    shifts = range(8 - bits, -1, -bits)
    pixels = bytearray()
    for start in range(0, len(data), stride):
        row = bytearray([(byte >> shift) & mask
                         for byte in data[start:start + stride]
                         for shift in shifts])
        pixels.extend(row[:width])
    return pixels
