"""Sums over grids in double precision: from coefficients to values, back.

The module's evaluation reads tables at truncated steps, which is exact for
its results but not for quadrature; here the functions are computed at the
nodes themselves. Values are in rows of equal theta.
"""

import math
from operator import mul

_columns = {}
_nodes = {}


def gauss_legendre(count):
    """Nodes and weights of the Gauss-Legendre rule on [-1, 1].

    Exact for polynomials of degree below 2 * count. Newton's method from
    Tricomi's estimate; Press et al., "Numerical Recipes", section 4.5.

    Returns (cosines, weights), from the north pole down
    """
    if count not in _nodes:
        cosines, weights = [], []
        for i in range(count):
            x = math.cos(math.pi * (i + 0.75) / (count + 0.5))
            for _ in range(100):
                below, here = 1.0, x
                for l in range(2, count + 1):
                    below, here = here, ((2 * l - 1) * x * here
                                         - (l - 1) * below) / l
                if count == 1:
                    below, here = 1.0, x
                slope = count * (x * here - below) / (x * x - 1)
                step = here / slope
                x -= step
                if abs(step) < 1e-15:
                    break
            cosines.append(x)
            weights.append(2 / ((1 - x * x) * slope * slope))
        _nodes[count] = cosines, weights
    return _nodes[count]


def fejer(count):
    """Thetas and weights of Fejer's first rule: pixel centres.

    theta = (j + 1/2) pi / count; exact for polynomials in cos theta of
    degree below `count` (Waldvogel 2006, equation 2.4).

    Returns (thetas, weights) for integrals over cos theta from -1 to 1
    """
    thetas = [(j + 0.5) * math.pi / count for j in range(count)]
    weights = [2.0 / count * (1 - 2 * sum(
        math.cos(2 * k * theta) / (4 * k * k - 1)
        for k in range(1, count // 2 + 1))) for theta in thetas]
    return thetas, weights


def legendre_columns(bands, cosines):
    """The theta factors of all basis functions of order m >= 0.

    Orthonormal, with the sign (-1)^m and the sqrt(2) of m > 0; recurrence
    of Holmes and Featherstone 2002, equation 11.

    bands: 1 and up
    cosines: of theta, at each node

    Returns columns[m][l - m]: a list with a value for each node
    """
    sines = [math.sqrt(max(0.0, (1 - x) * (1 + x))) for x in cosines]
    columns = []
    start = [math.sqrt(0.25 / math.pi)] * len(cosines)
    for m in range(bands):
        if m:
            factor = -math.sqrt((2 * m + 1.0) / (2 * m))
            if m == 1:
                factor *= math.sqrt(2)
            start = [factor * s * p for s, p in zip(sines, start)]
        column = [start]
        for l in range(m + 1, bands):
            a = math.sqrt((4.0 * l * l - 1) / (l * l - m * m))
            if l == m + 1:
                column.append([a * x * p for x, p in zip(cosines, start)])
                continue
            b = a * math.sqrt(((l - 1.0) ** 2 - m * m)
                              / (4 * (l - 1.0) ** 2 - 1))
            column.append([a * x * p - b * q for x, p, q in
                           zip(cosines, column[-1], column[-2])])
        columns.append(column)
    return columns


def trig_columns(bands, phis):
    """[1, cos phi, sin phi, cos 2 phi, ...]: a list for each node."""
    columns = [[1.0] * len(phis)]
    for m in range(1, bands):
        columns.append([math.cos(m * phi) for phi in phis])
        columns.append([math.sin(m * phi) for phi in phis])
    return columns


class Grid(object):
    """A Gauss-Legendre grid: `rows` thetas, `columns` phis.

    Integrates products of total degree below 2 * rows and of total order
    below `columns` exactly.
    """

    def __init__(self, rows, columns):
        self.cosines, self.weights = gauss_legendre(rows)
        self.columns = columns
        self.phis = [2 * math.pi * k / columns for k in range(columns)]

    def values(self, coefficients):
        """The function's values, row by row.

        coefficients: a list of a square number of floats
        """
        bands = int(math.sqrt(len(coefficients)) + 0.5)
        if bands == 0:
            return [0.0] * (len(self.cosines) * self.columns)
        rows = zip(*_sums_over_bands(coefficients, bands,
                                     self._legendre(bands)))
        trigs = self._trigs(bands)
        return [sum(map(mul, row, trig)) for row in rows for trig in trigs]

    def coefficients(self, values, bands):
        """The projection of values, row by row, on `bands` bands."""
        trigs = zip(*self._trigs(bands))
        area = 2 * math.pi / self.columns
        rows = []
        for j, weight in enumerate(self.weights):
            row = values[j * self.columns:(j + 1) * self.columns]
            rows.append([weight * area * sum(map(mul, row, trig))
                         for trig in trigs])
        return _sums_over_rows(zip(*rows), bands, self._legendre(bands))

    def _legendre(self, bands):
        key = len(self.cosines), bands
        if key not in _columns:
            _keep(key, legendre_columns(bands, self.cosines))
        return _columns[key]

    def _trigs(self, bands):
        key = "phi", self.columns, bands
        if key not in _columns:
            _keep(key, zip(*trig_columns(bands, self.phis)))
        return _columns[key]


def project_rows(rows, thetas, weights, bands):
    """The projection of rows of Fourier sums on `bands` bands.

    rows: for each theta the sums over phi, [1, cos phi, sin phi, ...]
    thetas, weights: the rule over theta
    """
    legendre = legendre_columns(bands, [math.cos(theta) for theta in thetas])
    weighted = [[weight * value for value in row]
                for weight, row in zip(weights, rows)]
    return _sums_over_rows(zip(*weighted), bands, legendre)


def row_sums(coefficients, bands, thetas):
    """For each theta the factors of [1, cos phi, sin phi, ...]."""
    legendre = legendre_columns(bands, map(math.cos, thetas))
    return zip(*_sums_over_bands(coefficients, bands, legendre))


def trig_row(bands, phi):
    """[1, cos phi, sin phi, ...] at one phi."""
    return [column[0] for column in trig_columns(bands, [phi])]


def _keep(key, value):
    if len(_columns) >= 12:  # some megabytes
        _columns.clear()
    _columns[key] = value


def _sums_over_bands(coefficients, bands, legendre):
    """For each trigonometric factor a list over the nodes."""
    sums = []
    for m in range(bands):
        for sign in (1, -1) if m else (1,):
            factors = [coefficients[l * l + l + sign * m]
                       for l in range(m, bands)]
            sums.append([sum(map(mul, factors, node))
                         for node in zip(*legendre[m])])
    return sums


def _sums_over_rows(columns, bands, legendre):
    """Coefficients from each trigonometric factor's list over the nodes."""
    result = [0.0] * (bands * bands)
    for m in range(bands):
        for sign in (1, -1) if m else (1,):
            column = columns[2 * m - (sign > 0) if m else 0]
            for l in range(m, bands):
                result[l * l + l + sign * m] = sum(
                    map(mul, legendre[m][l - m], column))
    return result
