"""What python2.7 -m orvanekit can do: a table of commands."""

import argparse
import array
import json
import math
import os
import sys
import webbrowser

import orvanekit as kit

from . import jobs, operations
from .batch import batch
from .command_line import Command, about
from .files import write_whole
from .join import join
from .progress import Progress
from .sets import channels, finite
from .textfiles import read_numbers

_BAR = 40  # characters of the longest bar of a spectrum
_CHANNELS = ("red", "green", "blue")
_PICTURES = (".png", ".pgm", ".ppm", ".pfm", ".hdr", ".pic")


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
    operations.project_options(parser)


def _project(options):
    with about(options.given), Progress("projecting " + options.given):
        sh = operations.project(options)
    _save(options.made, sh, os.path.basename(options.given))


def _render_arguments(parser):
    _in_and_out(parser, made="OUT.png")
    operations.render_options(parser)


def _render(options):
    sh, _ = _load(options.given)
    with about(options.given), Progress("drawing " + options.given):
        picture = operations.render(sh, options)
    with about(options.made):
        write_whole(options.made, picture)


def _filter_arguments(parser):
    _in_and_out(parser)
    operations.filter_options(parser)


def _filter(options):
    sh, notes = _load(options.given)
    with about(options.given), Progress("filtering " + options.given):
        made, width = operations.smooth(sh, options)
    if width is not None:
        print "heat window of width %.6g" % width
    _save(options.made, made, notes.get("source"))


def _rotate_arguments(parser):
    _in_and_out(parser)
    operations.rotate_options(parser)


def _rotate(options):
    sh, notes = _load(options.given)
    with about(options.given):
        made = operations.rotate(sh, options)
    _save(options.made, made, notes.get("source"))


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
    operations.combine_options(parser)


def _combine(options):
    sets = [_load(path)[0] for path in options.given]
    with about(options.given[0]), Progress("combining"):
        made = operations.combine(sets, options)
    _save(options.made, made)


def _fit_arguments(parser):
    _in_and_out(parser, "POINTS.csv")
    operations.fit_options(parser)


def _fit(options):
    with about(options.given), Progress("fitting " + options.given) as part:
        sh = operations.fit(options, part)
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
        import urllib  # needs sockets, which an embedded Python may not have
        import urlparse
        address = urlparse.urljoin(
            "file:", urllib.pathname2url(os.path.abspath(made)))
        if not webbrowser.open(address):
            raise ValueError("%s: no browser opens it" % made)


def _part(text):
    """K/N as (K, N)."""
    first, _, parts = text.partition("/")
    if not (first.isdigit() and parts.isdigit()
            and 1 <= int(first) <= int(parts)):
        raise argparse.ArgumentTypeError(
            "%s; expected K/N, K from 1 to N" % text)
    return int(first), int(parts)


def _batch_arguments(parser):
    parser.add_argument("given", metavar="JOBS.jsonl")
    parser.add_argument("--out", metavar="FOLDER",
                        help="of the results; all but --check needs it")
    parser.add_argument("--part", type=_part, default=(1, 1), metavar="K/N",
                        help="every Nth job from the Kth on; all unless "
                        "given")
    parser.add_argument("--check", action="store_true",
                        help="say what is wrong with the jobs, do nothing")
    parser.add_argument("--any-fingerprint", action="store_true",
                        help="take results of machines that round "
                        "differently")


def _batch(options):
    found, wrong = jobs.read(options.given, with_files=options.check)
    if wrong:
        return _lines_of(options.given, wrong)
    if options.check:
        print "%d jobs" % len(found)
        return 0
    if options.out is None:
        raise ValueError("%s: --out FOLDER says where the results belong"
                         % options.given)
    made, there, failed = batch(
        found, options.given, options.out, options.part,
        options.any_fingerprint)
    print "%d made, %d there already, %d failed" % (made, there, failed)
    return 1 if failed else 0


def _lines_of(path, wrong):
    """Print what is wrong with a file; the exit status."""
    sys.stderr.write("".join("%s: %s\n" % (path, words) for words in wrong))
    return 1


def _join_arguments(parser):
    parser.add_argument("given", metavar="FOLDER")
    parser.add_argument("made", metavar="OUT.tar",
                        help="or .f32: the coefficients of all sets; or "
                        ".png: the picture whose slices the results are")
    parser.add_argument("--any-fingerprint", action="store_true",
                        help="take results of machines that round "
                        "differently")


def _join(options):
    wrong = join(options.given, options.made, options.any_fingerprint)
    return _lines_of(options.given, wrong) if wrong else 0


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
    Command("batch", "do the jobs of a file, or a part of them",
            ["jobs.jsonl --check", "jobs.jsonl --out results --part 3/8"],
            _batch_arguments, _batch),
    Command("join", "put the results of a batch together",
            ["results all.tar"], _join_arguments, _join),
]
