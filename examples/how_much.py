"""Measures how many samples and table steps a result needs, for docs/how-much.md.

python2.7 examples/how_much.py PLOT.svg prints the page's two tables as Markdown and draws the first
one. Takes a minute. Every error is a root mean square over the sphere, relative to that of the set.
"""

import array
import math
import random
import sys

import _Orvane
from orvanekit import projected

from project_image import read_pgm

GAUSS = 0.4, 1.0, 2.0  # standard deviation, polar angle and azimuth of the mean
BANDS = (10, 20, 30)
PER_AXIS = (16, 32, 64, 128, 256, 512, 1024)
STEPS = (64, 128, 256, 512, 1024, 2048, 4096, 8192)
SEEDS = (1, 2, 3, 4)
FINER = 4  # the picture's pixels are cut into so many each way, for a projection without samples
COLOURS = {"smooth": "#2a7ab0", "sharp": "#c8552b"}
DASHES = {10: "", 20: "6 3", 30: "2 3"}


def main():
    plot, = sys.argv[1:]
    builder = _Orvane.SHBuilder()
    builder.GenerateLookUpTables(16384)  # so fine that steps do not count
    width, height, pixels = read_pgm("examples/data/earth-512x256.pgm")
    gauss = _gauss_picture(512, 256)
    subjects = (
        ("smooth", lambda: builder.CreateGaussSH(30, *GAUSS), projected(gauss, 512, 256, 30)),
        ("sharp", lambda: builder.CreateSHFromImageBuffer(width, height, 30, pixels),
         projected(_finer(pixels, width), width * FINER, height * FINER, 30)))
    errors = sample_errors(builder, subjects)
    write_table("samples per axis", PER_AXIS,
                [("%s, %d bands" % key, errors[key]) for key in sorted(errors)])
    draw(plot, errors)
    steps = step_errors(builder.CreateSHFromImageBuffer(width, height, 30, pixels))
    write_table("steps", STEPS, [("sharp, %d bands" % bands, steps[bands]) for bands in BANDS])


def _gauss_picture(width, height):
    """The function that CreateGaussSH projects, at the centres of pixels."""
    std_dev, latitude, longitude = GAUSS
    values = []
    for row in range(height):
        theta = (row + 0.5) * math.pi / height
        for column in range(width):
            phi = (column + 0.5) * 2 * math.pi / width
            cosine = (math.cos(theta) * math.cos(latitude)
                      + math.sin(theta) * math.sin(latitude) * math.cos(phi - longitude))
            angle = math.acos(max(-1.0, min(1.0, cosine)))
            values.append(math.exp(-angle * angle / (2 * std_dev * std_dev))
                          if angle <= 5 * std_dev else 0.0)
    return values


def _finer(pixels, width):
    rows = []
    for start in range(0, len(pixels), width):
        row = [float(each) for each in bytearray(pixels[start:start + width])
               for _ in range(FINER)]
        rows.extend(row * FINER)
    return rows


def sample_errors(builder, subjects):
    """{(subject, bands): errors} against the projections that draw no samples."""
    errors = {}
    for count in PER_AXIS:
        squares = {}
        for seed in SEEDS:
            builder.GenerateSphericalSamples(seed, count)
            for name, make, exact in subjects:
                # The first bands of a projection do not depend on how many follow.
                got = coefficients(make())
                for bands in BANDS:
                    squares.setdefault((name, bands), []).append(
                        distance(got[:bands * bands], coefficients(exact)) ** 2)
        for key, each in squares.items():
            errors.setdefault(key, []).append(math.sqrt(sum(each) / len(each)))
    return errors


