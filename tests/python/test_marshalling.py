"""How arguments come in and results go out: counts, types, messages and references."""

import unittest

import _Orvane

from support import (HOST, IDENTITY, METHODS, OBJECT_ALLOCATION, WorldTest, arguments_of,
                     kinds)

NO_MATCH = "Could not match argument %i to expected type: %s."


class OldStyle:
    """Its instances have the slots of everything and offer nothing."""


class Tuple(tuple):
    pass


class LyingFloat(float):
    def __float__(self):
        raise AssertionError("must not be asked")


def with_value(i, j, value):
    """The identity with this value."""
    rows = [list(row) for row in IDENTITY]
    rows[i][j] = value
    return tuple(tuple(row) for row in rows)


# Objects that the type of an argument refuses, and the words of the refusal; None for Python's own.
SETS = [5, 1.5, "x", (), object(), OldStyle(), _Orvane.SphericalHarmonic]
NOT_INT = [1.5, "x", None, [], object(), OldStyle()]
NOT_FLOAT = ["x", None, [], object(), OldStyle(), 1j]
REFUSED = {
    ("thunk", "SH"): (SETS, lambda i: NO_MATCH % (i, "class SphericalHarmonic")),
    ("thunk", "int"): (NOT_INT, lambda i: NO_MATCH % (i, "int")),
    ("thunk", "float"): (NOT_FLOAT, lambda i: NO_MATCH % (i, "float")),
    ("tuple", "set"): (SETS + [None], lambda i: NO_MATCH % (i, "class SphericalHarmonic")),
    ("tuple", "buffer"): ([5, 1.5, None, [], object(), OldStyle(), u"x".isdigit],
                          lambda i: "data isn't a buffer"),
    ("tuple", "matrix"): ([5, None, "abcd", [()] * 4, OldStyle()],
                          lambda i: "Second argument must be a tuple"),
    ("tuple", "i"): (["x", None, [], object(), 1.5], lambda i: None),
    ("tuple", "f"): (["x", None, [], object()], lambda i: None),
    ("tuple", "d"): (["x", None, [], object()], lambda i: None),
}


class MarshallingTest(WorldTest):
    def test_argument_counts(self):
        before = self.world.snapshot()
        for method in METHODS:
            call, legal = self.world.bound(method), self.world.calls[method.name]
            self.assertEqual(len(legal), len(method.arguments))
            if method.style == "direct":
                self.assertEqual(str(call("any", None, 3)), str(call()))
                self.assertEqual(self.outcomes(call, "any", None, 3), set([buffer]))
                continue
            n = len(legal)
            few, many = "Function expects %i arguments." % n, (
                "Function expects %i arguments (0 optional)." % n)
            if n == 1:
                few, many = "Function expects 1 argument.", (
                    "Function expects 1 argument (0 optional).")
            if method.style == "tuple":
                few = many = None
            if n > 0:
                self.assert_raises(TypeError, few, call, *legal[:-1])
                self.assert_raises(TypeError, few, call)
            self.assert_raises(TypeError, many, call, *legal + [None])
            self.assert_raises(TypeError, None, lambda: call(*legal, key=1))
        self.assertEqual(self.world.snapshot(), before)

    def test_argument_types(self):
        before = self.world.snapshot()
        refused = 0
        for method in METHODS:
            for i, kind in enumerate(kinds(method)):
                objects, text = REFUSED[method.style, kind]
                for wrong in objects + [self.world.builder]:
                    self.assert_raises(TypeError, text(i), self.world.call, method, i, wrong)
                    refused += 1
        self.assertGreater(refused, 500)
        for method, i in arguments_of("SH"):
            self.assert_raises(TypeError, NO_MATCH % (i, "class SphericalHarmonic"),
                               self.world.call, method, i, None)
        for method, i in arguments_of("int", "i"):
            for wrong in 2 ** 32, -2 ** 31 - 1, 2 ** 64, -10 ** 30:
                self.assert_raises(OverflowError, None, self.world.call, method, i, wrong)
        self.assertEqual(self.world.snapshot(), before)

    def test_first_wrong_argument_is_reported(self):
        b, sh = self.world.builder, self.world.set
        self.assert_raises(TypeError, NO_MATCH % (0, "class SphericalHarmonic"), b.AddSH, 5, "x")
        self.assert_raises(TypeError, NO_MATCH % (1, "class SphericalHarmonic"), b.AddSH, None, 5)
        self.assert_raises(TypeError, NO_MATCH % (0, "class SphericalHarmonic"),
                           b.RotateSH, None, None)
        self.assert_raises(TypeError, None, b.RotateZ, None, "x")  # the parser comes first
        self.assert_raises(TypeError, "data isn't a buffer", b.ExtendSHFromBuffer, sh, 5, 9, 9)

    def test_results(self):
        types = {"None": type(None), "int": int, "float": float, "buffer": buffer,
                 "SH": _Orvane.SphericalHarmonic}
        for method in METHODS:
            call, legal = self.world.bound(method), self.world.calls[method.name]
            self.assertEqual(self.outcomes(call, *legal), set([types[method.result]]), method.name)
            if method.result == "SH":
                self.assertIs(call(*legal) is self.world.set, method.style == "thunk", method.name)

    def test_no_memory_for_the_new_set(self):
        for method in METHODS:
            def refused(call, *arguments):
                HOST.TeskFailAllocation(OBJECT_ALLOCATION, 1)
                return call(*arguments)

            if method.style == "tuple" and method.result == "SH":
                self.assert_raises(MemoryError, "", refused, self.world.bound(method),
                                   *self.world.calls[method.name])

    def test_refused_matrices(self):
        """The checks come in their order, row by row."""
        row = (1.0, 0.0, 0.0, 0.0)
        cases = [(list(IDENTITY), "Second argument must be a tuple")]
        cases += [(matrix, "matrix tuple should have 4 sub-tuples")
                  for matrix in ((), IDENTITY[:3], IDENTITY + (row,), (1, 2, 3))]
        cases += [(matrix, "matrix tuple should contain more tuples")
                  for matrix in ((row, row, None, row), ([1.0] * 4, (), (), ()))]
        cases += [(matrix, "inner matrix tuples should have 4 values")
                  for matrix in ((row, row[:3], None, row), (row, row, row + row, row))]
        cases += [(with_value(i, j, 1)[:i + 1] + (None,) * (3 - i),
                   "inner matrix tuples should contain floats") for i in range(3) for j in range(3)]
        for matrix, text in cases:
            self.assert_raises(TypeError, text, self.world.builder.RotateSH, self.world.set, matrix)

    def test_what_of_a_matrix_is_not_looked_at(self):
        def rotated(matrix):
            return str(self.world.builder.RotateSH(self.world.set, matrix).GetAsBuffer())

        expected = rotated(IDENTITY)
        self.assertEqual(expected[:16], str(self.world.set.GetAsBuffer()))
        for matrix in [IDENTITY[:3] + ("no tuple",), Tuple(Tuple(row) for row in IDENTITY),
                       with_value(1, 1, LyingFloat(1.0))] + [with_value(i, 3, 7) for i in range(3)]:
            self.assertEqual(rotated(matrix), expected)


if __name__ == "__main__":
    unittest.main()
