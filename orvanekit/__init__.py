"""What users of _Orvane do next with a set of spherical harmonics.

A *set* is an _Orvane.SphericalHarmonic; colour is a tuple of three (red,
green, blue), taken and given wherever the text says so. Angles are radians:
theta is the polar angle, 0 at the pole, phi the azimuth. Functions give new
sets and never change an argument.

    import orvanekit as kit
    width, height, values = kit.read_image("sky.hdr", colour=True)
    sky = kit.projected(values, width, height, 12)
    sky, width = kit.dering(sky)
    kit.save("sky.json", sky, source="sky.hdr")

`python2.7 -m orvanekit --help` does the same from a shell.
"""

from .conventions import exported, imported
from .extremes import Extremes, extremes
from .files import load, load_with_notes, save
from .fitting import fitted
from .images import read_image, write_image
from .page import write_page
from .pictures import globe, map_picture
from .pointwise import combined, product
from .projection import projected
from .ringing import dering
from .rotations import (rotation, rotation_between, rotation_matrix,
                        rotation_xyz, rotation_zyz)
from .sets import coefficients, make_set
from .windows import (cap, clamped_cosine, filtered, hann, heat, lanczos,
                      laplacian, spectrum)

__all__ = [
    "Extremes", "cap", "clamped_cosine", "coefficients", "combined", "dering",
    "exported", "extremes", "filtered", "fitted", "globe", "hann", "heat",
    "imported", "lanczos", "laplacian", "load", "load_with_notes", "make_set",
    "map_picture", "product", "projected", "read_image", "rotation",
    "rotation_between", "rotation_matrix", "rotation_xyz", "rotation_zyz",
    "save", "spectrum", "write_image", "write_page"]
