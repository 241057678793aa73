"""Coefficients in the conventions of other libraries.

The module's: orthonormal, with the sign (-1)^m (Condon and Shortley), order
m = -l..l within a band.
"""

import math

from .sets import bands as number_of_bands
from .sets import coefficients, make_set

# By what a coefficient of band l is divided.
_DIVISORS = {
    "orthonormal": lambda l: 1.0,
    "4pi": lambda l: math.sqrt(4 * math.pi),
    "schmidt": lambda l: math.sqrt(4 * math.pi / (2 * l + 1)),
}
# The orders m of a band, as they are written.
_ORDERS = {
    "ascending": lambda l: range(-l, l + 1),
    "descending": lambda l: range(l, -l - 1, -1),
    "paired": lambda l: [0] + [sign * m for m in range(1, l + 1)
                               for sign in (1, -1)],
}


def exported(sh, normalisation="orthonormal", condon_shortley=True,
             order="ascending"):
    """Write a set's coefficients in another convention.

    sh: the set
    normalisation: of the basis functions: "orthonormal" (integral of the
        square 1), "4pi" (mean square 1), "schmidt" (mean square
        1 / (2 l + 1))
    condon_shortley: whether the basis functions carry (-1)^m
    order: within a band: "ascending" from m = -l to l, "descending", or
        "paired", 0, 1, -1, 2, -2

    Returns a list of floats, as many as the set's whole bands have
    Raises ValueError naming those that there are; TypeError: not a set
    """
    values = coefficients(sh)
    return [values[l * l + l + m] * sign / divisor for l, m, sign, divisor in
            _terms(number_of_bands(sh), normalisation, condon_shortley,
                   order)]


def imported(values, normalisation="orthonormal", condon_shortley=True,
             order="ascending"):
    """Make a set of coefficients in another convention.

    values: a square number of floats, 0 to 900
    normalisation, condon_shortley, order: as for exported

    Returns a new set
    Raises ValueError naming those that there are, or the nearest squares
    """
    bands = int(math.sqrt(len(values)) + 0.5)
    if bands * bands != len(values):
        make_set(values)  # says so
    result = [0.0] * len(values)
    for value, (l, m, sign, divisor) in zip(values, _terms(
            bands, normalisation, condon_shortley, order)):
        result[l * l + l + m] = value * sign * divisor
    return make_set(result)


def _terms(bands, normalisation, condon_shortley, order):
    """(l, m, sign, divisor) of each coefficient, in the order asked for."""
    for name, known, what in ((normalisation, _DIVISORS, "normalisation"),
                              (order, _ORDERS, "order")):
        if name not in known:
            raise ValueError("%s %r; expected one of %s" % (
                what, name, ", ".join(sorted(known))))
    for l in range(bands):
        divisor = _DIVISORS[normalisation](l)
        for m in _ORDERS[order](l):
            sign = -1.0 if m % 2 and not condon_shortley else 1.0
            yield l, m, sign, divisor
