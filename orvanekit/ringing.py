"""Removal of ringing: the negative lobes around what a set cannot hold."""

import math

from .extremes import least
from .sets import bands as number_of_bands
from .sets import channels, finite, like
from .windows import filtered, heat

_WIDEST = 4.0  # radians; beyond, nothing but the mean is left


def dering(sh, floor=0.0):
    """Smooth a set until no value is below a floor.

    The narrowest heat window is searched by bisection. The mean stays, and
    with it the integral. (P.-P. Sloan, "Deringing Spherical Harmonics",
    2017, searches another window the same way; the heat window keeps more
    of sharp fields.)

    sh: the set, or a tuple of three (red, green, blue), which get one width
    floor: the least value allowed

    Returns (set, width): a new set, or a tuple of three, and the width of
        the heat window in radians; 0.0 and an equal set where no value was
        below the floor
    Raises ValueError, with the mean, where no width can reach the floor: the
        mean is below it; TypeError: not a set
    """
    sets = channels(sh)
    number = max(number_of_bands(channel) for channel in sets)
    for channel in sets:
        values = finite(channel)
        mean = values[0] * math.sqrt(0.25 / math.pi) if values else 0.0
        if mean < floor:
            raise ValueError("the mean is %.9g, below the floor %.9g: no "
                             "smoothing reaches it" % (mean, floor))

    def smoothed(width):
        window = heat(number, width)
        return [filtered(channel, window) for channel in sets]

    def is_enough(width):
        return all(least(channel) >= floor for channel in smoothed(width))

    if is_enough(0.0):
        return like(sh, smoothed(0.0)), 0.0
    narrow, wide = 0.0, 1.0 / max(number, 1)
    while not is_enough(wide):
        narrow, wide = wide, 2 * wide
        if wide > _WIDEST:
            raise ValueError("the mean is %.9g, too near the floor %.9g to "
                             "be reached" % (mean, floor))
    while wide - narrow > 2e-3 * wide:
        middle = (narrow + wide) / 2
        if is_enough(middle):
            wide = middle
        else:
            narrow = middle
    return like(sh, smoothed(wide)), wide
