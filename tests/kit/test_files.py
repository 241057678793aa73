# -*- coding: utf-8 -*-
"""Sets in files: every bit comes back, and what is no set is refused with path and place."""

import json
import os
import random
import struct
import unittest

import _Orvane
import orvanekit as kit
from fixtures import FolderTest, damaged

# NaN with and without payload, infinities, subnormal numbers, zeros, neighbours, the largest.
BITS = [0x7fc00000, 0xffc12345, 0x7f800001, 0x7f800000, 0xff800000, 1, 0x80000001, 0x007fffff,
        0x80000000, 0, 0x3f800000, 0x3f800001, 0x3dcccccd, 0x7f7fffff, 0xff7fffff, 0x12345678]


def from_bits(bits):
    bands = int(len(bits) ** 0.5)
    return _Orvane.SHBuilder().CreateSHFromBuffer(struct.pack("<%dI" % len(bits), *bits), bands)


class FilesTest(FolderTest):
    PATH = "set.json"

    def refuses_text(self, text, *words):
        self.write(self.PATH, text)
        self.refuses(ValueError, "|".join(("^" + self.PATH + ": ",) + words), kit.load, self.PATH)

    def test_every_bit_comes_back(self):
        numbers = random.Random(5)
        for bits in ([], BITS, [numbers.getrandbits(32) for _ in range(900)]):
            sh = from_bits(bits)
            kit.save(self.PATH, sh)
            self.assertEqual(str(kit.load(self.PATH).GetAsBuffer()), str(sh.GetAsBuffer()))
            json.loads(self.read(self.PATH))  # standard JSON
        sky = (from_bits(BITS), from_bits(BITS[::-1]), from_bits([0] * 16))
        kit.save(self.PATH, sky)
        self.assertEqual([str(sh.GetAsBuffer()) for sh in kit.load(self.PATH)],
                         [str(sh.GetAsBuffer()) for sh in sky])

    def test_file_is_for_people(self):
        kit.save(self.PATH, kit.make_set([0.1, 0, -2.5, 1e-30]), place=u"Zürich", taken=[2026, 7])
        text = self.read(self.PATH)
        self.assertIn(b' "bands": 2,\n', text)
        self.assertIn(u'"place": "Zürich"'.encode("utf-8"), text)
        self.assertIn(b"  [0.100000001],\n  [0.0, -2.5, 1e-30]", text)
        self.assertEqual(kit.load_with_notes(self.PATH)[1], {"place": u"Zürich",
                                                             "taken": [2026, 7]})
        kit.save(self.PATH, kit.make_set([]), place="Zürich", by=u"Zoë")  # the first is UTF-8
        self.assertEqual(kit.load_with_notes(self.PATH)[1]["place"], u"Zürich")

    def test_whole_or_not_at_all(self):
        sh = kit.make_set([1.0])
        kit.save(self.PATH, sh)
        before = self.read(self.PATH)
        self.assertRaises(ValueError, kit.save, self.PATH, sh, note=object())
        self.assertRaises(ValueError, kit.save, self.PATH, sh, note=float("nan"))
        sh.numBands = 3  # the array decides
        kit.save(self.PATH, sh)
        self.assertEqual(self.read(self.PATH), before)
        self.assertEqual(os.listdir("."), [self.PATH])
        self.assertRaises(EnvironmentError, kit.save, "no/x", sh)
        self.assertRaises(TypeError, kit.save, self.PATH, 5)

    def test_refusals(self):
        kit.save(self.PATH, kit.make_set([1.0, 2.0, 3.0, 4.0]))
        good = self.read(self.PATH)
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
            self.refuses_text(good.replace(old, new), *words)
        self.refuses_text(b"", "JSON")
        self.refuses_text(b"P5 3 3 255\n")
        self.refuses_text(b"[" * 100000)
        self.refuses_text(good.replace(b"4.0", b"9" * 1000000), "order 1")  # at once
        self.refuses_text(good + b" " * (1 << 20), "bytes")

    def test_damage(self):
        """Damaged files are refused or hold a set; nothing else happens."""
        kit.save(self.PATH, from_bits(BITS))
        good, numbers = self.read(self.PATH), random.Random(11)
        pieces = (b"", b"]", b"{", b'"', b"9", b"\xff", b"\0", b"e999")
        texts = [damaged(good, numbers, pieces) for _ in range(400)]
        texts += [good[:numbers.randrange(len(good))] for _ in range(100)]
        self.assertGreater(self.count_refusals(self.PATH, texts, kit.load), 250)


if __name__ == "__main__":
    unittest.main()
