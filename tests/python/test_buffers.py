"""Coefficients and pixels as buffers, in and out."""

import array
import mmap
import struct
import unittest

import _Orvane

from support import OrvaneTest, World, WorldTest, filled_set

SIZE = "The buffer of %d bytes doesn't match a float array for %d band SH (%d*%d*4)"
EXTENSION_SIZE = ("The buffer of %d bytes doesn't match a float array extending SH from %d band SH "
                  "to %d bands (%d*4)")
IMAGE_SIZE = ("The buffer of %d bytes doesn't match a image byte array with width %d and height "
              "%d")

# Numbers that a conversion would change: quiet and signalling NaN with payloads, infinities, the
# smallest denormal, minus zero.
TELLING_BITS = struct.pack("<9I", 0x7fc12345, 0xffc00001, 0x7f812345, 0x7f800000, 0xff800000, 1,
                           0x80000000, 0x7f7fffff, 0x3f800000)


def floats(*values):
    return struct.pack("<%df" % len(values), *values)


class ViewTest(OrvaneTest):
    def test_coefficient_view_is_live_read_only_and_flat(self):
        sh = filled_set(2)
        view = sh.GetAsBuffer()
        self.assertEqual(str(view), floats(1.0, 2.0, 3.0, 4.0))
        sh.SetCoefficient(0, 2.0)
        self.assertEqual(view[:4], floats(2.0))
        text = _Orvane.SHBuilder().CreateSHFromBuffer("2.50", 1).GetAsBuffer()
        self.assertEqual(float(text), 2.5)  # its characters
        self.assertEqual(len(_Orvane.SphericalHarmonic().GetAsBuffer()), 0)
        self.assertEqual(hash(_Orvane.SphericalHarmonic().GetAsBuffer()), hash(buffer("")))

    def test_coefficient_view_outlives_what_it_shows(self):
        for ending in (lambda b, sh: sh.SetNumBands(1), lambda b, sh: sh.SetNumBands(30),
                       lambda b, sh: sh.SetNumBands(0),
                       lambda b, sh: b.ExtendSHFromBuffer(sh, "", 9, 9),
                       lambda b, sh: b.LerpSH(sh, filled_set(9), filled_set(9), 0.5)):
            sh = filled_set(5)
            view = sh.GetAsBuffer()
            part = buffer(view, 8, 16)
            shown = str(view)
            ending(_Orvane.SHBuilder(), sh)
            for i in range(sh.GetNumCoefficients()):
                sh.SetCoefficient(i, -1.0)  # the new block, not the old
            self.assertEqual(str(view), shown)
            del sh, view
            self.assertEqual(str(part), shown[8:24])
            self.assertEqual(bytearray(part), shown[8:24])

    def test_image_view_outlives_what_it_shows(self):
        for ending in (lambda b: b.SetImageBuffer(4, 4), lambda b: b.SetImageBuffer(100, 100),
                       lambda b: b.ClearImageBuffer()):
            world = World()
            view = world.builder.GetImageBuffer()
            self.assertEqual(str(view), "\0" * 32)
            world.builder.RenderSHToImageBuffer(_Orvane.SphericalHarmonic(), 1.0, 7, 1, 0)
            self.assertEqual(str(view), "\7" * 32)
            ending(world.builder)
            del world
            self.assertEqual(str(view), "\7" * 32)
        builder = _Orvane.SHBuilder()
        self.assertEqual(len(builder.GetImageBuffer()), 0)
        builder.SetImageBuffer(3, 2)
        builder.ClearImageBuffer()
        self.assertEqual(len(builder.GetImageBuffer()), 0)

    def test_hidden_owner_cannot_be_made(self):
        view = filled_set(1).GetAsBuffer()
        shown = [cls for cls in object.__subclasses__() if cls.__module__ == "_Orvane"]
        self.assertEqual(set(shown), set([_Orvane.SphericalHarmonic, _Orvane.SHBuilder]))
        hidden, = [cls for cls in object.__subclasses__() if cls.__name__ == "_shared_block"]
        self.assert_raises(TypeError, None, hidden)
        self.assertEqual(len(view), 4)


