"""Picture files against bytes written by hand, and damage."""

import os
import random
import struct
import unittest
import zlib

from fixtures import FolderTest, LimitedMemory, damaged
from orvanekit import read_image, write_image

PNG_START = b"\x89PNG\r\n\x1a\n"
HDR_START = b"#?RADIANCE\n# by hand\nFORMAT=32-bit_rle_rgbe\n\n"


def chunk(name, body):
    return (struct.pack(">I", len(body)) + name + body
            + struct.pack(">I", zlib.crc32(name + body) & 0xFFFFFFFF))


def png(width, height, bits, kind, rows, *extra):
    """A PNG file of rows that carry their filters; extra chunks stand before the pixels."""
    header = struct.pack(">IIBBBBB", width, height, bits, kind, 0, 0, 0)
    return (PNG_START + chunk(b"IHDR", header) + b"".join(extra)
            + chunk(b"IDAT", zlib.compress(bytes(bytearray(rows)))) + chunk(b"IEND", b""))


# What PNG's filters guess of a byte from those of its neighbours.
PREDICTORS = [lambda left, up, corner: 0,
              lambda left, up, corner: left,
              lambda left, up, corner: up,
              lambda left, up, corner: (left + up) // 2,
              lambda left, up, corner: min((left, up, corner),
                                           key=lambda value: abs(left + up - corner - value))]


def filtered(kind, row, above, size):
    """A row of PNG with its filter, of pixels of some bytes: differences to what that guesses."""
    before = [0] * size
    return [kind] + [(byte - PREDICTORS[kind](*near)) & 255
                     for byte, near in zip(row, zip(before + row, above, before + above))]


def scanline(*channels):
    """A scanline of 8 pixels, channel by channel."""
    return b"\2\2\0\x08" + b"".join(channels)


PALETTE = chunk(b"PLTE", b"\xff\0\0" b"\0\xff\0" b"\0\0\xff" b"\x33\x66\x99")
RED, GREEN, BLUE, MIXED = (1, 0, 0), (0, 1, 0), (0, 0, 1), (0.2, 0.4, 0.6)

