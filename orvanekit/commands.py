"""What python2.7 -m orvanekit can do: a table of commands."""

import array
import json
import math
import operator
import os
import urllib
import urlparse
import webbrowser

import _Orvane

import orvanekit as kit

from .command_line import Command, about
from .files import write_whole
from .progress import Progress
from .sets import channels, finite, like
from .textfiles import read_numbers, read_points

_BAR = 40  # characters of the longest bar of a spectrum
_CHANNELS = ("red", "green", "blue")
_PICTURES = (".png", ".pgm", ".ppm", ".pfm", ".hdr", ".pic")


def _each(function, *sets):
    """Apply a function to sets, or channel by channel to colour."""
    if len(set(map(type, sets))) > 1:
        raise ValueError("sets of one and of three channels do not mix")
    return like(sets[0], [function(*those) for those
                          in zip(*map(channels, sets))])


def _load(path):
    """A set and its notes."""
    if _ending(path) in _PICTURES:
        raise ValueError("%s: a picture; make a set of it first, by project"
                         % path)
    return kit.load_with_notes(path)


def _ending(path):
    return os.path.splitext(path)[1].lower()


def _save(path, sh, source=None):
    with about(path):
        kit.save(path, sh, **({} if source is None else {"source": source}))


def _number(text):
    """A finite number; argparse names it in its message."""
    value = float(text)
    if value - value != 0:
        raise ValueError(text)
    return value


def _bands(text):
    bands = int(text)
    if not 1 <= bands <= 30:
        raise ValueError(text)
    return bands


def _in_and_out(parser, given="SET.json", made="OUT.json"):
    parser.add_argument("given", metavar=given)
    parser.add_argument("made", metavar=made)


def _info_arguments(parser):
    parser.add_argument("given", metavar="SET.json")


def _info(options):
    sh, notes = _load(options.given)
    lines = ["%s: %s" % (name, value if isinstance(value, basestring)
                         else json.dumps(value)) for name, value
             in sorted(notes.items())]
    lines = [line.encode("utf-8") for line in lines]
    for name, channel in zip(_CHANNELS, channels(sh)):
        if isinstance(sh, tuple):
            lines.append("%s:" % name)
        with about(options.given):
            lines.extend(_described(channel))
    print "\n".join(lines)


def _described(sh):
    """Lines about one set."""
    values = kit.coefficients(sh)
    bands = int(math.sqrt(len(values)))
    yield "%d bands, %d coefficients" % (bands, len(values))
    if not bands:
        return
    if [value for value in values if value - value != 0]:
        yield "not all of them are finite"
        return
    found = kit.extremes(sh)
    yield "mean      %.6g" % (values[0] / math.sqrt(4 * math.pi))
    for word, value, at in (("least", found.least, found.least_at),
                            ("greatest", found.greatest, found.greatest_at)):
        yield "%-9s %.6g at theta %.4f, phi %.4f (%.1f, %.1f degrees)" % (
            (word, value) + tuple(at) + tuple(map(math.degrees, at)))
    powers = kit.spectrum(sh)
    most = max(powers) or 1.0
    yield "power of each band:"
    for band, power in enumerate(powers):
        bar = "#" * int(math.ceil(_BAR * power / most))
        yield ("%4d %11.5g %s" % (band, power, bar)).rstrip()


def _project_arguments(parser):
    _in_and_out(parser, "PICTURE")
    parser.add_argument("--bands", type=_bands, default=30,
                        help="1 to 30; 30 unless given")
    parser.add_argument("--colour", action="store_true",
                        help="three sets, red, green and blue; else "
                        "luminance")


def _project(options):
    with about(options.given), Progress("projecting " + options.given):
        width, height, values = kit.read_image(options.given, options.colour)
        sh = kit.projected(values, width, height, options.bands)
    _save(options.made, sh, os.path.basename(options.given))


