"""A picture to draw on, and views of a sphere whose values are an equirectangular byte image."""

import math

from font import GLYPHS, GLYPH_HEIGHT, GLYPH_WIDTH
from png import write_png

WHITE = (255, 255, 255)
BLACK = (0, 0, 0)
PAPER = (24, 26, 30)
INK = (225, 225, 225)
MARK = (255, 80, 60)

# What each of the 256 byte values looks like.
GREY = [(value, value, value) for value in range(256)]


def _signed_colours():
    """Blue below 128, black at 128, orange above: for functions that change sign."""
    colours = []
    for value in range(256):
        strength = abs(value - 128) / 128.0
        full = (255, 176, 64) if value > 128 else (64, 152, 255)
        colours.append(tuple(int(channel * strength) for channel in full))
    return colours


SIGNED = _signed_colours()


class Picture(object):
    """width * height RGB pixels, (0, 0) at the top left."""

    def __init__(self, width, height, background=PAPER):
        self.width = width
        self.height = height
        self.pixels = bytearray(bytearray(background) * (width * height))

    def point(self, x, y, colour):
        """Set one pixel; outside of the picture nothing happens."""
        if 0 <= x < self.width and 0 <= y < self.height:
            start = (y * self.width + x) * 3
            self.pixels[start:start + 3] = bytearray(colour)

    def text(self, x, y, words, colour=INK, size=1):
        """Write a line whose top left corner is (x, y); the letters are size * 7 pixels high."""
        for character in words.upper():
            for row in range(GLYPH_HEIGHT * size):
                for column in range(GLYPH_WIDTH * size):
                    if GLYPHS[character][row // size][column // size] == "#":
                        self.point(x + column, y + row, colour)
            x += (GLYPH_WIDTH + 1) * size

    def line(self, x, y, across, down, length, colour=INK):
        """Draw `length` pixels from (x, y) in steps of (across, down)."""
        for step in range(length):
            self.point(x + step * across, y + step * down, colour)

    def cross(self, x, y, colour=WHITE, reach=4):
        """Mark the pixel (x, y) by an upright cross with an open middle."""
        for distance in range(2, reach + 1):
            for across, down in ((distance, 0), (-distance, 0), (0, distance), (0, -distance)):
                self.point(x + across, y + down, colour)

    def flat(self, left, top, image, width, colours=GREY):
        """Draw an equirectangular byte image as it is: phi to the right, theta downwards.

        It must lie inside the picture.
        """
        image = bytearray(image)
        for row in range(len(image) // width):
            start = ((top + row) * self.width + left) * 3
            self.pixels[start:start + 3 * width] = bytearray(
                channel for value in image[row * width:(row + 1) * width]
                for channel in colours[value])

    def globe(self, left, top, size, image, width, view, colours=GREY):
        """Draw an equirectangular byte image as a globe, seen from far above the point `view`.

        view: (theta, phi). The pole points upwards, phi grows to the right; size is in pixels.
        """
        image = bytearray(image)
        height = len(image) // width
        theta, phi = view
        outward = _direction(theta, phi)
        right = _direction(math.pi / 2, phi + math.pi / 2)
        up = _direction(theta - math.pi / 2, phi)
        for row in range(size):
            y = 1 - (2 * row + 1.0) / size
            for column in range(size):
                x = (2 * column + 1.0) / size - 1
                if x * x + y * y >= 1:
                    continue
                z = math.sqrt(1 - x * x - y * y)
                point = [x * r + y * u + z * o for r, u, o in zip(right, up, outward)]
                at_theta = math.acos(max(-1.0, min(1.0, point[2])))
                at_phi = math.atan2(point[1], point[0]) % (2 * math.pi)
                value = image[_pixel(at_theta, math.pi, height) * width
                              + _pixel(at_phi, 2 * math.pi, width)]
                self.point(left + column, top + row, colours[value])

    def write(self, path):
        """Write the picture to a PNG file."""
        write_png(path, self.width, self.height, self.pixels)


def text_width(words, size=1):
    """How many pixels a line of text takes."""
    return ((GLYPH_WIDTH + 1) * len(words) - 1) * size


def _pixel(angle, whole, count):
    return min(int(angle / whole * count), count - 1)


def _direction(theta, phi):
    """The unit vector at polar angle theta from z and azimuth phi from x."""
    return (math.sin(theta) * math.cos(phi), math.sin(theta) * math.sin(phi), math.cos(theta))