class CoefficientBufferTest(WorldTest):
    def test_every_kind_of_read_buffer(self):
        mapped = mmap.mmap(-1, 36)
        mapped[:] = TELLING_BITS
        source = self.world.builder.CreateSHFromBuffer(TELLING_BITS, 3)
        for data in (TELLING_BITS, buffer(TELLING_BITS), bytearray(TELLING_BITS),
                     array.array("c", TELLING_BITS), array.array("f", [0.0] * 9), mapped,
                     source.GetAsBuffer(), buffer("x" + TELLING_BITS, 1)):
            sh = self.world.builder.CreateSHFromBuffer(data, 3)
            self.assertEqual(sh.numBands, 3)
            self.assertEqual(str(sh.GetAsBuffer()), str(buffer(data)))

    def test_creation(self):
        create = self.world.builder.CreateSHFromBuffer
        for data, bands, count in (("", 0, 0), ("x" * 16, -2, 4), ("x" * 4, 1, 1)):
            sh = create(data, bands)
            self.assertEqual((sh.numBands, sh.GetNumCoefficients()), (bands, count))
        for length, bands in ((15, 2), (17, 2), (16, 3), (0, 1), (4, 0), (16, 23170)):
            self.assert_raises(TypeError, SIZE % (length, bands, bands, bands), create,
                               "x" * length, bands)
        # 4 * 32768^2 and 4 * (-2^31)^2 are multiples of 2^32.
        for bands in 23171, -23171, 32768, 65536, 2 ** 31 - 1, -2 ** 31:
            self.assert_raises(ValueError, "numBands is %d; expected -23170 to 23170" % bands,
                               create, "", bands)
        self.assert_raises(TypeError, "data isn't a buffer", create, None, 32768)

    def test_extension(self):
        # bands before, old band, new band, then the coefficients: a number is kept or 0, None new
        cases = [(2, 2, 3, [1, 2, 3, 4] + [None] * 5), (4, 2, 2, [1, 2, 3, 4]), (0, 2, 2, [0] * 4),
                 (3, 1, 2, [1] + [None] * 3), (1, 2, 3, [1, 0, 0, 0] + [None] * 5),
                 (2, 2, -3, [1, 2, 3, 4] + [None] * 5), (3, 0, 0, []), (3, 0, 1, [None])]
        for bands, old, new, expected in cases:
            sh = filled_set(bands)
            data = [100.0 + i for i in range(expected.count(None))]
            self.assertIsNone(self.world.builder.ExtendSHFromBuffer(sh, floats(*data), old, new))
            fresh = iter(data)
            values = [next(fresh) if value is None else value for value in expected]
            self.assertEqual(sh.numBands, new)
            self.assertEqual(str(sh.GetAsBuffer()), floats(*values))

    def test_refused_extension_changes_nothing(self):
        sh = filled_set(3)
        before = str(sh.GetAsBuffer())
        for length, old, new, difference in ((0, 3, 2, -5), (20, 3, 2, -5), (19, 2, 3, 5),
                                             (21, 2, 3, 5), (4, 2, 2, 0), (4, 50000, 50000, 0)):
            self.assert_raises(TypeError, EXTENSION_SIZE % (length, old, new, difference),
                               self.world.builder.ExtendSHFromBuffer, sh, "x" * length, old, new)
        for old, new in ((0, 32768), (0, -2 ** 31), (-2 ** 31, 0), (32768, 0), (46341, 46341),
                         (-2 ** 31, -2 ** 31)):
            self.assert_raises(ValueError, None, self.world.builder.ExtendSHFromBuffer, sh, "",
                               old, new)
        self.assertEqual((sh.numBands, str(sh.GetAsBuffer())), (3, before))

    def test_extension_in_place_goes_upwards(self):
        # Floats are copied one by one over what is still to come.
        sh = filled_set(3)
        self.world.builder.ExtendSHFromBuffer(sh, buffer(sh.GetAsBuffer(), 0, 20), 2, 3)
        self.assertEqual(str(sh.GetAsBuffer()), floats(1, 2, 3, 4, 1, 2, 3, 4, 1))


class ImageBufferTest(WorldTest):
    def test_creation(self):
        create = self.world.builder.CreateSHFromImageBuffer
        sh = create(4, 2, 3, "\0" * 8)
        self.assertEqual((sh.numBands, str(sh.GetAsBuffer())), (3, "\0" * 36))
        self.assertEqual(create(4, 2, 0, bytearray(8)).GetNumCoefficients(), 0)
        for length, width, height in ((7, 4, 2), (9, 4, 2), (0, 4, 2), (8, -4, 2), (1, 0, 0)):
            self.assert_raises(TypeError, IMAGE_SIZE % (length, width, height), create, width,
                               height, 3, "x" * length)
        # Sizes that only the wrapped product makes fit.
        for length, width, height in ((8, -4, -2), (0, 65536, 65536), (0, 2 ** 30, 4),
                                      (0, -2 ** 31, -2 ** 31)):
            self.assert_raises(ValueError, None, create, width, height, 3, "x" * length)
        self.assert_raises(TypeError, "data isn't a buffer", create, -4, -2, 3, None)


if __name__ == "__main__":
    unittest.main()
