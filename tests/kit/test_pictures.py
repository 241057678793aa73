"""Maps and globes against values of the sets that they show."""

import math
import unittest

import _Orvane
from fixtures import FolderTest
from orvanekit import globe, make_set, map_picture, read_image
from orvanekit.colours import DIVERGING

# The y direction, and its value at y: sqrt(3 / 4 pi) sin(theta) sin(phi) times -1.
Y = make_set([0, -math.sqrt(4 * math.pi / 3), 0, 0])
Z_PLUS_2 = make_set([2 * math.sqrt(4 * math.pi), 0, math.sqrt(4 * math.pi / 3), 0])
ORANGE, BLUE = DIVERGING[255], DIVERGING[1]


class PicturesTest(FolderTest):
    def pixels(self, picture):
        """Width, height and a function from a place to the pixel's bytes."""
        self.write("picture.png", picture)
        width, height, planes = read_image("picture.png", True)
        return width, height, lambda x, y: tuple(
            int(255 * plane[y * width + x] + 0.5) for plane in planes)

    def test_map_in_each_colouring(self):
        width, height, at = self.pixels(map_picture(Y, 64))
        self.assertEqual((width, height), (64, 32))
        self.assert_near(at(16, 16), ORANGE, 2)   # theta pi/2, phi pi/2: +1
        self.assert_near(at(48, 16), BLUE, 2)     # phi 3 pi/2: -1
        self.assert_near(at(0, 16), (0, 0, 0), 2)
        self.assert_near(at(16, 0), (0, 0, 0), 2)
        # Values from 1 to 3, of which 2 is in the middle.
        _, height, at = self.pixels(map_picture(Z_PLUS_2, 8, 181, colours="grey"))
        self.assertEqual(height, 181)
        for row, level in ((0, 255), (60, 191), (90, 127), (120, 64), (180, 0)):
            self.assert_near(at(3, row), 3 * (level,), 2, row)
        _, _, at = self.pixels(map_picture(Z_PLUS_2, 8, 181, colours="grey", least=2,
                                           greatest=4, gamma=2.0))
        for row, value in ((0, 0.5), (60, 0.25), (120, 0.0)):
            self.assert_near(at(3, row), 3 * (255 * math.sqrt(value),), 2, row)

    def test_globe(self):
        size = 41
        middle = size // 2
        for view, at_middle, at_right, at_top in (
                ((math.pi / 2, math.pi / 2), ORANGE, (0, 0, 0), (0, 0, 0)),
                ((math.pi / 2, 0.0), (0, 0, 0), ORANGE, (0, 0, 0)),
                ((math.pi / 2, math.pi), (0, 0, 0), BLUE, (0, 0, 0)),
                # From above the pole, with phi = 0 below the middle.
                ((0.0, 0.0), (0, 0, 0), ORANGE, (0, 0, 0)),
                ((0.0, -math.pi / 2), (0, 0, 0), (0, 0, 0), ORANGE)):
            width, height, at = self.pixels(globe(Y, size, view))
            self.assertEqual((width, height), (size, size))
            self.assertEqual(at(0, 0), (24, 26, 30))
            for place, expected in (((middle, middle), at_middle),
                                    ((size - 1, middle), at_right), ((middle, 0), at_top)):
                self.assert_near(at(*place), expected, 60, (view, place))

    def test_colour_is_three_sets(self):
        sets = tuple(make_set([value * math.sqrt(4 * math.pi)]) for value in (0.5, 1, -3))
        for picture in (map_picture(sets, 4), globe(sets, 9)):
            width, height, at = self.pixels(picture)
            self.assert_near(at(width // 2, height // 2), (127, 255, 0), 2)

    def test_flat_sets(self):
        zero, empty = make_set([0.0]), _Orvane.SphericalHarmonic()
        for sh in (zero, empty, (empty, zero, empty)):
            for colours in ("grey", "diverging"):
                _, _, at = self.pixels(map_picture(sh, 4, colours=colours))
                self.assert_near(at(1, 1), (0, 0, 0), 2)

    def test_what_is_refused(self):
        for error, function, arguments, words in (
                (ValueError, map_picture, (Y, 0), "a picture of 0 x 1 pixels; expected 1 to 8192"),
                (ValueError, map_picture, (Y, 9, 9, "pink"), "colours 'pink'; expected diverging"),
                (ValueError, map_picture, (Y, 9, 9, "grey", 2, 1), "a range from 2 to 1"),
                (ValueError, map_picture, (Y, 9, 9, "grey", 0, 1, 0), "gamma 0; expected more"),
                (ValueError, globe, (Y, 4000), "a globe of 4000 pixels; expected 1 to 2048"),
                (ValueError, globe, (Y, 9, (float("nan"), 0)), "view (nan, 0); expected a theta"),
                (TypeError, globe, ((Y, Y), 9), "a tuple of 2 sets; expected three"),
                (TypeError, globe, ("Y", 9), "str is not a coefficient set")):
            self.refuses(error, "^" + words, function, *arguments)


if __name__ == "__main__":
    unittest.main()