# Name, contents, width, height and the colours of the pixels, or numbers where they are grey.
BY_HAND = [
    ("P5 of 8 bits, a comment", b"P5 # a\n2#b\n 2 255\n\x00\xff\x33\x66", 2, 2, [0, 1, .2, .4]),
    ("P5 up to 5", b"P5\n3 1\n5\n\x00\x01\x05", 3, 1, [0, .2, 1]),
    ("P5 of 16 bits", b"P5 2 1 1000 \x03\xe8\x01\xf4", 2, 1, [1, .5]),
    ("P6 of 8 bits", b"P6\t1 2\r\n255\n\xff\0\0\x33\x66\x99", 1, 2, [RED, MIXED]),
    ("P6 of 16 bits", b"P6 1 1 65535\n\xff\xff\0\0\x33\x33", 1, 1, [(1, 0, .2)]),
    ("Pf, little-endian", b"Pf\n2 2\n-1.0\n" + struct.pack("<4f", 1.5, -2, 0, 2**.5),
     2, 2, [0, struct.unpack("f", struct.pack("f", 2**.5))[0], 1.5, -2]),
    ("PF, big-endian", b"PF 1 2 1\n" + struct.pack(">6f", 1, 2, 3, 4, 5, 6),
     1, 2, [(4, 5, 6), (1, 2, 3)]),
    ("Radiance, flat", HDR_START + b"-Y 1 +X 2\n\x80\x40\x20\x81\0\0\0\0", 2, 1,
     [(1, .5, .25), (0, 0, 0)]),
    ("Radiance, pixels in runs", HDR_START + b"-Y 1 +X 6\n\x80\x80\x80\x80\1\1\1\4"
     b"\x80\x40\0\x82", 6, 1, 5 * [(.5, .5, .5)] + [(2, 1, 0)]),
    ("Radiance, a run of 258", HDR_START + b"-Y 1 +X 259\n\x80\x80\x80\x80\1\1\1\2\1\1\1\1",
     259, 1, 259 * [(.5, .5, .5)]),
    ("Radiance, channels in runs", HDR_START + b"-Y 2 +X 8\n"
     + scanline(b"\x88\x80", b"\x84\x40\4\0\0\0\x80", b"\x88\0", b"\x88\x81")
     + scanline(b"\x88\0", b"\x88\0", b"\1\x80\x87\0", b"\x88\x80"), 8, 2,
     4 * [(1, .5, 0)] + 3 * [(1, 0, 0)] + [(1, 1, 0)] + [(0, 0, .5)] + 7 * [(0, 0, 0)]),
    ("PNG, grey of 8 bits", png(2, 1, 8, 0, [0, 51, 255]), 2, 1, [.2, 1]),
    ("PNG, grey of 16 bits", png(1, 2, 16, 0, [0, 0x33, 0x33, 0, 0xff, 0xff]), 1, 2, [.2, 1]),
    ("PNG, grey with alpha", png(2, 1, 8, 4, [0, 51, 9, 255, 7]), 2, 1, [.2, 1]),
    ("PNG, grey of 1 bit", png(9, 2, 1, 0, [0, 0xa0, 0x80, 0, 0, 0]), 9, 2,
     [1, 0, 1, 0, 0, 0, 0, 0, 1] + 9 * [0]),
    ("PNG, grey of 2 bits", png(3, 1, 2, 0, [0, 0xe4]), 3, 1, [1, 2 / 3., 1 / 3.]),
    ("PNG, colour", png(2, 1, 8, 2, [0, 255, 0, 0, 51, 102, 153]), 2, 1, [RED, MIXED]),
    ("PNG, colour of 16 bits with alpha", png(1, 1, 16, 6, [0, 255, 255, 0, 0, 0x33, 0x33, 1, 2]),
     1, 1, [(1, 0, .2)]),
    ("PNG, palette of 8 bits", png(3, 1, 8, 3, [0, 2, 3, 1], PALETTE), 3, 1, [BLUE, MIXED, GREEN]),
    ("PNG, palette of 2 bits", png(3, 2, 2, 3, [0, 0xb4, 2, 0], PALETTE), 3, 2,
     2 * [BLUE, MIXED, GREEN]),
    ("PNG, a chunk to be passed over", png(1, 1, 8, 0, [0, 51], chunk(b"tEXt", b"a\0b")), 1, 1,
     [.2]),
]

REFUSED = [
    (b"", "no picture of a known kind; expected PNG"),
    (b"P2 1 1 255 7", "no picture of a known kind"),
    (b"P5 0 4 255 ", "a picture of 0 x 4 pixels"),
    (b"P5 1 1 70000 ab", "brightest value 70000; expected 1 to 65535"),
    (b"P5 1 1 7 \x08", "a pixel of 8; the brightest is 7"),
    (b"P6 40000 40000 255 abc", "3 bytes of pixels; expected 4800000000 for 40000 x 40000"),
    (b"Pf 40000 40000 -1 abc", "3 bytes of pixels; expected 6400000000 for 40000 x 40000"),
    (b"Pf 1 1 0 abcd", "scale 0; expected a positive or negative number"),
    (HDR_START + b"-Y 99999999 +X 9\n\0\0\0\0", "4 bytes of pixels; expected 399999996 or more"),
    (HDR_START + b"-Y 1 +X 999999999\n\0\0\0\0\1\1\1\2", "scanline 0 of 1 is cut short"),
    (HDR_START + b"-Y 1 +X 3\n\0\0\0\0\1\1\1\3", "scanline 0 of 1 has a run beyond its end"),
    (HDR_START + b"-Y 1 +X 3\n\1\1\1\3\1\1\1\3", "scanline 0 of 1 begins with a run"),
    (HDR_START + b"-Y 1 +X 9\n" + scanline(), "scanline 0 of 1 has 8 pixels; expected 9"),
    (HDR_START + b"-Y 1 +X 8\n" + scanline(b"\x89\0"), "scanline 0 of 1 has a run beyond its end"),
    (HDR_START + b"+Y 1 +X 8\n" + 32 * b"\0", "size '+Y 1 +X 8\\n'; expected -Y height +X width"),
    (b"#?RGBE\nFORMAT=32-bit_rle_xyze\n\n", "format '32-bit_rle_xyze'; expected 32-bit_rle_rgbe"),
    (b"#?RGBE\n" + 5000 * b"a", "the header does not end"),
    (png(40000, 40000, 8, 0, [0, 1]), "10 bytes of packed pixels; too few for 40000 x 40000"),
    (png(1, 2, 8, 0, [0, 1]), "1 rows of pixels; expected 2"),
    (png(1, 1, 8, 0, [5, 1]), "row filter 5; expected 0 to 4"),
    (png(1, 1, 8, 3, [0, 1]), "no palette (PLTE)"),
    (png(1, 1, 8, 3, [0, 4], PALETTE), "colour 4 of a palette of 4"),
    (png(1, 1, 4, 2, [0, 4]), "4 bits of colour type 2"),
    (PNG_START + chunk(b"IHDR", struct.pack(">IIBBBBB", 1, 1, 8, 0, 0, 0, 1)), "interlaced;"),
    (PNG_START + struct.pack(">I4s", 1 << 31, b"IDAT"), "chunk 'IDAT' of 2147483648 bytes"),
    (PNG_START + chunk(b"IDAT", b"a"), "chunk 'IDAT' before IHDR"),
    (png(1, 1, 8, 0, [0, 51])[:-1] + b"?", "the check sum of chunk 'IEND' does not fit"),
]


