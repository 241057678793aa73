"""A picture to draw on, and views of a sphere whose values are an equirectangular byte image."""

from orvanekit.colours import DIVERGING as SIGNED, GREY
from orvanekit.pictures import BACKGROUND as PAPER, orthographic
from orvanekit.png import packed

from font import GLYPHS, GLYPH_HEIGHT, GLYPH_WIDTH

WHITE = (255, 255, 255)
BLACK = (0, 0, 0)
INK = (225, 225, 225)
MARK = (255, 80, 60)


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
        for at, place in orthographic(size, width, height, view):
            self.point(left + at % size, top + at // size, colours[image[place]])

    def write(self, path):
        """Write the picture to a PNG file."""
        with open(path, "wb") as png:
            png.write(packed(self.width, self.height, self.pixels, 3))


def text_width(words, size=1):
    """How many pixels a line of text takes."""
    return ((GLYPH_WIDTH + 1) * len(words) - 1) * size
