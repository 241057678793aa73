"""Pictures of sets, as PNG: an equirectangular map, a globe from afar."""

import math

from . import png
from .builders import builder
from .colours import DIVERGING
from .extremes import extremes
from .sets import channels, coefficients, make_set

BACKGROUND = (24, 26, 30)
_COLOURS = ("diverging", "grey")
_LEAST_STEPS = 1024
_GREATEST_WIDTH = 8192


def map_picture(sh, width=512, height=None, colours="diverging", least=None,
                greatest=None, gamma=1.0, slices=1, index=0):
    """Draw a set as a map: phi to the right, theta downwards.

    A pixel stands for its upper left corner: row y is theta =
    pi y / height, column x is phi = 2 pi x / width.

    sh: the set, or a tuple of three (red, green, blue)
    width: in pixels, 1 to 8192
    height: in pixels; width / 2 unless given
    colours: "diverging" is black at 0, orange above and blue below;
        "grey" is black at `least` and white at `greatest`. For a tuple
        neither counts.
    least: the value of the map's lower end; unless given, the set's least,
        for a tuple 0. The diverging map has none.
    greatest: the value of the map's upper end; unless given the greatest
        there is, with the diverging map by magnitude
    gamma: brightness is raised to 1 / gamma, 2.2 for light; not for the
        diverging map
    slices, index: draw one of slices * slices equal parts of the map,
        counted row by row from 0; both sizes are multiples of slices

    Returns the bytes of a PNG file
    Raises TypeError for what is no set, ValueError for a size, a range,
    colours or a part that there are not.
    """
    if height is None:
        height = max(1, int(width) // 2)
    for size in (width, height):
        if not 1 <= size <= _GREATEST_WIDTH:
            raise ValueError("a picture of %r x %r pixels; expected 1 to %d"
                             % (width, height, _GREATEST_WIDTH))
    if (slices < 1 or width % slices or height % slices
            or not 0 <= index < slices * slices):
        raise ValueError("part %r of %r x %r of %d x %d pixels; expected a "
                         "divisor of both and one of its parts" % (
                             index, slices, slices, width, height))
    paint = _Paint(sh, colours, least, greatest, gamma)
    return png.packed(width // slices, height // slices,
                      paint.map(width, height, slices, index), 3)


def globe(sh, size=512, view=(math.pi / 2, 0.0), colours="diverging",
          least=None, greatest=None, gamma=1.0):
    """Draw a set as a globe, seen from far away; the pole points upwards.

    sh: the set, or a tuple of three (red, green, blue)
    size: width and height in pixels, 1 to 2048
    view: (theta, phi) in radians of the point in the middle; phi grows to
        the right
    colours, least, greatest, gamma: as for map_picture

    Returns the bytes of a PNG file
    Raises TypeError for what is no set, ValueError for a size, a view, a
    range or colours that there are not.
    """
    if not 1 <= size <= 2048:
        raise ValueError("a globe of %r pixels; expected 1 to 2048" % (size,))
    theta, phi = view
    if not abs(theta) + abs(phi) < 1e6:
        raise ValueError("view %r; expected a theta and a phi" % (view,))
    paint = _Paint(sh, colours, least, greatest, gamma)
    # As fine in the globe's middle as the globe itself.
    width = max(_LEAST_STEPS, 4 * int(math.ceil(0.8 * size)))
    drawn = paint.map(width, width // 2)
    pixels = bytearray(bytearray(BACKGROUND) * (size * size))
    for at, place in orthographic(size, width, width // 2, view):
        pixels[3 * at:3 * at + 3] = drawn[3 * place:3 * place + 3]
    return png.packed(size, size, pixels, 3)


def orthographic(size, width, height, view):
    """Where on an equirectangular map the points of a globe lie.

    size: of the globe in pixels
    width, height: of the map in pixels
    view: (theta, phi) in radians of the point in the globe's middle

    Yields for each pixel of the globe its index and that of the map's
    """
    theta, phi = view
    cosine, sine = math.cos(theta), math.sin(theta)
    acos, atan2, sqrt = math.acos, math.atan2, math.sqrt
    down, along = height / math.pi, width / (2 * math.pi)
    for row in range(size):
        y = 1 - (2 * row + 1.0) / size
        for column in range(size):
            x = (2 * column + 1.0) / size - 1
            square = 1 - x * x - y * y
            if square <= 0:
                continue
            z = sqrt(square)
            # Upwards is -d/dtheta at the view, to the right is d/dphi.
            upwards = y * sine + z * cosine
            at_theta = acos(max(-1.0, min(1.0, upwards)))
            at_phi = phi + atan2(x, z * sine - y * cosine)
            yield (row * size + column,
                   min(int(at_theta * down), height - 1) * width
                   + int(at_phi * along // 1) % width)


class _Paint(object):
    """Renders sets into red, green and blue bytes."""

    def __init__(self, sh, colours, least, greatest, gamma):
        if colours not in _COLOURS:
            raise ValueError("colours %r; expected %s" % (
                colours, " or ".join(_COLOURS)))
        if not gamma > 0:
            raise ValueError("gamma %r; expected more than 0" % (gamma,))
        self.sets = channels(sh)
        diverging = len(self.sets) == 1 and colours == "diverging"
        ranges = [extremes(each) for each in self.sets]
        if greatest is None:
            greatest = max(each.greatest for each in ranges)
            if diverging:
                greatest = max(greatest, -ranges[0].least)
        if diverging:
            least = 0.0
        elif least is None:
            least = ranges[0].least if len(self.sets) == 1 else 0.0
            greatest = max(least, greatest)
        span = float(greatest) - least
        if not 0 <= span < 1e300:
            raise ValueError("a range from %r to %r" % (least, greatest))
        self.offset, levels = (128, 127) if diverging else (0, 255)
        self.scale = levels / span if span else 0.0
        self.sets = [_lowered(each, least) for each in self.sets]
        brightness = [int(255 * (value / 255.0) ** (1.0 / gamma) + 0.5)
                      for value in range(256)]
        self.tables = zip(*DIVERGING) if diverging else 3 * [brightness]

    def map(self, width, height, slices=1, index=0):
        """The pixels of an equirectangular picture, or of a part of it."""
        # A step of the tables at every column.
        drawing = builder(width * -(-_LEAST_STEPS // width))
        drawing.SetImageBuffer(width, height)
        across, down = width // slices, height // slices
        first = index // slices * down * width + index % slices * across
        pixels = bytearray(3 * across * down)
        image = ""
        for channel, table in enumerate(self.tables):
            if channel < len(self.sets):
                drawing.RenderSHToImageBuffer(
                    self.sets[channel], self.scale, self.offset, slices,
                    index)
                image = str(drawing.GetImageBuffer())
                if slices > 1:
                    image = "".join(
                        image[row:row + across] for row in
                        range(first, first + down * width, width))
            pixels[channel::3] = image.translate(str(bytearray(table)))
        return pixels


def _lowered(sh, value):
    """A set that is smaller by `value` everywhere, or the set itself."""
    if not value:
        return sh
    values = coefficients(sh)
    values[0] -= value * math.sqrt(4 * math.pi)
    return make_set(values)
