"""Windows: a factor for each band, as zonal filters have it.

With an orthonormal basis the product of coefficient (l, m) and window[l] is
the convolution with a zonal kernel (Driscoll and Healy 1994, theorem 1).
"""

import math

from .sets import bands as number_of_bands
from .sets import channels, coefficients, like, make_set


def spectrum(sh):
    """Power per band: the sum over m of the coefficients' squares.

    sh: the set

    Returns a list of as many floats as there are bands. Their sum is the
    integral of the function's square over the sphere; divided by 4 pi, its
    mean square.
    Raises TypeError: not a set
    """
    values = coefficients(sh)
    return [sum(value * value for value in values[l * l:(l + 1) * (l + 1)])
            for l in range(number_of_bands(sh))]


def filtered(sh, window):
    """Multiply coefficient (l, m) by window[l].

    sh: the set, or a tuple of three (red, green, blue)
    window: sequence of at least as many floats as there are bands

    Returns a new set, or a tuple of three
    Raises ValueError where the window is shorter; TypeError: not a set
    """
    result = []
    for channel in channels(sh):
        number = number_of_bands(channel)
        if len(window) < number:
            raise ValueError("a window of %d bands for a set of %d"
                             % (len(window), number))
        values = coefficients(channel)
        result.append(make_set([
            values[i] * window[l] for l in range(number)
            for i in range(l * l, (l + 1) * (l + 1))]))
    return like(sh, result)


def hann(bands):
    """The window (1 + cos(pi l / bands)) / 2, von Hann's.

    bands: 0 and up

    Returns a list of `bands` floats
    Raises ValueError for a negative number
    """
    _require(bands)
    return [0.5 + 0.5 * math.cos(math.pi * l / bands) for l in range(bands)]


def lanczos(bands):
    """The window sin(x) / x, x = pi l / bands: Lanczos's sigma factors.

    bands: 0 and up

    Returns a list of `bands` floats
    Raises ValueError for a negative number
    """
    _require(bands)
    return [1.0 if l == 0 else math.sin(math.pi * l / bands)
            / (math.pi * l / bands) for l in range(bands)]


def heat(bands, width):
    """The window exp(-l (l + 1) width^2 / 2): a Gaussian on the sphere.

    It is the heat equation's kernel after the time width^2 / 2, nowhere
    negative; for small widths a Gaussian of standard deviation `width`.

    bands: 0 and up
    width: radians, 0 and up

    Returns a list of `bands` floats
    Raises ValueError for a negative number or width
    """
    _require(bands)
    if not 0 <= width < float("inf"):
        raise ValueError("width is %r; expected radians, 0 or more"
                         % (width,))
    return [math.exp(-l * (l + 1) * width * width / 2) for l in range(bands)]


def cap(bands, radius):
    """The window of a moving average over a cap.

    w(l) = (P(l - 1, x) - P(l + 1, x)) / ((2 l + 1) (1 - x)), x = cos radius,
    P the Legendre polynomials: their integral over the cap, over its area.

    bands: 0 and up
    radius: of the cap, radians, above 0, up to pi

    Returns a list of `bands` floats
    Raises ValueError for a negative number or another radius
    """
    _require(bands)
    if not 0 < radius <= math.pi:
        raise ValueError("radius is %r; expected radians above 0, up to pi"
                         % (radius,))
    x = math.cos(radius)
    below = 2 * math.sin(radius / 2) ** 2  # 1 - x, without cancellation
    legendre = [1.0, x]
    for l in range(1, bands):
        legendre.append(((2 * l + 1) * x * legendre[l] - l * legendre[l - 1])
                        / (l + 1))
    return [1.0 if l == 0 else (legendre[l - 1] - legendre[l + 1])
            / ((2 * l + 1) * below) for l in range(bands)]


def clamped_cosine(bands):
    """The window of max(cos, 0) / pi: from radiance to irradiance / pi.

    1, 2/3, 1/4, 0, -1/24, 0, 1/64, ...: Ramamoorthi and Hanrahan, "An
    Efficient Representation for Irradiance Environment Maps", SIGGRAPH
    2001, equation 8; Basri and Jacobs 2003.

    bands: 0 and up

    Returns a list of `bands` floats
    Raises ValueError for a negative number
    """
    _require(bands)
    window = []
    for l in range(bands):
        if l == 1:
            window.append(2.0 / 3)
        elif l % 2:
            window.append(0.0)
        else:
            half = l // 2
            window.append(
                -2.0 * (-1) ** half * math.factorial(l)
                / ((l + 2.0) * (l - 1) * 2 ** l * math.factorial(half) ** 2))
    return window


def laplacian(bands):
    """-l (l + 1): what the sphere's Laplace operator multiplies by.

    bands: 0 and up

    Returns a list of `bands` floats
    Raises ValueError for a negative number
    """
    _require(bands)
    return [-float(l * (l + 1)) for l in range(bands)]


def _require(bands):
    if bands < 0:
        raise ValueError("bands is %d; expected 0 or more" % bands)
