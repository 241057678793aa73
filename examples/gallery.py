"""Makes the pictures of a page of documentation by running its script blocks.

Every block of the Markdown page that is marked as Python is run, from top to bottom, in one
namespace that also has read_pgm and the show functions below. Run from the project's folder.
"""

import os
import re
import sys

from picture import GREY, MARK, SIGNED, Picture, text_width
from project_image import read_pgm

FLAT_WIDTH, FLAT_HEIGHT = 192, 96
GLOBE = 96
GAP, LABEL_HEIGHT = 6, 12
# Where the globes are seen from: theta and phi of the point in their middle.
VIEW = (1.1, 2.2)
EARTH_VIEW = (1.0, 3.5)


def main():
    page, folder = sys.argv[1:]
    run_page(page, folder)


def python_blocks(page):
    """The text of a Markdown page's Python blocks, in order."""
    with open(page) as markdown:
        return re.findall(r"^```python\n(.*?)^```$", markdown.read(), re.MULTILINE | re.DOTALL)


def run_page(page, folder):
    """Run a page's blocks; their pictures become PNG files in `folder`."""
    show = Show(folder)
    names = {
        "read_pgm": read_pgm,
        "show": show.sets,
        "show_images": show.images,
        "show_conventions": show.conventions,
        "show_earth": show.earth,
    }
    for block in python_blocks(page):
        exec block in names
        show.builder = names["builder"]


class Show(object):
    """What the blocks call to make their pictures. Sets and images come as (label, what) pairs."""

    def __init__(self, folder):
        self.folder = folder
        self.builder = None

    def sets(self, name, labelled):
        """Draw sets flat and as globes, three to a row."""
        tiles = Tiles(labelled, FLAT_WIDTH + GAP + GLOBE, FLAT_HEIGHT, 3)
        for left, top, sh in tiles.places():
            tiles.picture.flat(left, top, self.render(sh, 127.0, 128), FLAT_WIDTH, SIGNED)
            # Rendered finer, since the globe's middle magnifies.
            tiles.picture.globe(left + FLAT_WIDTH + GAP, top, GLOBE,
                                self.render(sh, 127.0, 128, 2), 2 * FLAT_WIDTH, VIEW, SIGNED)
        self.write(name, tiles.picture)

    def images(self, name, labelled):
        """Draw byte images of FLAT_WIDTH x FLAT_HEIGHT."""
        tiles = Tiles(labelled, FLAT_WIDTH, FLAT_HEIGHT, 4)
        for left, top, image in tiles.places():
            tiles.picture.flat(left, top, image, FLAT_WIDTH, SIGNED)
        self.write(name, tiles.picture)

    def earth(self, name, labelled):
        """Draw sets whose values are bytes as grey globes, ten to a row."""
        tiles = Tiles(labelled, GLOBE, GLOBE, 10)
        for left, top, sh in tiles.places():
            tiles.picture.globe(left, top, GLOBE, self.render(sh, 1.0, 0, 2), 2 * FLAT_WIDTH,
                                EARTH_VIEW, GREY)
        self.write(name, tiles.picture)

    def conventions(self, name, labelled):
        """Draw the angles and the image's grid, and below it the sets as flat tiles."""
        tiles = Tiles(labelled, FLAT_WIDTH, FLAT_HEIGHT, 4, 200)
        draw_axes(tiles.picture)
        draw_globe(tiles.picture)
        for left, top, sh in tiles.places():
            # Every basis function of the first four bands stays below 0.75.
            tiles.picture.flat(left, top, self.render(sh, 160.0, 128), FLAT_WIDTH, SIGNED)
        self.write(name, tiles.picture)

    def render(self, sh, scale, offset, magnification=1):
        """The bytes of a set's equirectangular image."""
        self.builder.SetImageBuffer(FLAT_WIDTH * magnification, FLAT_HEIGHT * magnification)
        self.builder.RenderSHToImageBuffer(sh, scale, offset, 1, 0)
        return str(self.builder.GetImageBuffer())

    def write(self, name, picture):
        picture.write(os.path.join(self.folder, name + ".png"))


