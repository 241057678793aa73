"""From pictures of floats to sets, without samples and without noise."""

import math
from operator import add, mul, sub

from .grids import fejer, project_rows, trig_columns
from .sets import MOST_BANDS, make_set


def projected(values, width, height, bands):
    """Project a picture on the basis functions, exactly.

    Pixels stand for their centres: row y is theta = (y + 1/2) pi / height,
    column x is phi = (x + 1/2) 2 pi / width. Rows are weighted by Fejer's
    first rule, which makes a constant have exactly one coefficient and gives
    a picture of that many bands back.

    values: width * height floats, row by row from the pole; or a tuple of
        three such sequences (red, green, blue)
    width, height: pixels, each at least 2 * bands - 1
    bands: 1 to 30

    Returns a new set, or a tuple of three
    Raises ValueError: bands, the number of values, a picture that is too
        small for the bands, a value that is not finite
    """
    if not 1 <= bands <= MOST_BANDS:
        raise ValueError("bands is %d; expected 1 to %d" % (bands, MOST_BANDS))
    least = 2 * bands - 1
    if width < least or height < least:
        raise ValueError("%d x %d pixels; %d bands take at least %d x %d"
                         % (width, height, bands, least, least))
    colour = (isinstance(values, tuple) and len(values) > 0
              and hasattr(values[0], "__len__"))
    planes = values if colour else (values,)
    if len(planes) not in (1, 3):
        raise ValueError("%d channels; expected 1 or 3" % len(planes))
    for plane in planes:
        if len(plane) != width * height:
            raise ValueError("%d values; expected %d for %d x %d" % (
                len(plane), width * height, width, height))
    sets = [_projected(plane, width, height, bands) for plane in planes]
    return tuple(sets) if colour else sets[0]


def _projected(values, width, height, bands):
    # Column x and column width - 1 - x have equal cosines and opposite
    # sines: half of the products are enough.
    half = (width + 1) // 2
    phis = [(x + 0.5) * 2 * math.pi / width for x in range(half)]
    trigs = trig_columns(bands, phis)
    if width % 2:  # the middle column meets itself
        for column in trigs:
            column[-1] /= 2
    area = 2 * math.pi / width
    rows = []
    for y in range(height):
        row = values[y * width:(y + 1) * width]
        left, right = row[:half], row[:-half - 1:-1]
        even, odd = map(add, left, right), map(sub, left, right)
        total = sum(even)
        if total - total != 0.0:
            _refuse(row, y, width)
        rows.append([area * sum(map(mul, odd if m and m % 2 == 0 else even,
                                    column))
                     for m, column in enumerate(trigs)])
    thetas, weights = fejer(height)
    result = project_rows(rows, thetas, weights, bands)
    # What is left of nothing after the additions is nothing.
    rounding = 1e-13 * max(map(abs, result))
    return make_set([value if abs(value) > rounding else 0.0
                     for value in result])


def _refuse(row, y, width):
    for x, value in enumerate(row):
        if value - value != 0.0:
            raise ValueError("value %d (row %d, column %d) is %r; expected a "
                             "finite number" % (y * width + x, y, x, value))
    raise ValueError("row %d holds values too large to be added" % y)