def step_errors(sh):
    """{bands: errors} of values at random places, against the functions themselves."""
    draws = random.Random(1)
    places = [(draws.uniform(0, 2 * math.pi), math.acos(draws.uniform(-1, 1)))
              for _ in range(400)]
    values = coefficients(sh)
    exact = dict((bands, []) for bands in BANDS)
    for phi, theta in places:
        total = 0.0
        for band in range(30):
            total += sum(values[band * band + band + order] * each
                         for order, each in basis(band, phi, theta))
            if band + 1 in exact:
                exact[band + 1].append(total)
    errors = dict((bands, []) for bands in BANDS)
    builder = _Orvane.SHBuilder()
    for steps in STEPS:
        builder.GenerateLookUpTables(steps)
        for bands in BANDS:
            got = [builder.GetValueAtBand(sh, phi, theta, bands) for phi, theta in places]
            errors[bands].append(distance(got, exact[bands]))
    return errors


def basis(band, phi, theta):
    """Yield (order, value) of one band, by the textbook's formulas."""
    x = math.cos(theta)
    for order in range(band + 1):
        start = 1.0
        for odd in range(1, 2 * order, 2):
            start *= -odd * math.sin(theta)
        before, legendre = 0.0, start
        for each in range(order + 1, band + 1):
            before, legendre = legendre, ((2 * each - 1) * x * legendre
                                          - (each + order - 1) * before) / (each - order)
        scale = math.sqrt((2 * band + 1) / (4 * math.pi) * math.factorial(band - order)
                          / math.factorial(band + order))
        if order == 0:
            yield 0, scale * legendre
        else:
            yield order, math.sqrt(2) * scale * legendre * math.cos(order * phi)
            yield -order, math.sqrt(2) * scale * legendre * math.sin(order * phi)


def coefficients(sh):
    return array.array("f", str(sh.GetAsBuffer())).tolist()


def distance(got, exact):
    """The root mean square of the differences, relative to that of what is exact."""
    exact = exact[:len(got)]
    return math.sqrt(sum((a - b) ** 2 for a, b in zip(got, exact)) / sum(b * b for b in exact))


def percent(error):
    return "%d %%" % round(100 * error) if error >= 0.1 else "%.2g %%" % (100 * error)


def write_table(what, counts, rows):
    print "| %s | %s |" % (what, " | ".join(map(str, counts)))
    print "|---|%s" % ("--:|" * len(counts))
    for label, errors in rows:
        print "| %s | %s |" % (label, " | ".join(map(percent, errors)))
    print


def draw(path, errors):
    """Draw errors over samples per axis, both by their logarithms, as an SVG file."""
    def across(count):
        return 70 + 90 * math.log(count / 16.0, 2)

    def down(error):
        return 40 + 70 * -math.log10(error)

    lines = ['<svg xmlns="http://www.w3.org/2000/svg" width="760" height="400" '
             'viewBox="0 0 760 400" font-family="sans-serif" font-size="13">',
             '<title>Error of a projection over samples per axis</title>',
             '<rect width="760" height="400" fill="#ffffff"/>']
    for power in range(5):
        y = down(10.0 ** -power)
        lines.append('<path d="M70 %g H610" stroke="#d8d8d8"/>' % y)
        lines.append('<text x="62" y="%g" text-anchor="end">%g %%</text>'
                     % (y + 4, 100 * 10.0 ** -power))
    for count in PER_AXIS:
        x = across(count)
        lines.append('<path d="M%g 40 V320" stroke="#d8d8d8"/>' % x)
        lines.append('<text x="%g" y="340" text-anchor="middle">%d</text>' % (x, count))
    lines.append('<text x="340" y="364" text-anchor="middle">samples per axis</text>')
    for row, ((name, bands), values) in enumerate(sorted(errors.items())):
        style = 'fill="none" stroke="%s" stroke-width="2" stroke-dasharray="%s"' % (
            COLOURS[name], DASHES[bands])
        points = " ".join("%.1f,%.1f" % (across(count), down(error))
                          for count, error in zip(PER_AXIS, values))
        lines.append('<polyline points="%s" %s/>' % (points, style))
        y = 60 + 24 * row
        lines.append('<path d="M625 %d h30" %s/>' % (y, style))
        lines.append('<text x="661" y="%d">%s, %d</text>' % (y + 4, name, bands))
    lines.append("</svg>\n")
    with open(path, "w") as plot:
        plot.write("\n".join(lines))


if __name__ == "__main__":
    main()
