# -*- coding: utf-8 -*-
"""Sets in files: every bit comes back, and what is no set is refused with path and place."""

import json
import os
import random
import shutil
import struct
import tempfile
import unittest

import _Orvane
import orvanekit as kit

# NaN with and without payload, infinities, subnormal numbers, zeros, neighbours, the largest.
BITS = [0x7fc00000, 0xffc12345, 0x7f800001, 0x7f800000, 0xff800000, 1, 0x80000001, 0x007fffff,
        0x80000000, 0, 0x3f800000, 0x3f800001, 0x3dcccccd, 0x7f7fffff, 0xff7fffff, 0x12345678]


def from_bits(bits):
    bands = int(len(bits) ** 0.5)
    return _Orvane.SHBuilder().CreateSHFromBuffer(struct.pack("<%dI" % len(bits), *bits), bands)


class FilesTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.path = os.path.join(self.folder, "set.json")

    def refuses(self, text, *words):
        with open(self.path, "wb") as opened:
            opened.write(text)
        try:
            sh = kit.load(self.path)
        except ValueError as error:
            self.assertTrue(str(error).startswith(self.path + ": "), str(error))
            for word in words:
                self.assertIn(word, str(error))
        else:
            self.fail("%s gave %r" % (text[:200], sh))

    def test_every_bit_comes_back(self):
        numbers = random.Random(5)
        for bits in ([], BITS, [numbers.getrandbits(32) for _ in range(900)]):
            sh = from_bits(bits)
            kit.save(self.path, sh)
            self.assertEqual(str(kit.load(self.path).GetAsBuffer()), str(sh.GetAsBuffer()))
            with open(self.path) as opened:
                json.load(opened)  # standard JSON
        sky = (from_bits(BITS), from_bits(BITS[::-1]), from_bits([0] * 16))
        kit.save(self.path, sky)
        self.assertEqual([str(sh.GetAsBuffer()) for sh in kit.load(self.path)],
                         [str(sh.GetAsBuffer()) for sh in sky])

    def test_file_is_for_people(self):
        kit.save(self.path, kit.make_set([0.1, 0, -2.5, 1e-30]), place=u"Zürich", taken=[2026, 7])
        with open(self.path, "rb") as opened:
            text = opened.read()
        self.assertIn(b' "bands": 2,\n', text)
        self.assertIn(u'"place": "Zürich"'.encode("utf-8"), text)
        self.assertIn(b"  [0.100000001],\n  [0.0, -2.5, 1e-30]", text)
        self.assertEqual(kit.load_with_notes(self.path)[1], {"place": u"Zürich",
                                                             "taken": [2026, 7]})
        kit.save(self.path, kit.make_set([]), place="Zürich", by=u"Zoë")  # the first is UTF-8
        self.assertEqual(kit.load_with_notes(self.path)[1]["place"], u"Zürich")

    def test_whole_or_not_at_all(self):
        sh = kit.make_set([1.0])
        kit.save(self.path, sh)
        with open(self.path, "rb") as opened:
            before = opened.read()
        self.assertRaises(ValueError, kit.save, self.path, sh, note=object())
        self.assertRaises(ValueError, kit.save, self.path, sh, note=float("nan"))
        sh.numBands = 3  # the array decides
        kit.save(self.path, sh)
        with open(self.path, "rb") as opened:
            self.assertEqual(opened.read(), before)
        self.assertEqual(os.listdir(self.folder), ["set.json"])
        self.assertRaises(EnvironmentError, kit.save, os.path.join(self.folder, "no", "x"), sh)
        self.assertRaises(TypeError, kit.save, self.path, 5)

    def test_refusals(self):
        kit.save(self.path, kit.make_set([1.0, 2.0, 3.0, 4.0]))
        with open(self.path, "rb") as opened:
            good = opened.read()
        for old, new, words in [
                (b"orvanekit set", b"picture", ["no set"]), (b": 1,", b": 2,", ["version 2"]),
                (b'"bands": 2', b'"bands": 31', ["bands is 31", "30"]),
                (b'"bands": 2', b'"bands": "2"', ["bands is"]),
                (b'"bands": 2', b'"bands": 1', ["2 lists", "expected 1"]),
                (b", 4.0", b"", ["band 1", "a list of 2", "3"]),
                (b"4.0", b"null", ["band 1, order 1", "null"]),
                (b"4.0", b"1e39", ["band 1, order 1"]), (b"4.0", b'"nan"', ["order 1"]),
                (b"4.0", b'"nan 00000001"', ["order 1"]), (b"4.0", b"true", ["order 1"]),
                (b"{}", b"[]", ["notes"]), (b"}", b"", []), (b"set", b"\xff", [])]:
            self.assertIn(old, good)
            self.refuses(good.replace(old, new), *words)
        self.refuses(b"", "JSON")
        self.refuses(b"P5 3 3 255\n")
        self.refuses(b"[" * 100000)
        self.refuses(good.replace(b"4.0", b"9" * 1000000), "order 1")  # at once
        self.refuses(good + b" " * (1 << 20), "bytes")

    def test_damage(self):
        """Damaged files are refused or hold a set; nothing else happens."""
        kit.save(self.path, from_bits(BITS))
        with open(self.path, "rb") as opened:
            good = bytearray(opened.read())
        numbers = random.Random(11)
        refused = 0
        for _ in range(2000):
            text = bytearray(good)
            for _ in range(numbers.randint(1, 4)):
                at = numbers.randrange(len(text))
                text[at:at + numbers.choice([0, 1, 1, 9])] = bytearray(
                    numbers.choice([b"", b"]", b"{", b'"', b"9", b"\xff", b"\0", b"e999"]))
            with open(self.path, "wb") as opened:
                opened.write(text[:numbers.randrange(len(text))]
                             if numbers.random() < 0.2 else text)
            try:
                kit.load(self.path)
            except ValueError as error:
                self.assertTrue(str(error).startswith(self.path + ": "))
                refused += 1
        self.assertGreater(refused, 1000)


if __name__ == "__main__":
    unittest.main()
