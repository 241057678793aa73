"""What the command line and batches do with sets, and its options.

Each operation has a function that adds its options to an argparse parser
and one that takes the parsed options; no files of results, no messages.
"""

import math
import operator

import _Orvane

import orvanekit as kit

from .builders import builder
from .sets import channels, finite, like
from .textfiles import read_points


def number(text):
    """A finite number."""
    value = float(text)
    if value - value != 0:
        raise ValueError(text)
    return value


def whole(least, most):
    """The type of an option: a whole number of a range."""
    def checked(text):
        value = int(text)
        if not least <= value <= most:
            raise ValueError(text)
        return value
    # argparse says "invalid ... value"; batches say "expected a ...".
    checked.__name__ = "whole number from %d to %d" % (least, most)
    return checked


number.__name__ = "finite number"
bands = whole(1, 30)


def project_options(parser):
    parser.add_argument("--bands", type=bands, default=30,
                        help="1 to 30; 30 unless given")
    parser.add_argument("--colour", action="store_true",
                        help="three sets, red, green and blue; else "
                        "luminance")


def project(options):
    """The set of the picture options.given."""
    width, height, values = kit.read_image(options.given, options.colour)
    return kit.projected(values, width, height, options.bands)


def fit_options(parser):
    parser.add_argument("--bands", type=bands, default=10,
                        help="1 to 30; 10 unless given")
    parser.add_argument("--smoothing", type=number,
                        help="how much roughness counts")
    parser.add_argument("--degrees", action="store_true",
                        help="the file's angles are in degrees")


def fit(options, progress=None):
    """The set of the points in options.given."""
    points = read_points(options.given)
    if options.degrees:
        points = [(math.radians(theta), math.radians(phi), value)
                  for theta, phi, value in points]
    more = {}
    if options.smoothing is not None:
        more["smoothing"] = options.smoothing
    return kit.fitted(points, options.bands, progress=progress, **more)


def _sample_options(parser):
    parser.add_argument("--seed", type=whole(0, 2147483647),
                        required=True, help="of the samples")
    parser.add_argument("--samples", type=whole(1, 16384), default=256,
                        help="per axis; 256 unless given")
    parser.add_argument("--steps", type=whole(1, 262144), default=1024,
                        help="of the tables; 1024 unless given")


def gaussians_options(parser):
    parser.add_argument("--bands", type=bands, default=30,
                        help="1 to 30; 30 unless given")
    _sample_options(parser)


def gaussians(options):
    """The sum of the Gaussians options.given: rows of theta, phi, standard
    deviation, weight. Each is projected over the module's samples."""
    made = builder(options.steps, "GenerateSphericalSamples", options.seed,
                   options.samples)
    total = kit.make_set([0.0] * options.bands ** 2)
    for theta, phi, width, weight in options.given:
        made.AddScaledSH(total, made.CreateGaussSH(
            options.bands, float(width), float(theta), float(phi)),
            float(weight))
    finite(total)
    return total


def importance_options(parser):
    _sample_options(parser)
    parser.add_argument("--around", type=whole(1, 134217728),
                        default=10000, help="samples near each mean; 10000 "
                        "unless given")


def importance(options):
    """As gaussians, by importance sampling: always 30 bands."""
    made = builder(options.steps, "GeneratePDFSamples", options.seed,
                   options.samples, options.around)
    total = kit.make_set([0.0] * 900)
    for theta, phi, width, weight in options.given:
        made.AddScaledSH(total, made.CreateImportanceSampledGaussSH(
            float(theta), float(phi), float(width)), float(weight))
    finite(total)
    return total


def filter_options(parser):
    window = parser.add_mutually_exclusive_group(required=True)
    window.add_argument("--hann", action="store_true")
    window.add_argument("--lanczos", action="store_true")
    window.add_argument("--heat", type=number, metavar="W",
                        help="Gaussian blur of W radians")
    window.add_argument("--cap", type=number, metavar="A",
                        help="average over a cap of A radians")
    window.add_argument("--irradiance", action="store_true",
                        help="clamped cosine, divided by pi")
    window.add_argument("--dering", action="store_true",
                        help="the narrowest blur without values below the "
                        "floor")
    parser.add_argument("--floor", type=number, default=0.0,
                        help="of --dering; 0 unless given")


def smooth(sh, options):
    """A smoothed set, and the width of the window that --dering chose."""
    if options.dering:
        return kit.dering(sh, options.floor)
    count = channels(sh)[0].numBands
    if options.hann:
        window = kit.hann(count)
    elif options.lanczos:
        window = kit.lanczos(count)
    elif options.heat is not None:
        window = kit.heat(count, options.heat)
    elif options.cap is not None:
        window = kit.cap(count, options.cap)
    else:
        window = kit.clamped_cosine(count)
    return kit.filtered(sh, window), None