class ImageTest(FolderTest):
    def read_back(self, contents, colour=False):
        self.write("picture", contents)
        try:
            return read_image("picture", colour)
        finally:
            # Some file systems wait for the disk where a file is written over.
            os.remove("picture")


class ReadTest(ImageTest):
    def test_bytes_written_by_hand(self):
        for name, contents, width, height, pixels in BY_HAND:
            in_colour = [pixel if isinstance(pixel, tuple) else 3 * (pixel,) for pixel in pixels]
            found = self.read_back(contents, True)
            self.assertEqual(found[:2], (width, height), name)
            for channel in range(3):
                self.assert_near(found[2][channel], [each[channel] for each in in_colour], 1e-12,
                                 name)
            grey = [.2126 * r + .7152 * g + .0722 * b for r, g, b in in_colour]
            self.assert_near(self.read_back(contents)[2], grey, 1e-12, name)

    def test_filters_of_png(self):
        random.seed(7)
        for kind, bits, channels in ((0, 8, 1), (2, 8, 3), (6, 8, 4), (2, 16, 3)):
            size = channels * bits // 8
            for kinds in ([0], [1], [2], [3], [4], [4, 3, 1, 2, 0]):
                rows = [[random.choice((0, 255, random.randrange(256))) for _ in range(7 * size)]
                        for _ in range(5)]
                above, packed = [7 * size * [0]] + rows, []
                for number, row in enumerate(rows):
                    packed += filtered(kinds[number % len(kinds)], row, above[number], size)
                pixels = sum(rows, [])
                found = self.read_back(png(7, 5, bits, kind, packed), True)[2]
                for channel in range(3):
                    at = channel % channels * bits // 8
                    expected = [value / 255. for value in pixels[at::size]]
                    if bits == 16:
                        expected = [(256 * high + low) / 65535. for high, low
                                    in zip(pixels[at::size], pixels[at + 1::size])]
                    self.assertEqual(list(found[channel]), expected, (kind, bits, kinds))

    def test_what_is_refused(self):
        for contents, words in REFUSED:
            self.refuses(ValueError, "^picture: " + words, self.read_back, contents)

    def test_pieces_of_a_file_are_refused(self):
        for name, contents, _, _, _ in BY_HAND:
            for length in range(len(contents)):
                self.refuses(ValueError, "^picture: ", self.read_back, contents[:length])


