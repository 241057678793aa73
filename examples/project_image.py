"""Projects a grey picture of a sphere onto spherical harmonics and renders them back.

The picture is equirectangular: columns follow the azimuth, rows the polar angle. Writes a PNG of
the original beside the reconstruction; prints how far they differ and what each step took.
"""

import argparse
import math
import re
import sys
import time

import _Orvane

from picture import Picture

# P5, width, height, brightest value, each followed by white space or a comment to the line's end.
PGM_HEADER = re.compile(r"P5\s+C(\d+)\s+C(\d+)\s+C255\s".replace("C", r"(?:#.*\n\s*)*"))

LABEL_HEIGHT = 16
GAP = 4


def main():
    options = parse_arguments()
    clock = StepClock()

    with clock.step("read %s" % options.image):
        width, height, original = read_pgm(options.image)
    builder = _Orvane.SHBuilder()
    with clock.step("tables of %d steps" % options.steps):
        builder.GenerateLookUpTables(options.steps)
    with clock.step("%d x %d samples" % (options.samples, options.samples)):
        builder.GenerateSphericalSamples(options.seed, options.samples)
    with clock.step("projection onto %d bands" % options.bands):
        sh = builder.CreateSHFromImageBuffer(width, height, options.bands, original)
    with clock.step("rendering"):
        reconstruction = render_in_slices(builder, sh, width, height, options.slices)
    with clock.step("write %s" % options.picture):
        side_by_side(width, height, original, reconstruction, options).write(options.picture)

    print "root-mean-square difference: %.2f of 255" % rms_difference(original, reconstruction)
    clock.report()


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("image", help="binary PGM file (P5) with 8 bits a pixel")
    parser.add_argument("picture", help="PNG file to write")
    parser.add_argument("--bands", type=int, default=30, help="bands to project onto, 1 to 30")
    parser.add_argument("--steps", type=int, default=1024, help="steps of the lookup tables")
    parser.add_argument("--samples", type=int, default=512, help="samples per axis")
    parser.add_argument("--seed", type=int, default=1, help="seed of the samples")
    parser.add_argument("--slices", type=int, default=8, help="slices per axis of the rendering")
    return parser.parse_args()


def read_pgm(path):
    """Read a binary PGM file: (width, height, bytes)."""
    with open(path, "rb") as pgm:
        data = pgm.read()
    header = PGM_HEADER.match(data)
    if not header:
        raise ValueError("%s is no binary PGM file with 8 bits a pixel" % path)
    width, height = int(header.group(1)), int(header.group(2))
    pixels = data[header.end():]
    if len(pixels) != width * height:
        raise ValueError("%s: %d bytes of pixels; expected %d x %d"
                         % (path, len(pixels), width, height))
    return width, height, pixels


def render_in_slices(builder, sh, width, height, slices):
    """Render slice by slice, as a host would that has to stay responsive, with a progress bar."""
    # A slice is a whole number of pixels wide and high: what is left over would not be rendered.
    while width % slices or height % slices:
        slices -= 1
    builder.SetImageBuffer(width, height)
    count = slices * slices
    for index in range(count):
        builder.RenderSHToImageBuffer(sh, 1.0, 0, slices, index)
        show_progress(index + 1, count)
    return str(builder.GetImageBuffer())


def show_progress(done, count):
    if sys.stderr.isatty():
        marks = 40 * done // count
        sys.stderr.write("\rrendering [%-40s] %d of %d slices" % ("#" * marks, done, count))
        if done == count:
            sys.stderr.write("\n")


def side_by_side(width, height, original, reconstruction, options):
    picture = Picture(2 * width + GAP, height + LABEL_HEIGHT)
    right = width + GAP
    picture.text(GAP, 4, "Original")
    picture.text(right + GAP, 4, "%d bands, %d coefficients" % (options.bands, options.bands ** 2))
    picture.flat(0, LABEL_HEIGHT, original, width)
    picture.flat(right, LABEL_HEIGHT, reconstruction, width)
    return picture


def rms_difference(one, other):
    squares = sum((a - b) ** 2 for a, b in zip(bytearray(one), bytearray(other)))
    return math.sqrt(float(squares) / len(one))


class StepClock(object):
    """Measures the steps of a program: `with clock.step(name): ...`."""

    def __init__(self):
        self.steps = []

    def step(self, name):
        self.steps.append([name, time.time()])
        return self

    def __enter__(self):
        pass

    def __exit__(self, *_):
        self.steps[-1][1] = time.time() - self.steps[-1][1]

    def report(self):
        for name, seconds in self.steps:
            print "%10.1f ms  %s" % (seconds * 1000, name)


if __name__ == "__main__":
    main()
