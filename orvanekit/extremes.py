"""The least and the greatest value of a set, and where they are."""

import collections
import math
from operator import mul

import _Orvane

from .grids import row_sums, trig_row
from .sets import bands as number_of_bands
from .sets import finite, make_set

Extremes = collections.namedtuple(
    "Extremes", "least least_at greatest greatest_at")

_WIDTH, _HEIGHT = 512, 256
_CANDIDATES = 2
_drawn = []


def extremes(sh):
    """Find the least and the greatest value of a set.

    Pictures that the module renders, each of a narrower range of values,
    find the places; steps to the vertex of a parabola through neighbouring
    values, computed in double precision, refine them. The values are good
    to 1e-4 of the range between them.

    sh: a set of at most 30 bands, all coefficients finite

    Returns a namedtuple (least, least_at, greatest, greatest_at), places as
        (theta, phi) in radians; a set without bands has 0.0 at (0.0, 0.0)
    Raises TypeError: not a set; ValueError: bands or coefficients
    """
    values = finite(sh)
    number = number_of_bands(sh)
    if not any(values[1:]):
        constant = values[0] * math.sqrt(0.25 / math.pi) if values else 0.0
        return Extremes(constant, (0.0, 0.0), constant, (0.0, 0.0))
    greatest, greatest_at = _greatest(values, number)
    least, least_at = _greatest([-value for value in values], number)
    return Extremes(-least, least_at, greatest, greatest_at)


def least(sh):
    """The least value of a set, as extremes finds it."""
    values = finite(sh)
    if not any(values[1:]):
        return extremes(sh).least
    return -_greatest([-value for value in values], number_of_bands(sh))[0]


def _greatest(values, number):
    """(value, (theta, phi)) of the greatest value."""
    return max(_refined(values, number, (at // _WIDTH) * math.pi / _HEIGHT,
                        (at % _WIDTH) * 2 * math.pi / _WIDTH)
               for at in _brightest(values, number))


def _brightest(values, number):
    """The pixels of a picture of the function that are near its top."""
    # Of each band by the addition theorem: no value can be larger.
    bound = sum(math.sqrt((2 * l + 1) / (4 * math.pi) * sum(
        value * value for value in values[l * l:(l + 1) * (l + 1)]))
        for l in range(number))
    sh = make_set([value / bound for value in values])  # within -1 to 1
    found, step = 0.0, 1.0 / 120
    while True:
        # Byte b is a value from (b - offset) * step on; 127 bytes are above
        # what has been found, in steps of which the last picture had 60.
        offset = int(round(128 - found / step))
        image = _render(sh, 1.0 / step, offset)
        byte = ord(max(image))
        found = (byte - offset) * step
        if step < 1e-5:
            break
        step /= 60
    places = []
    at = image.find(chr(byte))
    while at >= 0 and len(places) < _CANDIDATES:
        places.append(at)
        at = image.find(chr(byte), at + 2 * _WIDTH)
    return places


def _render(sh, scale, offset):
    if not _drawn:
        builder = _Orvane.SHBuilder()
        builder.GenerateLookUpTables(2 * _WIDTH)
        builder.SetImageBuffer(_WIDTH, _HEIGHT)
        _drawn.append(builder)
    _drawn[0].RenderSHToImageBuffer(sh, scale, offset, 1, 0)
    return str(_drawn[0].GetImageBuffer())


def _refined(values, number, theta, phi):
    """Climb from a place to the top near it."""
    width = 0.3 / number  # of the stencil: a fraction of a wave
    best = None
    for _ in range(8):
        theta = min(max(theta, 0.0), math.pi)
        around = (theta - width, theta, theta + width)
        rows = row_sums(values, number, map(abs, around))
        # Over a pole the circle goes on at the other side.
        turns = [math.pi if each < 0 or each > math.pi else 0.0
                 for each in around]
        stretch = width / max(math.sin(theta), 0.1)
        trigs = dict((turn, [trig_row(number, phi + turn + side)
                             for side in (-stretch, 0.0, stretch)])
                     for turn in set(turns))
        table = [[sum(map(mul, row, trig)) for trig in trigs[turn]]
                 for row, turn in zip(rows, turns)]
        here = table[1][1], (theta, phi % (2 * math.pi))
        if best is None or here > best:
            best = here
        slope_theta = (table[2][1] - table[0][1]) / 2
        slope_phi = (table[1][2] - table[1][0]) / 2
        bend_theta = table[2][1] - 2 * table[1][1] + table[0][1]
        bend_phi = table[1][2] - 2 * table[1][1] + table[1][0]
        twist = (table[2][2] - table[2][0] - table[0][2]
                 + table[0][0]) / 4
        determinant = bend_theta * bend_phi - twist * twist
        if bend_theta < 0 and determinant > 0:
            step_theta = (twist * slope_phi
                          - bend_phi * slope_theta) / determinant
            step_phi = (twist * slope_theta
                        - bend_theta * slope_phi) / determinant
        else:  # not yet near a top: uphill
            size = math.hypot(slope_theta, slope_phi) or 1.0
            step_theta, step_phi = slope_theta / size, slope_phi / size
        step_theta = min(max(step_theta, -2.0), 2.0)
        step_phi = min(max(step_phi, -2.0), 2.0)
        theta += step_theta * width
        phi += step_phi * stretch
        if theta < 0 or theta > math.pi:
            theta = -theta if theta < 0 else 2 * math.pi - theta
            phi += math.pi
        if abs(step_theta) + abs(step_phi) < 0.02:
            break
        width = max(width / 2, 1e-3)
    return best