def _render_arguments(parser):
    _in_and_out(parser, made="OUT.png")
    shape = parser.add_mutually_exclusive_group()
    shape.add_argument("--map", action="store_true",
                       help="phi to the right, theta downwards (the default)")
    shape.add_argument("--globe", action="store_true", help="seen from afar")
    parser.add_argument("--width", type=int, default=512,
                        help="in pixels; 512 unless given")
    parser.add_argument("--height", type=int,
                        help="of a map, in pixels; half the width unless "
                        "given")
    parser.add_argument("--view", nargs=2, type=_number, default=(90.0, 0.0),
                        metavar=("THETA", "PHI"),
                        help="the globe's middle, in degrees; 90 0 unless "
                        "given")
    parser.add_argument("--grey", action="store_true",
                        help="black to white instead of blue, black, orange")
    parser.add_argument("--least", type=_number,
                        help="the value that is black")
    parser.add_argument("--greatest", type=_number,
                        help="the value that is brightest")
    parser.add_argument("--gamma", type=_number, default=1.0,
                        help="2.2 for light; 1 unless given")


def _render(options):
    sh, _ = _load(options.given)
    look = {"colours": "grey" if options.grey else "diverging",
            "least": options.least, "greatest": options.greatest,
            "gamma": options.gamma}
    with about(options.given), Progress("drawing " + options.given):
        if options.globe:
            picture = kit.globe(sh, options.width,
                                tuple(map(math.radians, options.view)),
                                **look)
        else:
            picture = kit.map_picture(sh, options.width, options.height,
                                      **look)
    with about(options.made):
        write_whole(options.made, picture)


def _filter_arguments(parser):
    _in_and_out(parser)
    window = parser.add_mutually_exclusive_group(required=True)
    window.add_argument("--hann", action="store_true")
    window.add_argument("--lanczos", action="store_true")
    window.add_argument("--heat", type=_number, metavar="W",
                        help="Gaussian blur of W radians")
    window.add_argument("--cap", type=_number, metavar="A",
                        help="average over a cap of A radians")
    window.add_argument("--irradiance", action="store_true",
                        help="clamped cosine, divided by pi")
    window.add_argument("--dering", action="store_true",
                        help="the narrowest blur without values below the "
                        "floor")
    parser.add_argument("--floor", type=_number, default=0.0,
                        help="of --dering; 0 unless given")


def _filter(options):
    sh, notes = _load(options.given)
    with about(options.given), Progress("filtering " + options.given):
        if options.dering:
            made, width = kit.dering(sh, options.floor)
            print "heat window of width %.6g" % width
        else:
            bands = channels(sh)[0].numBands
            if options.hann:
                window = kit.hann(bands)
            elif options.lanczos:
                window = kit.lanczos(bands)
            elif options.heat is not None:
                window = kit.heat(bands, options.heat)
            elif options.cap is not None:
                window = kit.cap(bands, options.cap)
            else:
                window = kit.clamped_cosine(bands)
            made = kit.filtered(sh, window)
    _save(options.made, made, notes.get("source"))


def _rotate_arguments(parser):
    _in_and_out(parser)
    parser.add_argument("--axis", nargs=3, type=_number, required=True,
                        metavar=("X", "Y", "Z"),
                        help="x at phi = 0, y at phi = 90 degrees, z the "
                        "pole")
    parser.add_argument("--angle", type=_number, required=True,
                        metavar="DEGREES", help="right-handed")


def _rotate(options):
    sh, notes = _load(options.given)
    with about(options.given):
        matrix = kit.rotation(options.axis, math.radians(options.angle))
        made = _each(lambda channel: _rotated(channel, matrix), sh)
    _save(options.made, made, notes.get("source"))


def _rotated(sh, matrix):
    """A set turned by a matrix, with as many bands as before."""
    values = kit.coefficients(_Orvane.SHBuilder().RotateSH(sh, matrix))
    return kit.make_set(values[:sh.GetNumCoefficients()])


