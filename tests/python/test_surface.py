"""What `_Orvane` offers: two types, their methods, attributes and docstrings, and nothing else."""

import pydoc
import unittest

import _Orvane

from support import ATTRIBUTES, DOCS, METHODS, OrvaneTest


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
        builder = _Orvane.SHBuilder()
        builder.GenerateLookUpTables(256)
        self.assertEqual((builder.numSteps, builder.maxBands, builder.maxCoefficients,
                          builder.angleName), (256, 30, 900, 40.7436637878418))


if __name__ == "__main__":
    unittest.main()
