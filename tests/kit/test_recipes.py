"""The page of recipes runs, gives what it promises and makes the pictures that it shows."""

import math
import os
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, "examples")

import recipes
from fixtures import KitTest
from orvanekit import coefficients, extremes, load, read_image

PAGE, PICTURES = "docs/recipes.md", "docs/images/recipes"


class RecipesTest(KitTest):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.names = recipes.run_page(PAGE, cls.folder)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)
        del cls.names

    def assert_place(self, found, theta, phi, tolerance):
        apart = math.hypot(found[0] - theta, math.sin(theta) * (found[1] - phi))
        self.assertTrue(apart < tolerance, found)

    def test_results(self):
        names = self.names
        self.assert_place(names["sun"].greatest_at, 1.0, 2.0, 0.03)
        for channel in names["clean"]:
            self.assertTrue(extremes(channel).least > -0.003)
        # From (1, 2) by a quarter about z, and by one about x: (x, y, z) goes to (x, -z, y).
        self.assert_place(extremes(names["turned"][1]).greatest_at, 1.0, 2.0 + math.pi / 2, 0.03)
        x, y, z = (math.sin(1.0) * math.cos(2.0), math.sin(1.0) * math.sin(2.0), math.cos(1.0))
        self.assert_place(extremes(names["tipped"][1]).greatest_at,
                          math.acos(y), math.atan2(-z, x) % (2 * math.pi), 0.03)
        self.assert_place(names["deepest"], 1.7, 3.5, 0.15)
        # 0.5 sqrt(4 pi); schmidt's l = 1 is that over 3; x and y without the sign.
        whole = math.sqrt(4 * math.pi)
        self.assert_near(coefficients(names["mine"]),
                         [0.5 * whole, 0, whole / 3 ** .5, -0.25 * whole / 3 ** .5], 1e-6)
        self.assert_near(names["back"], [0.5, 0, 1 / 3 ** .5, 0.25 / 3 ** .5], 1e-6)

    def test_command_line_gives_the_same(self):
        for file_name, name in (("clean.json", "clean"), ("clean.json", "same"),
                                ("irradiance.json", "irradiance"), ("turned.json", "turned"),
                                ("mine.json", "mine"), ("profile.json", "profile")):
            found, expected = load(os.path.join(self.folder, file_name)), self.names[name]
            if not isinstance(found, tuple):
                found, expected = (found,), (expected,)
            for one, other in zip(found, expected):
                self.assert_near(coefficients(one), coefficients(other), 1e-5, name)

    def test_pictures_are_what_the_page_makes(self):
        shown = recipes.shown(PAGE, PICTURES)
        self.assertEqual(sorted(shown), sorted(os.listdir(PICTURES)))
        for name in shown:
            width, height, made = read_image(os.path.join(self.folder, name), True)
            kept = read_image(os.path.join(PICTURES, name), True)
            self.assertEqual(kept[:2], (width, height))
            for one, other in zip(made, kept[2]):
                # A last bit of a coefficient may move a value across a level.
                apart = sum(abs(a - b) for a, b in zip(one, other)) / (width * height)
                self.assertTrue(apart < 1e-3, "%s differs by %g: run scripts/gallery.sh and look"
                                % (name, apart))


if __name__ == "__main__":
    unittest.main()