def _convert_arguments(parser):
    parser.add_argument("given", metavar="IN")
    parser.add_argument("made", metavar="OUT")
    parser.add_argument("--normalisation", default="orthonormal",
                        choices=("orthonormal", "4pi", "schmidt"),
                        help="of a .txt or .csv file; orthonormal unless "
                        "given")
    parser.add_argument("--order", default="ascending",
                        choices=("ascending", "descending", "paired"),
                        help="of a band in a .txt or .csv file: -l to l "
                        "(the default), l to -l, or 0, 1, -1, 2, -2")
    parser.add_argument("--no-condon-shortley", action="store_true",
                        help="a .txt or .csv file lacks the sign (-1)^m")


def _convert(options):
    endings = map(_ending, (options.given, options.made))
    if [ending in _PICTURES for ending in endings] == [True, True]:
        width, height, values = kit.read_image(options.given, True)
        if values[0] == values[1] == values[2]:
            values = values[0]
        with about(options.made):
            kit.write_image(options.made, width, height, values)
        return
    convention = {"normalisation": options.normalisation,
                  "condon_shortley": not options.no_condon_shortley,
                  "order": options.order}
    with about(options.given):
        if endings[0] == ".json":
            sh = kit.load(options.given)
        elif endings[0] in (".txt", ".csv"):
            sh = kit.imported(read_numbers(options.given), **convention)
        elif endings[0] == ".f32":
            sh = kit.make_set(_read_floats(options.given))
        else:
            raise ValueError("ending %r; expected .json, .txt, .csv or .f32, "
                             "or a picture to make a picture of" % endings[0])
    with about(options.made):
        if endings[1] == ".json":
            _save(options.made, sh)
        elif isinstance(sh, tuple):
            raise ValueError("three sets; expected the ending .json")
        elif endings[1] in (".txt", ".csv"):
            write_whole(options.made, "".join(
                "%r\n" % value for value in kit.exported(sh, **convention)))
        elif endings[1] == ".f32":
            write_whole(options.made, str(sh.GetAsBuffer()))
        else:
            raise ValueError("ending %r; expected .json, .txt, .csv or .f32"
                             % endings[1])


def _read_floats(path):
    """The single-precision numbers of a file of GetAsBuffer's bytes."""
    size = os.path.getsize(path)
    if size > 4 * 900 or size % 4:
        raise ValueError("%d bytes; expected 4 for each of up to 900 "
                         "coefficients" % size)
    with open(path, "rb") as opened:
        return array.array("f", opened.read())


def _combine_arguments(parser):
    parser.add_argument("given", metavar="SET.json", nargs="+")
    parser.add_argument("made", metavar="OUT.json")
    how = parser.add_mutually_exclusive_group(required=True)
    how.add_argument("--sum", action="store_true")
    how.add_argument("--difference", action="store_true",
                     help="the first less the others")
    how.add_argument("--product", action="store_true")
    how.add_argument("--max", action="store_true")
    how.add_argument("--min", action="store_true")
    how.add_argument("--blend", type=_number, metavar="PART",
                     help="of two sets: 0 is the first, 1 the second")
    how.add_argument("--threshold", type=_number, metavar="VALUE",
                     help="of one set: 1 where it is above, else 0")
    parser.add_argument("--bands", type=_bands, default=30,
                        help="of a product, maximum, minimum or mask, 1 to "
                        "30; 30 unless given")


def _combine(options):
    sets = [_load(path)[0] for path in options.given]
    wanted = {"blend": 2, "threshold": 1}
    for name, number in wanted.items():
        if getattr(options, name) is not None and len(sets) != number:
            raise ValueError("%s: %d sets; --%s takes %d" % (
                options.given[0], len(sets), name, number))
    with about(options.given[0]), Progress("combining"):
        if options.sum:
            made = _weighted(sets, [1.0] * len(sets))
        elif options.difference:
            made = _weighted(sets, [1.0] + [-1.0] * (len(sets) - 1))
        elif options.blend is not None:
            made = _weighted(sets, [1.0 - options.blend, options.blend])
        else:
            # The edge of a mask is hard.
            density = 1 if options.threshold is None else 4
            made = kit.combined(_pointwise(options), sets, options.bands,
                                density)
    _save(options.made, made)


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


