"""Coefficients in and out of the module's sets; colour as three sets."""

import array
import math

import _Orvane

# The most bands that the module evaluates.
MOST_BANDS = 30
_INFINITY = float("inf")


def coefficients(sh):
    """Copy the coefficients of a set.

    sh: the set

    Returns array.array('f'): band by band, l * l + l + m for order m
    Raises TypeError: not a set
    """
    require_set(sh)
    return array.array("f", str(sh.GetAsBuffer()))


def make_set(values):
    """Make a set of its coefficients, rounded to single precision.

    values: sequence of floats, a square number of them, 0 to 900

    Returns a new set of sqrt(len(values)) bands
    Raises ValueError naming the number of values and the nearest squares, or
        the first that is beyond single precision (infinities and NaN are
        kept); TypeError: not numbers
    """
    count = len(values)
    root = int(math.sqrt(count) + 0.5)
    if root * root != count or root > MOST_BANDS:
        below = min(int(math.sqrt(count)), MOST_BANDS)
        nearest = sorted(set([below ** 2, min(below + 1, MOST_BANDS) ** 2]))
        raise ValueError("%d coefficients; expected a square of 0 to %d, "
                         "such as %s" % (count, MOST_BANDS,
                                         " or ".join(map(str, nearest))))
    singles = array.array("f", values)
    if _INFINITY in singles or -_INFINITY in singles:
        for i, (value, single) in enumerate(zip(values, singles)):
            if abs(single) == _INFINITY != abs(value):
                raise ValueError("coefficient %d is %r; expected a number of "
                                 "single precision" % (i, value))
    return from_bytes(singles.tostring(), root)


def from_bytes(contents, number):
    """A new set of `number` bands with these single-precision bits."""
    return _Orvane.SHBuilder().CreateSHFromBuffer(contents, number)


def require_set(sh):
    """Raise TypeError for what is not a set."""
    if not isinstance(sh, _Orvane.SphericalHarmonic):
        raise TypeError("%s is not a coefficient set; expected an "
                        "_Orvane.SphericalHarmonic" % type(sh).__name__)


def bands(sh):
    """The whole bands that a set's coefficients make up."""
    require_set(sh)
    return int(math.sqrt(sh.GetNumCoefficients()) + 1e-9)


def finite(sh):
    """The coefficients of whole bands, 30 at most, as a list of floats.

    Raises ValueError naming the first that is not finite, or the bands that
    are too many.
    """
    number = bands(sh)
    if number > MOST_BANDS:
        raise ValueError("a set of %d bands; expected at most %d"
                         % (number, MOST_BANDS))
    values = coefficients(sh)[:number * number].tolist()
    for i, value in enumerate(values):
        if value - value != 0.0:
            raise ValueError("coefficient %d is %r; expected a finite number"
                             % (i, value))
    return values


def channels(sh):
    """The sets of what may be one set or a tuple (red, green, blue).

    Returns a tuple of one or three sets
    Raises TypeError: neither
    """
    if not isinstance(sh, tuple):
        require_set(sh)
        return (sh,)
    if len(sh) != 3:
        raise TypeError("a tuple of %d sets; expected three: red, green, "
                        "blue" % len(sh))
    for channel in sh:
        require_set(channel)
    return sh


def like(sh, sets):
    """The sets as what `sh` is: one set, or a tuple of three."""
    return tuple(sets) if isinstance(sh, tuple) else sets[0]
