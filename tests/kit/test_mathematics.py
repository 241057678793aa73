"""The package's mathematics: known integrals, brute force, vectors, formulas."""

import math
import random
import unittest
from math import factorial

import _Orvane
import orvanekit as kit
from fixtures import KitTest

PI = math.pi
BUILDER = _Orvane.SHBuilder()
STEPS = 16384
BUILDER.GenerateLookUpTables(STEPS)


def value(sh, theta, phi):
    """The module's value at the steps' centres: good to 1e-3 of a radian in the angles."""
    half = PI / STEPS
    return BUILDER.GetValueAt(sh, phi + half, theta + half)


def random_set(bands, seed=1, falling=1.0):
    numbers = random.Random(seed)
    return kit.make_set([numbers.uniform(-1, 1) / (1 + l) ** falling
                         for l in range(bands) for _ in range(2 * l + 1)])


def spherical(l, m, theta, phi):
    """A basis function by Rodrigues' formula, in sums of powers: independent of recurrences."""
    order = abs(m)
    total = 0.0
    for k in range((l - order) // 2 + 1):
        power = l - order - 2 * k
        total += (-1) ** k * math.cos(theta) ** power * factorial(2 * (l - k)) / (
            factorial(k) * factorial(l - k) * factorial(power))
    legendre = (-math.sin(theta)) ** order * total / 2 ** l
    norm = math.sqrt((2 * l + 1) / (4 * PI) * factorial(l - order) / factorial(l + order))
    turn = math.cos(m * phi) if m >= 0 else math.sin(-m * phi)
    return norm * legendre * turn * (math.sqrt(2) if m else 1.0)


def exact(sh, theta, phi):
    """A small set's value, in double precision."""
    values = kit.coefficients(sh)
    bands = int(math.sqrt(len(values)))
    return sum(values[l * l + l + m] * spherical(l, m, theta, phi)
               for l in range(bands) for m in range(-l, l + 1))


def direction(theta, phi):
    return math.sin(theta) * math.cos(phi), math.sin(theta) * math.sin(phi), math.cos(theta)


def places(count, seed=3):
    numbers = random.Random(seed)
    return [(math.acos(numbers.uniform(-1, 1)), numbers.uniform(0, 2 * PI)) for _ in range(count)]


def differs(a, b):
    """The largest difference of two sets' coefficients, by the largest of the first."""
    a, b = kit.coefficients(a), kit.coefficients(b)
    assert len(a) == len(b)
    return max(abs(p - q) for p, q in zip(a, b)) / max(map(abs, a))


class SetsTest(KitTest):
    def test_coefficients_in_and_out(self):
        values = [0.5, -1.0, 0.1, 3.0]
        sh = kit.make_set(values)
        self.assertEqual((sh.numBands, sh.GetCoefficient(2)), (2, 0.10000000149011612))
        copy = kit.coefficients(sh)
        copy[0] = 7.0
        self.assertEqual(sh.GetCoefficient(0), 0.5)
        self.assertEqual(copy.typecode, "f")
        self.assertEqual(kit.make_set([]).numBands, 0)
        self.refuses(ValueError, "5 coefficients|4 or 9", kit.make_set, [1.0] * 5)
        self.refuses(ValueError, "961|900", kit.make_set, [0.0] * 961)
        self.refuses(ValueError, "coefficient 2 is 1e+39", kit.make_set,
                     [0.0, float("inf"), 1e39, 0.0])
        self.refuses(TypeError, "list", kit.coefficients, values)

    def test_colour_goes_wherever_a_set_goes(self):
        sky = tuple(random_set(4, seed) for seed in (1, 2, 3))
        for function in (lambda s: kit.filtered(s, kit.hann(4)),
                         lambda s: kit.combined(abs, [s], 4)):
            for one, three in zip(sky, function(sky)):
                self.assertEqual(differs(function(one), three), 0.0)
        smooth, width = kit.dering(sky, -0.3)
        self.assertEqual(width, max(kit.dering(one, -0.3)[1] for one in sky))
        self.assertEqual(len(smooth), 3)
        planes = tuple([float(i + c) for i in range(7 * 7)] for c in range(3))
        for one, plane in zip(kit.projected(planes, 7, 7, 4), planes):
            self.assertEqual(differs(one, kit.projected(plane, 7, 7, 4)), 0.0)
        self.refuses(TypeError, "2 sets|red, green, blue", kit.filtered, sky[:2], kit.hann(4))


class WindowsTest(KitTest):
    def test_values(self):
        for window, expected in [
                (kit.clamped_cosine(9), [1, 2 / 3., .25, 0, -1 / 24., 0, 1 / 64., 0, -1 / 128.]),
                (kit.laplacian(4), [0, -2, -6, -12]),
                (kit.hann(4), [1, .5 + .5 * math.sqrt(.5), .5, .5 - .5 * math.sqrt(.5)]),
                (kit.lanczos(2), [1, 2 / PI]),
                (kit.heat(3, 0.5), [1, math.exp(-.25), math.exp(-.75)]),
                (kit.cap(3, PI), [1, 0, 0]), (kit.cap(5, PI / 2), [1, .5, 0, -.125, 0]),
                (kit.hann(0), [])]:
            self.assert_near(window, expected, 1e-14)
        for function, arguments in [(kit.heat, (3, -1.0)), (kit.cap, (3, 0.0)),
                                    (kit.cap, (3, 4.0)), (kit.hann, (-1,)),
                                    (kit.heat, (3, float("nan"))),
                                    (kit.heat, (3, float("inf")))]:
            self.refuses(ValueError, "expected", function, *arguments)
        self.refuses(ValueError, "3|4", kit.filtered, random_set(4), [1.0] * 3)


class ExtremesTest(KitTest):
    def test_against_a_fine_grid(self):
        for seed, bands in ((1, 3), (2, 8), (3, 30), (4, 30)):
            sh = random_set(bands, seed, 0.5)
            found = kit.extremes(sh)
            grid = [value(sh, PI * y / 150, PI * x / 150)
                    for y in range(151) for x in range(300)]
            reach = found.greatest - found.least
            self.assertGreater(found.greatest, max(grid) - 1e-3 * reach)
            self.assertLess(found.least, min(grid) + 1e-3 * reach)
            for at, claimed in ((found.least_at, found.least),
                                (found.greatest_at, found.greatest)):
                self.assertAlmostEqual(value(sh, *at) / reach, claimed / reach, 2)

    def test_where_it_is_known(self):
        for values, expected in [
                ([], (0.0, 0.0)), ([2.0], (2 * math.sqrt(.25 / PI),) * 2),
                # Band 1 of order 0: cos theta, at the poles.
                ([0, 0, 2.0, 0], (-math.sqrt(3 / PI), math.sqrt(3 / PI)))]:
            found = kit.extremes(kit.make_set(values))
            self.assertAlmostEqual(found.least, expected[0], 6)
            self.assertAlmostEqual(found.greatest, expected[1], 6)
        self.assertAlmostEqual(found.greatest_at[0], 0.0, 2)
        self.assertAlmostEqual(found.least_at[0], PI, 2)
        self.refuses(ValueError, "coefficient 1|nan", kit.extremes,
                     kit.make_set([0.0, float("nan"), 0.0, 0.0]))

    def test_dering(self):
        disc = kit.projected([1.0 if (y + 0.5) * PI / 256 < 0.6 else 0.0
                              for y in range(256) for _ in range(512)], 512, 256, 30)
        self.assertLess(kit.extremes(disc).least, -0.05)
        smooth, width = kit.dering(disc)
        self.assertGreaterEqual(kit.extremes(smooth).least, -0.003)
        self.assertGreater(value(smooth, 0.0, 0.0), 0.9)
        self.assertEqual(smooth.GetCoefficient(0), disc.GetCoefficient(0))
        # It is the narrowest: a little less is not enough.
        less = kit.filtered(disc, kit.heat(30, 0.97 * width))
        self.assertLess(kit.extremes(less).least, 0.0)
        same, width = kit.dering(disc, -0.2)
        self.assertEqual((width, differs(same, disc)), (0.0, 0.0))
        self.refuses(ValueError, "the mean is -0.28|floor 0", kit.dering, kit.make_set([-1.0]))


class ProjectionTest(KitTest):
    def test_basis_functions_come_back(self):
        """Each by a formula of its own, in pictures of the smallest and of odd sizes."""
        for width, height, bands in ((9, 9, 5), (12, 9, 5), (11, 14, 5)):
            for l, m in ((0, 0), (1, -1), (2, 1), (4, -4), (4, 3), (3, 0)):
                picture = [spherical(l, m, (y + 0.5) * PI / height, (x + 0.5) * 2 * PI / width)
                           for y in range(height) for x in range(width)]
                expected = [0.0] * bands ** 2
                expected[l * l + l + m] = 1.0
                self.assertLess(differs(kit.make_set(expected), kit.projected(
                    picture, width, height, bands)), 1e-6, (width, height, l, m))

    def test_a_constant_has_one_coefficient(self):
        values = kit.coefficients(kit.projected([2.0] * (61 * 59), 61, 59, 30))
        self.assertAlmostEqual(values[0], 2 * math.sqrt(4 * PI), 6)
        self.assertEqual(list(values[1:]), [0.0] * 899)

    def test_refusals(self):
        for words, arguments in [("8 values|9", ([0.0] * 8, 3, 3, 2)),
                                 ("2 x 3|3 x 3", ([0.0] * 6, 2, 3, 2)),
                                 ("bands is 31", ([0.0] * 9, 3, 3, 31)),
                                 ("value 5 (row 1, column 2) is nan",
                                  ([0.0] * 5 + [float("nan")] + [0.0] * 3, 3, 3, 2))]:
            self.refuses(ValueError, words, kit.projected, *arguments)


class PointwiseTest(KitTest):
    def test_product(self):
        a, b = random_set(5, 1), random_set(4, 2)
        both = kit.product(a, b, 8)
        for theta, phi in places(30):
            self.assertAlmostEqual(exact(both, theta, phi),
                                   exact(a, theta, phi) * exact(b, theta, phi), 5)
        one = kit.make_set([math.sqrt(4 * PI)])
        self.assertLess(differs(random_set(30), kit.product(random_set(30), one)), 1e-5)

    def test_combined(self):
        a, b = random_set(4, 1), random_set(4, 2)
        self.assertLess(differs(a, kit.combined(lambda x, y: x + y - y, [a, b], 4)), 1e-6)
        greater = kit.combined(max, [a, b], density=3)
        miss = [value(greater, *at) - max(value(a, *at), value(b, *at))
                for at in places(200)]
        self.assertLess(math.sqrt(sum(m * m for m in miss) / len(miss)), 0.01)
        self.refuses(ValueError, "inf", kit.combined, lambda x: float("inf"), [a])
        self.refuses(TypeError, "None", kit.combined, lambda x: None, [a])
        self.refuses(ValueError, "no sets", kit.combined, max, [])

    def test_fitted(self):
        sh = random_set(6)
        points = [(theta, phi, exact(sh, theta, phi)) for theta, phi in places(150)]
        parts = []
        fit = kit.fitted(points, 6, 0.0, parts.append)
        self.assertLess(differs(sh, fit), 1e-5)
        self.assertEqual(parts[-1], 1.0)
        self.assertEqual(parts, sorted(parts))
        # Beyond the poles the same places are meant.
        over = [(-theta, phi - PI, v) for theta, phi, v in points]
        self.assertLess(differs(fit, kit.fitted(over, 6, 0.0)), 1e-5)
        for words, points in (("no points", []), ("point 0 is (1.0, 2.0)", [(1.0, 2.0)]),
                              ("value of point 1 is nan", [
                (1.0, 1.0, 1.0), (1.0, 1.0, float("nan"))])):
            self.refuses(ValueError, words, kit.fitted, points, 3)


class RotationTest(KitTest):
    def assert_turns(self, matrix, place, expected):
        """That a matrix takes a bump at a place into a direction."""
        bump = kit.make_set([math.exp(-l * (l + 1) * 0.02) * spherical(l, m, *place)
                             for l in range(12) for m in range(-l, l + 1)])
        found = kit.extremes(BUILDER.RotateSH(bump, matrix)).greatest_at
        self.assert_near(direction(*found), expected, 2e-4, place)

    def test_about_axes(self):
        x, y, z = (1, 0, 0), (0, 1, 0), (0, 0, 1)
        front, east, west, pole = (PI / 2, 0.0), (PI / 2, PI / 2), (PI / 2, 3 * PI / 2), (0.0, 0.0)
        for matrix, start, expected in [
                (kit.rotation(z, PI / 2), front, y), (kit.rotation(x, PI / 2), east, z),
                (kit.rotation(y, PI / 2), pole, x),
                (kit.rotation((0, 0, -5), PI / 2), front, (0, -1, 0)),
                (kit.rotation(x, PI / 2), pole, (0, -1, 0)),
                (kit.rotation((1, 1, 1), 2 * PI / 3), front, y),
                (kit.rotation(y, PI), west, (0, -1, 0)),
                (kit.rotation_zyz(0.4, 0.7, 1.9), pole, direction(0.7, 0.4)),
                (kit.rotation_xyz(PI / 2, 0.0, 0.3), east, z),
                (kit.rotation_xyz(0.0, 0.0, 0.3), front, (math.cos(0.3), math.sin(0.3), 0))]:
            self.assert_turns(matrix, start, expected)
        self.refuses(ValueError, "length 0", kit.rotation, (0, 0, 0), 1.0)

    def test_by_matrix_and_between_places(self):
        c, s = math.cos(0.5), math.sin(0.5)
        rows = ((c, -s, 0), (0, 0, -1), (s, c, 0))
        self.assert_turns(kit.rotation_matrix(rows), (1.0, 2.0),
                          [sum(p * q for p, q in zip(row, direction(1.0, 2.0))) for row in rows])
        for start, end in [((0.3, 0.1), (2.0, 4.0)), ((0.0, 0.0), (PI, 0.0)),
                           ((1.0, 1.0), (1.0, 1.0)), ((1.0, 2.0), (PI - 1.0, 2.0 + PI))]:
            self.assert_turns(kit.rotation_between(start, end), start, direction(*end))
        for words, first in (("off by 3", (2, 0, 0)), ("reflection", (-1, 0, 0))):
            self.refuses(ValueError, words, kit.rotation_matrix, (first, (0, 1, 0), (0, 0, 1)))


class ConventionsTest(KitTest):
    def test_against_the_formulas(self):
        sh = random_set(4)
        values = kit.coefficients(sh)
        for normalisation, factor in (("orthonormal", lambda l: 1.0),
                                      ("4pi", lambda l: 1 / math.sqrt(4 * PI)),
                                      ("schmidt", lambda l: math.sqrt((2 * l + 1) / (4 * PI)))):
            for signed in (True, False):
                got = kit.exported(sh, normalisation, signed)
                for l in range(4):
                    for m in range(-l, l + 1):
                        i = l * l + l + m
                        sign = 1 if signed or m % 2 == 0 else -1
                        self.assertAlmostEqual(got[i], sign * values[i] * factor(l), 15)
                for order in ("ascending", "descending", "paired"):
                    there = kit.exported(sh, normalisation, signed, order)
                    back = kit.imported(there, normalisation, signed, order)
                    self.assertEqual(str(back.GetAsBuffer()), str(sh.GetAsBuffer()))
        ordered = kit.make_set(range(9))
        self.assertEqual(kit.exported(ordered, order="paired"), [0, 2, 3, 1, 6, 7, 5, 8, 4])
        self.assertEqual(kit.exported(ordered, order="descending"), [0, 3, 2, 1, 8, 7, 6, 5, 4])
        self.refuses(ValueError, "4pi, orthonormal, schmidt", kit.exported, sh, "n3d")
        self.refuses(ValueError, "ascending, descending, paired", kit.imported, [1.0],
                     order="up")


if __name__ == "__main__":
    unittest.main()
