"""Least squares of scattered points."""

import math
from operator import mul

from .grids import legendre_columns, trig_columns
from .sets import MOST_BANDS, make_set

_LARGEST = 3.4e38  # of single precision
_MOST_ROUNDS = 200
_ENOUGH = 1e-12  # of the squared residual: single precision at the end


def fitted(points, bands, smoothing=1e-8, progress=None):
    """Fit a set to values at scattered points.

    The least of 4 pi / n * sum of (f(point) - value)^2 + smoothing * sum of
    (l (l + 1) c(l, m))^2, by conjugate gradients on the normal equations,
    preconditioned by their diagonal (Hestenes and Stiefel 1952).

    points: a sequence of (theta, phi, value), angles in radians
    bands: 1 to 30
    smoothing: 0 and up; 1e-8 hardly touches what many even points fix, and
        fills gaps smoothly
    progress: called with the part that is done, 0 to 1, now and then

    Returns a new set
    Raises ValueError: no points, one that is no triple, a number that is
        not finite, bands, smoothing
    """
    if not 1 <= bands <= MOST_BANDS:
        raise ValueError("bands is %d; expected 1 to %d" % (bands, MOST_BANDS))
    if not 0 <= smoothing < float("inf"):
        raise ValueError("smoothing is %r; expected 0 or more" % (smoothing,))
    points = list(points)
    if not points:
        raise ValueError("no points; expected one or more")
    for number, point in enumerate(points):
        if len(point) != 3:
            raise ValueError("point %d is %r; expected (theta, phi, value)"
                             % (number, point))
        for name, each in zip(("theta", "phi", "value"), point):
            if not abs(each) <= _LARGEST:
                raise ValueError("%s of point %d is %r; expected a finite "
                                 "number of single precision"
                                 % (name, number, each))
    columns = _basis(points, bands)
    rows = zip(*columns)
    scale = 4 * math.pi / len(points)
    penalty = [smoothing * (l * (l + 1)) ** 2
               for l in range(bands) for _ in range(2 * l + 1)]
    diagonal = [scale * sum(map(mul, column, column)) + each or 1.0
                for column, each in zip(columns, penalty)]

    result = [0.0] * len(columns)
    residual = [scale * sum(map(mul, column, [v for _, _, v in points]))
                for column in columns]
    conditioned = [r / d for r, d in zip(residual, diagonal)]
    direction = conditioned
    size = first = sum(map(mul, residual, conditioned))
    for number in range(_MOST_ROUNDS):
        if size <= _ENOUGH * first:
            break
        if progress:
            progress(min(1.0, math.log(size / first) / math.log(_ENOUGH)))
        fit = [sum(map(mul, row, direction)) for row in rows]
        pushed = [scale * sum(map(mul, column, fit)) + p * d for
                  column, p, d in zip(columns, penalty, direction)]
        step = size / sum(map(mul, direction, pushed))
        result = [c + step * d for c, d in zip(result, direction)]
        residual = [r - step * p for r, p in zip(residual, pushed)]
        conditioned = [r / d for r, d in zip(residual, diagonal)]
        before, size = size, sum(map(mul, residual, conditioned))
        direction = [z + size / before * d
                     for z, d in zip(conditioned, direction)]
    if progress:
        progress(1.0)
    return make_set(result)


def _basis(points, bands):
    """For each basis function its values at the points."""
    legendre = legendre_columns(bands, [math.cos(p[0]) for p in points])
    trigs = trig_columns(bands, [p[1] for p in points])
    # Beyond the poles sin theta is negative, and odd orders change sign.
    signs = [1.0 if math.sin(p[0]) >= 0 else -1.0 for p in points]
    odd = [map(mul, trig, signs) for trig in trigs]
    columns = []
    for l in range(bands):
        for m in range(-l, l + 1):
            trig = (odd if m % 2 else trigs)[
                2 * m - 1 if m > 0 else -2 * m]
            columns.append(map(mul, legendre[abs(m)][l - abs(m)], trig))
    return columns