class Tiles(object):
    """A picture divided into equal labelled tiles, under `head` rows that are left free."""

    def __init__(self, labelled, width, height, columns, head=0):
        self.labelled = labelled
        self.width = width + GAP
        self.height = height + LABEL_HEIGHT + GAP
        self.columns = min(columns, len(labelled))
        self.head = head
        rows = (len(labelled) + self.columns - 1) // self.columns
        self.picture = Picture(GAP + self.columns * self.width, head + GAP + rows * self.height)

    def places(self):
        """Write each label; yield where its tile begins and what is to be drawn there."""
        for index, (label, what) in enumerate(self.labelled):
            left = GAP + index % self.columns * self.width
            top = self.head + GAP + index // self.columns * self.height
            self.picture.text(left, top, label)
            yield left, top + LABEL_HEIGHT, what


def draw_axes(picture):
    """Draw how angles and pixels of an image of 8 columns and 4 rows belong together."""
    left, top, cell = 150, 34, 36
    width, height = 8 * cell, 4 * cell
    for column in range(9):
        picture.line(left + column * cell, top, 0, 1, height + 1, (90, 94, 102))
    for row in range(5):
        picture.line(left, top + row * cell, 1, 0, width + 1, (90, 94, 102))
    picture.line(left, top, 1, 0, width + 1, MARK)
    picture.text(left + width + 10, top - 3, "the pole: theta = 0, row 0", MARK)
    for column, phi in ((0, "0"), (2, "pi/2"), (4, "pi"), (6, "3 pi/2"), (8, "2 pi")):
        x = left + column * cell
        picture.line(x, top - 6, 0, 1, 6)
        picture.text(x - text_width(phi) // 2, top - 16, phi)
    picture.text(left + width + 24, top - 16, "phi, to the right: columns")
    for row, theta in ((0, "0"), (2, "pi/2"), (4, "pi")):
        y = top + row * cell
        picture.line(left - 6, y, 1, 0, 6)
        picture.text(left - 10 - text_width(theta), y - 3, theta)
    picture.text(GAP, top + height + 12, "theta, downwards: rows")
    column, row = 5, 1
    x, y = left + column * cell, top + row * cell
    for down in range(1, cell):
        picture.line(x + 1, y + down, 1, 0, cell - 1, (52, 60, 76))
    for across in (-1, 0, 1):
        picture.line(x - 1, y + across, 1, 0, 3, MARK)
    picture.text(left + width + 10, y + 4, "the pixel of column 5, row 1")
    picture.text(left + width + 10, y + 18, "stands for its upper left corner:")
    picture.text(left + width + 10, y + 32, "phi = 5 * 2 pi / 8", MARK)
    picture.text(left + width + 10, y + 46, "theta = 1 * pi / 4", MARK)


def draw_globe(picture):
    """Draw a globe with its parallels and meridians every 30 degrees and the axes' meridians."""
    left, top, size = 656, 34, 120
    width, height = 720, 360
    sea, grid, meridian_x, meridian_y = range(4)
    colours = [(36, 40, 48), (90, 94, 102), SIGNED[255], SIGNED[0]]
    image = bytearray(width * height)
    for y in range(height):
        for x in range(width):
            if x < 8:
                image[y * width + x] = meridian_x
            elif 0 <= x - width // 4 < 8:
                image[y * width + x] = meridian_y
            else:
                on_line = x % (width // 12) < 4 or y % (height // 6) < 4
                image[y * width + x] = grid if on_line else sea
    picture.globe(left, top, size, image, width, (1.1, 0.7), colours)
    picture.text(left + size // 2 - text_width("pole") // 2, top - 16, "pole", MARK)
    picture.line(left + size // 2, top - 7, 0, 1, 14, MARK)
    picture.text(left - 20, top + size + 8, "phi = 0: towards x", SIGNED[255])
    picture.text(left - 20, top + size + 20, "phi = pi/2: towards y", SIGNED[0])


if __name__ == "__main__":
    main()
