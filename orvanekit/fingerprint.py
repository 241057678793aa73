"""What a machine's results depend on to the last bit, as one number.

The module and this package round everything the same way on every
processor; what they call of the C library may differ by one unit in the
last place, from one version to the next and from one processor to another.
"""

import array
import hashlib
import math

import _Orvane

from .fitting import fitted
from .pictures import map_picture
from .pointwise import product
from .projection import projected
from .ringing import dering
from .rotations import rotation

_VALUES = 32768  # arguments of each function: 196,608 values of six


def fingerprint():
    """Hash what the functions of this machine and the module give.

    The functions: sin, cos, acos, exp, pow and log10 of the C library. The
    module: tables, samples, projected and importance-sampled Gaussians, a
    rotation and a rendering of fixed settings. This package: a projection,
    a product, a fit, a smoothed set and a picture as PNG.

    Returns 64 hexadecimal digits; two machines with the same ones give the
    same results. Takes some 0.1 s.
    """
    total = hashlib.sha256()
    for values in _functions():
        total.update(array.array("d", values).tostring())
    for contents in _golden():
        total.update(contents)
    return total.hexdigest()


def _functions():
    # Spread without a pattern; the golden ratio's multiples fill evenly.
    parts = [place * 0.6180339887498949 % 1.0 for place in range(_VALUES)]
    angles = [part * 8 * math.pi for part in parts]
    yield map(math.sin, angles)
    yield map(math.cos, angles)
    yield map(math.acos, [2 * part - 1 for part in parts])
    yield map(math.exp, [-40 * part for part in parts])
    yield map(math.pow, parts, [30 * part for part in reversed(parts)])
    yield map(math.log10, [part + 1e-9 for part in parts])


def _golden():
    builder = _Orvane.SHBuilder()
    builder.GenerateLookUpTables(256)
    builder.GenerateSphericalSamples(1, 16)
    builder.GeneratePDFSamples(1, 8, 100)
    broad = builder.CreateGaussSH(30, 0.4, 1.0, 2.0)
    narrow = builder.CreateImportanceSampledGaussSH(2.0, 0.5, 0.2)
    turned = builder.RotateSH(broad, rotation((1.0, 2.0, 3.0), 0.7))
    for sh in (broad, narrow, turned):
        yield str(sh.GetAsBuffer())
    values = [builder.SHBasisFunc(index, 0.1 * index, index % 31 * 0.1)
              for index in range(900)]
    yield array.array("d", values).tostring()
    builder.SetImageBuffer(64, 32)
    builder.RenderSHToImageBuffer(turned, 100.0, 128, 1, 0)
    yield str(builder.GetImageBuffer())

    sky = projected([math.sin(place) for place in range(144)], 12, 12, 6)
    points = [(0.15 * place, place, math.cos(place)) for place in range(20)]
    for sh in (sky, product(sky, sky, 8), fitted(points, 3),
               dering(sky, -1.0)[0]):
        yield str(sh.GetAsBuffer())
    yield map_picture(sky, 64)
