"""The checks of the matrix that RotateSH takes, in their order."""

import unittest

import _Orvane

from support import IDENTITY, OrvaneTest, filled_set

NO_TUPLE = "Second argument must be a tuple"
NOT_4 = "matrix tuple should have 4 sub-tuples"
NO_ROW = "matrix tuple should contain more tuples"
ROW_NOT_4 = "inner matrix tuples should have 4 values"
NO_FLOAT = "inner matrix tuples should contain floats"

ROW = (1.0, 0.0, 0.0, 0.0)


def with_value(i, j, value):
    rows = [list(row) for row in IDENTITY]
    rows[i][j] = value
    return tuple(tuple(row) for row in rows)


class Tuple(tuple):
    pass


class LyingFloat(float):
    def __float__(self):
        raise AssertionError("must not be asked")


class RotationMatrixTest(OrvaneTest):
    def test_refusals_in_order(self):
        builder, sh = _Orvane.SHBuilder(), filled_set(2)
        cases = [
            (list(IDENTITY), NO_TUPLE), ("abcd", NO_TUPLE),
            ((), NOT_4), (IDENTITY[:3], NOT_4), (IDENTITY + (ROW,), NOT_4), ((1, 2, 3), NOT_4),
            ((ROW, ROW, None, ROW), NO_ROW), (([1.0] * 4, (), (), ()), NO_ROW),
            ((ROW, (0.0,) * 3, None, ROW), ROW_NOT_4), ((ROW, ROW, ROW + ROW, ROW), ROW_NOT_4),
            ((with_value(0, 2, 1)[0], None, None, None), NO_FLOAT),
            ((ROW, (0.0, 0.0, "x", 0.0), (), ()), NO_FLOAT),
        ]
        cases += [(with_value(i, j, 1), NO_FLOAT) for i in range(3) for j in range(3)]
        for matrix, text in cases:
            self.assert_raises(TypeError, text, builder.RotateSH, sh, matrix)

    def test_what_is_not_looked_at(self):
        builder, sh = _Orvane.SHBuilder(), filled_set(2)
        expected = str(builder.RotateSH(sh, IDENTITY).GetAsBuffer())
        self.assertEqual(expected[:16], str(sh.GetAsBuffer()))
        accepted = [IDENTITY[:3] + ("no tuple",), Tuple(Tuple(row) for row in IDENTITY),
                    with_value(1, 1, LyingFloat(1.0))]
        accepted += [with_value(i, 3, 7) for i in range(3)]
        for matrix in accepted:
            self.assertEqual(str(builder.RotateSH(sh, matrix).GetAsBuffer()), expected)


if __name__ == "__main__":
    unittest.main()
