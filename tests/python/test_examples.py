"""The examples, the gallery and the README's script run, and make the pictures they should."""

import math
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, "examples")

import _Orvane
import gallery
from orvanekit import read_image

HOST = os.path.join(os.path.dirname(_Orvane.__file__), "..", "bin", "tesk-run")


class Folder(unittest.TestCase):
    """A folder for the files of each test."""

    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def run_example(self, script, *arguments):
        """What examples/<script> prints in a host of its own; fails where its status is not 0."""
        host = subprocess.Popen([HOST, os.path.join("examples", script)] + list(arguments),
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        output, errors = host.communicate()
        self.assertEqual(host.returncode, 0, errors)
        return output


class ExamplesTest(Folder):
    def test_project_image(self):
        path = os.path.join(self.folder, "earth.png")
        output = self.run_example("project_image.py", "examples/data/earth-512x256.pgm", path)
        self.assertTrue(read_image(path, True) == read_image("docs/images/earth.png", True),
                        "README shows another")
        rms = float(re.search(r"root-mean-square difference: (\S+)", output).group(1))
        self.assertTrue(5 < rms < 30, rms)
        steps = re.findall(r"^ *[0-9.]+ ms  (\w+)", output, re.MULTILINE)
        self.assertEqual(steps, ["read", "tables", "512", "projection", "rendering", "write"])

    def test_depletion_profile_has_every_feature_in_its_place(self):
        path = os.path.join(self.folder, "sheet.png")
        output = self.run_example("depletion_profile.py", path)
        self.assertEqual(read_image(path)[:2], (3 * 264 + 8, 3 * 150 + 8))
        places = re.findall(r"latitude +(\S+), longitude +(\S+); found at +(\S+), +(\S+)", output)
        self.assertEqual(len(places), 18)
        for place in places:
            latitude, longitude, found_latitude, found_longitude = [
                math.radians(float(angle)) for angle in place]
            cosine = (math.cos(latitude) * math.cos(found_latitude)
                      + math.sin(latitude) * math.sin(found_latitude)
                      * math.cos(longitude - found_longitude))
            # The blend's and the ramp's slopes move an extreme a little.
            self.assertTrue(math.degrees(math.acos(min(1.0, cosine))) < 4, place)


class GalleryTest(Folder):
    PAGE, PICTURES = "docs/gallery.md", "docs/images/gallery"

    def test_page_makes_and_shows_every_picture(self):
        gallery.run_page(self.PAGE, self.folder)
        made = sorted(os.listdir(self.folder))
        self.assertEqual(made, sorted(os.listdir(self.PICTURES)))
        for name in made:
            # Assigned first: assertEqual would print two pictures.
            same = (read_image(os.path.join(self.folder, name), True)
                    == read_image(os.path.join(self.PICTURES, name), True))
            self.assertTrue(same, "%s differs: run scripts/gallery.sh and look at it" % name)
        with open(self.PAGE) as page:
            self.assertEqual(sorted(re.findall(r"\(images/gallery/(\S+)\)", page.read())), made)


class ReadmeTest(Folder):
    def test_script_makes_a_picture(self):
        script, = gallery.python_blocks("README.md")
        self.assertEqual(len(script.splitlines()), 8)
        here = os.getcwd()
        os.chdir(self.folder)
        try:
            exec script in {}
        finally:
            os.chdir(here)
        name, = os.listdir(self.folder)
        width, height, pixels = gallery.read_pgm(os.path.join(self.folder, name))
        self.assertEqual((width, height), (512, 256))
        # A blob of 0.4 around latitude 1, longitude 2: bright at its mean, dark far away.
        pixels = bytearray(pixels)
        self.assertTrue(pixels[81 * 512 + 163] > 240)
        self.assertTrue(pixels[81 * 512 + 419] < 5)

    def test_is_short(self):
        with open("README.md") as readme:
            self.assertTrue(len(readme.read().split()) <= 900)  # three minutes


if __name__ == "__main__":
    unittest.main()