class WriteTest(ImageTest):
    VALUES = [0, .2, .4, 1, -.5, 7]

    def written(self, name, values, width=3, bits=None):
        write_image(name, width, len(self.VALUES) // width, values, bits)
        return self.read(name)

    def test_bytes(self):
        self.assertEqual(self.written("a.pgm", self.VALUES), b"P5\n3 2\n255\n\0\x33\x66\xff\0\xff")
        self.assertEqual(self.written("a.PGM", self.VALUES, bits=16)[-12:],
                         b"\0\0\x33\x33\x66\x66\xff\xff\0\0\xff\xff")
        self.assertEqual(self.written("a.pfm", self.VALUES), b"Pf\n3 2\n-1.0\n" + struct.pack(
            "<6f", 1, -.5, 7, 0, .2, .4))
        colour = (self.VALUES, 6 * [1], 6 * [.5])
        self.assertEqual(self.written("a.ppm", colour)[:17],
                         b"P6\n3 2\n255\n\0\xff\x80\x33\xff\x80")
        self.assertEqual(self.written("a.hdr", colour)[-24:], b"\0\x80\x40\x81\x1a\x80\x40\x81"
                         b"\x33\x80\x40\x81\x80\x80\x40\x81\0\x80\x40\x81\xe0\x20\x10\x83")

    def test_png_is_read_back(self):
        for bits in (8, 16):
            for values in (self.VALUES, (self.VALUES, self.VALUES[::-1], 6 * [.6])):
                self.written("a.png", values, bits=bits)
                _, _, found = read_image("a.png", True)
                for channel, expected in enumerate(
                        values if isinstance(values, tuple) else 3 * [values]):
                    self.assert_near(found[channel], [min(max(value, 0), 1) for value in expected],
                                     1e-12)

    def test_what_is_refused(self):
        nan = float("nan")
        for name, values, bits, words in (
                ("a.jpg", [0, 0], None, "ending '.jpg'; expected one of .hdr .pfm .pgm .png .ppm"),
                ("a.png", [0], None, "1 values; expected 2 for 2 x 1"),
                ("a.png", [0, nan], None, "a value is not a number"),
                ("a.png", [0, 0], 32, "32 bits; expected 8 or 16"),
                ("a.pgm", ([0, 0], [0, 0], [0, 0]), None, "colour; expected one channel"),
                ("a.png", ([0, 0], [0, 0]), None, "2 channels; expected 1 or 3"),
                ("a.hdr", [0, 1e39], None, "a pixel of "),
                ("a.hdr", [0, nan], None, "a pixel of ")):
            self.refuses(ValueError, "^%s: %s" % (name, words), write_image, name, 2, 1, values,
                         bits)
        self.assertEqual(os.listdir("."), [])


def with_sums(contents):
    """A PNG file's chunks, as far as they can be told apart, with sums that fit."""
    result, at = PNG_START, len(PNG_START)
    while at + 12 <= len(contents):
        length, name = struct.unpack(">I4s", contents[at:at + 8])
        result += chunk(name, contents[at + 8:at + 8 + length])
        at += length + 12
    return result


class DamageTest(FolderTest):
    TIMES = 400
    PIECES = (b"", b"\0", b"\x7f", b"\xff", b"9", b"999", b" ", b"-", b"\n", b"\1\1\1\xff",
              b"\x80\x40\x20\x81\0\0\0\0")

    def test_damaged_files_are_refused_or_read(self):
        def load(path):
            width, height, values = read_image(path)
            self.assertEqual(len(values), width * height)

        formats = {}
        for _, contents, _, _, _ in BY_HAND:
            formats.setdefault(contents[:2].upper(), []).append(contents)
        self.assertEqual(len(formats), 5)
        for start, files in sorted(formats.items()):
            numbers = random.Random(start)
            texts = [damaged(files[time % len(files)], numbers, self.PIECES)
                     for time in range(self.TIMES)]
            if PNG_START.startswith(start):
                texts[::2] = map(with_sums, texts[::2])
            with LimitedMemory(64 << 20):
                refused = self.count_refusals("picture", texts, load)
            self.assertTrue(self.TIMES // 4 < refused < self.TIMES, (start, refused))


if __name__ == "__main__":
    unittest.main()
