"""What `_Orvane` offers: two types, their methods, attributes and docstrings, and nothing else."""

import pydoc
import unittest

import _Orvane

from support import ATTRIBUTES, DOCS, METHODS, OrvaneTest, filled_set


class SurfaceTest(OrvaneTest):
    def test_module_holds_the_two_types(self):
        names = [name for name in dir(_Orvane) if not name.startswith("__")]
        self.assertEqual(names, ["SHBuilder", "SphericalHarmonic"])
        self.assertEqual(_Orvane.__name__, "_Orvane")
        self.assertEqual(len(METHODS), 41)

    def test_types_hold_methods_and_attributes(self):
        for name, doc in DOCS.items():
            cls = getattr(_Orvane, name)
            self.assertEqual(cls.__doc__, doc)
            expected = {m.name: m.doc for m in METHODS if m.owner == name}
            expected.update((a.name, a.doc) for a in ATTRIBUTES[name])
            own = {key: value.__doc__ for key, value in cls.__dict__.items()
                   if not key.startswith("__")}
            self.assertEqual(own, expected)
            self.assertIn(doc, pydoc.plain(pydoc.render_doc(cls)))

    def test_attributes(self):
        builder, sh = _Orvane.SHBuilder(), _Orvane.SphericalHarmonic()
        self.assertEqual((sh.numBands, sh.GetNumCoefficients()), (0, 0))
        self.assertEqual((builder.numSteps, builder.maxBands, builder.maxCoefficients,
                          builder.angleName), (0, 0, 0, 0.0))
        builder.GenerateLookUpTables(256)
        sh.SetNumBands(3)
        self.assertEqual((builder.numSteps, builder.maxBands, builder.maxCoefficients,
                          builder.angleName), (256, 30, 900, 40.7436637878418))
        sh.numBands = 5
        self.assertEqual((sh.numBands, sh.GetNumCoefficients()), (5, 9))

    def test_coefficients(self):
        sh = filled_set(3, 0.0)
        sh.SetNumBands(2)
        sh.SetNumBands(3)
        values = [sh.GetCoefficient(i) for i in range(9)]
        self.assertEqual(values, [0.0, 1.0, 2.0, 3.0, 0.0, 0.0, 0.0, 0.0, 0.0])
        sh.SetCoefficient(0, 0.1)
        self.assertEqual(sh.GetCoefficient(0), 0.10000000149011612)
        for index in -1, 9, 2 ** 31 - 1:
            self.assertRaises(IndexError, sh.GetCoefficient, index)
            self.assertRaises(IndexError, sh.SetCoefficient, index, 1.0)
        for bands in -1, 46341, 2 ** 31 - 1, -2 ** 31:
            self.assertRaises(ValueError, sh.SetNumBands, bands)
        self.assertEqual(sh.numBands, 3)
        sh.Clean()
        self.assertEqual(str(sh.GetAsBuffer()), "\0" * 36)


if __name__ == "__main__":
    unittest.main()