def _fit_arguments(parser):
    _in_and_out(parser, "POINTS.csv")
    parser.add_argument("--bands", type=_bands, default=10,
                        help="1 to 30; 10 unless given")
    parser.add_argument("--smoothing", type=_number,
                        help="how much roughness counts")
    parser.add_argument("--degrees", action="store_true",
                        help="the file's angles are in degrees")


def _fit(options):
    with about(options.given), Progress("fitting " + options.given) as part:
        points = read_points(options.given)
        if options.degrees:
            points = [(math.radians(theta), math.radians(phi), value)
                      for theta, phi, value in points]
        more = {}
        if options.smoothing is not None:
            more["smoothing"] = options.smoothing
        sh = kit.fitted(points, options.bands, progress=part, **more)
    _save(options.made, sh, os.path.basename(options.given))


def _view_arguments(parser):
    parser.add_argument("given", metavar="SET.json", nargs="+")
    parser.add_argument("-o", "--output", metavar="PAGE.html",
                        help="the page; the first set's file with the "
                        "ending .html unless given")
    parser.add_argument("--title", help="of the page; the names of the "
                        "sets' files unless given")
    parser.add_argument("--open", action="store_true",
                        help="show it in the browser")


def _view(options):
    sets = []
    for path in options.given:
        sh, _ = _load(path)
        with about(path):
            map(finite, channels(sh))
        name = os.path.splitext(os.path.basename(path))[0]
        sets.append((name.decode("utf-8", "replace"), sh))
    made = options.output or os.path.splitext(options.given[0])[0] + ".html"
    title = options.title or u", ".join(name for name, _ in sets)
    with about(made), Progress("writing " + made):
        kit.write_page(made, sets, title)
    print made
    if options.open:
        address = urlparse.urljoin(
            "file:", urllib.pathname2url(os.path.abspath(made)))
        if not webbrowser.open(address):
            raise ValueError("%s: no browser opens it" % made)


COMMANDS = [
    Command("info", "say what a set is like",
            ["sky.json"], _info_arguments, _info),
    Command("project", "make a set of a picture of the whole sphere",
            ["sky.hdr sky.json --colour", "earth.pgm earth.json --bands 20"],
            _project_arguments, _project),
    Command("render", "draw a set as a map or a globe",
            ["sky.json sky.png --width 1024 --gamma 2.2",
             "earth.json earth.png --globe --view 60 200 --grey"],
            _render_arguments, _render),
    Command("view", "make a page of sets that any browser shows",
            ["sky.json --open", "before.json after.json -o both.html"],
            _view_arguments, _view),
    Command("filter", "smooth a set",
            ["sky.json smooth.json --dering", "sky.json light.json "
             "--irradiance", "earth.json blurred.json --heat 0.1"],
            _filter_arguments, _filter),
    Command("rotate", "turn a set about an axis",
            ["sky.json turned.json --axis 0 0 1 --angle 90"],
            _rotate_arguments, _rotate),
    Command("convert", "change the kind of a file, of a set or a picture",
            ["sky.json sky.txt --normalisation 4pi --no-condon-shortley",
             "theirs.csv mine.json --normalisation schmidt",
             "sky.hdr sky.png"],
            _convert_arguments, _convert),
    Command("combine", "make one set of several, point by point",
            ["day.json night.json dusk.json --blend 0.7",
             "land.json mask.json --threshold 0.5"],
            _combine_arguments, _combine),
    Command("fit", "make a set of scattered points",
            ["points.csv field.json --bands 8 --degrees"],
            _fit_arguments, _fit),
]
