"""Functions of sets, value by value, on a grid and back."""

from .grids import Grid
from .sets import MOST_BANDS, channels, finite, like, make_set


def combined(function, sets, bands=30, density=1):
    """Apply a function to the values of one or more sets.

    The sets are evaluated on a Gauss-Legendre grid, the function applied,
    the result projected. A smooth function loses what is beyond the bands; a
    hard edge aliases as well: a density of 4 makes the grid 16 times as
    dense.

    function: takes as many floats as there are sets, gives one:
        lambda x, y: max(x, y)
    sets: a sequence of sets, or of tuples of three, whose channels are
        combined separately
    bands: of the result, 1 to 30
    density: of the grid in each direction, 1 to 16

    Returns a new set, or a tuple of three
    Raises ValueError: no set, bands, density, a result that is not finite;
        TypeError: not a set, a result that is no number
    """
    _require_bands(bands)
    if not sets:
        raise ValueError("no sets; expected one or more")
    if not 1 <= density <= 16:
        raise ValueError("density is %r; expected 1 to 16" % (density,))
    groups = [channels(sh) for sh in sets]
    colour = max(groups, key=len)
    groups = [group if len(group) == len(colour) else group * len(colour)
              for group in groups]
    lists = [[finite(channel) for channel in group] for group in groups]
    most = max([bands ** 2] + [len(values) for group in lists
                               for values in group])
    size = int(round(density * (1.5 * most ** 0.5 + 1)))
    result = [_combined(function, each, bands, Grid(size, 2 * size))
              for each in zip(*lists)]
    return like(sets[groups.index(colour)], result) if len(result) == 1 \
        else tuple(result)


def product(a, b, bands=30):
    """Multiply two sets as functions.

    The grid is exact: the result has the bands of the true product, up to
    `bands`, to the rounding of single precision.

    a, b: sets, or tuples of three
    bands: of the result, 1 to 30

    Returns a new set, or a tuple of three
    Raises ValueError: bands, coefficients that are not finite; TypeError:
        not a set
    """
    return combined(lambda x, y: x * y, (a, b), bands)


def _require_bands(bands):
    if not 1 <= bands <= MOST_BANDS:
        raise ValueError("bands is %d; expected 1 to %d" % (bands, MOST_BANDS))


def _combined(function, lists, bands, grid):
    values = map(function, *[grid.values(each) for each in lists])
    for value in values:
        if not isinstance(value, (int, long, float)):
            raise TypeError("the function gives %r; expected numbers"
                            % (value,))
        if value - value != 0.0:
            raise ValueError("the function gives %r; expected finite numbers"
                             % (value,))
    return make_set(grid.coefficients(values, bands))