def rotate_options(parser):
    parser.add_argument("--axis", nargs=3, type=number, required=True,
                        metavar=("X", "Y", "Z"),
                        help="x at phi = 0, y at phi = 90 degrees, z the "
                        "pole")
    parser.add_argument("--angle", type=number, required=True,
                        metavar="DEGREES", help="right-handed")


def rotate(sh, options):
    """A turned set."""
    matrix = kit.rotation(options.axis, math.radians(options.angle))
    return _each(lambda channel: _rotated(channel, matrix), sh)


def combine_options(parser):
    how = parser.add_mutually_exclusive_group(required=True)
    how.add_argument("--sum", action="store_true")
    how.add_argument("--difference", action="store_true",
                     help="the first less the others")
    how.add_argument("--product", action="store_true")
    how.add_argument("--max", action="store_true")
    how.add_argument("--min", action="store_true")
    how.add_argument("--blend", type=number, metavar="PART",
                     help="of two sets: 0 is the first, 1 the second")
    how.add_argument("--threshold", type=number, metavar="VALUE",
                     help="of one set: 1 where it is above, else 0")
    parser.add_argument("--bands", type=bands, default=30,
                        help="of a product, maximum, minimum or mask, 1 to "
                        "30; 30 unless given")


def combine(sets, options):
    """One set of several."""
    for name, count in (("blend", 2), ("threshold", 1)):
        if getattr(options, name) is not None and len(sets) != count:
            raise ValueError("%d sets; --%s takes %d"
                             % (len(sets), name, count))
    if options.sum:
        return _weighted(sets, [1.0] * len(sets))
    if options.difference:
        return _weighted(sets, [1.0] + [-1.0] * (len(sets) - 1))
    if options.blend is not None:
        return _weighted(sets, [1.0 - options.blend, options.blend])
    # The edge of a mask is hard.
    density = 1 if options.threshold is None else 4
    return kit.combined(_pointwise(options), sets, options.bands, density)


def render_options(parser):
    shape = parser.add_mutually_exclusive_group()
    shape.add_argument("--map", action="store_true",
                       help="phi to the right, theta downwards (the default)")
    shape.add_argument("--globe", action="store_true", help="seen from afar")
    parser.add_argument("--width", type=int, default=512,
                        help="in pixels; 512 unless given")
    parser.add_argument("--height", type=int,
                        help="of a map, in pixels; half the width unless "
                        "given")
    parser.add_argument("--slices", type=int, default=1, metavar="N",
                        help="draw one of the N * N equal parts of a map")
    parser.add_argument("--slice", type=int, default=0, metavar="I",
                        help="which, row by row, from 0")
    parser.add_argument("--view", nargs=2, type=number, default=(90.0, 0.0),
                        metavar=("THETA", "PHI"),
                        help="the globe's middle, in degrees; 90 0 unless "
                        "given")
    parser.add_argument("--grey", action="store_true",
                        help="black to white instead of blue, black, orange")
    parser.add_argument("--least", type=number,
                        help="the value that is black")
    parser.add_argument("--greatest", type=number,
                        help="the value that is brightest")
    parser.add_argument("--gamma", type=number, default=1.0,
                        help="2.2 for light; 1 unless given")


def render(sh, options):
    """The bytes of a PNG file."""
    look = {"colours": "grey" if options.grey else "diverging",
            "least": options.least, "greatest": options.greatest,
            "gamma": options.gamma}
    if options.globe:
        return kit.globe(sh, options.width,
                         tuple(map(math.radians, options.view)), **look)
    return kit.map_picture(sh, options.width, options.height,
                           slices=options.slices, index=options.slice, **look)


def _each(function, *sets):
    """Apply a function to sets, or channel by channel to colour."""
    if len(set(map(type, sets))) > 1:
        raise ValueError("sets of one and of three channels do not mix")
    return like(sets[0], [function(*those) for those
                          in zip(*map(channels, sets))])


def _rotated(sh, matrix):
    """A set turned by a matrix, with as many bands as before."""
    values = kit.coefficients(_Orvane.SHBuilder().RotateSH(sh, matrix))
    return kit.make_set(values[:sh.GetNumCoefficients()])


def _weighted(sets, weights):
    """The sum of sets, each times a number; shorter ones end in zeros."""
    def one_channel(*channels):
        rows = map(kit.coefficients, channels)
        total = [0.0] * max(map(len, rows))
        for row, weight in zip(rows, weights):
            for index, value in enumerate(row):
                total[index] += weight * value
        return kit.make_set(total)
    return _each(one_channel, *sets)


def _pointwise(options):
    """The function of the values of sets at a point."""
    if options.threshold is not None:
        return lambda value: 1.0 if value > options.threshold else 0.0
    if options.product:
        return lambda *values: reduce(operator.mul, values)
    return lambda *values: max(values) if options.max else min(values)
