"""Sets in files: JSON that people can read, exact to the bit."""

import json
import os
import re
import struct
import tempfile

from .sets import MOST_BANDS, bands, channels, from_bytes

_FORMAT, _VERSION = "orvanekit set", 1
_CONVENTION = ("orthonormal, with the sign (-1)^m; a line a band, order m "
               "from -l to l")
_CHANNELS = ("red", "green", "blue")
_LARGEST = 1 << 20  # bytes; three sets of 30 bands with notes take 50 KB


def save(path, sh, **notes):
    """Write a set into a JSON file, whole or not at all.

    The file holds the bands, the convention, the notes in UTF-8 and the
    coefficients, exact to the bit, subnormal numbers, NaN and infinities
    included.

    path: the file
    sh: the set, or a tuple of three (red, green, blue)
    notes: whatever JSON can hold, by name

    Raises ValueError, beginning with the path, for notes that JSON cannot
        hold or a set that is not made of whole bands, 30 at most;
        TypeError: not a set; IOError, OSError
    """
    channels(sh)
    try:
        text = encoded(sh, notes)
    except (ValueError, TypeError) as error:
        raise ValueError("%s: %s" % (path, error))
    write_whole(path, text)


def encoded(sh, notes):
    """The text of a file: as save, notes a dictionary."""
    sets = channels(sh)
    if len(set(bands(channel) for channel in sets)) > 1:
        raise ValueError("channels of different bands")
    lists = [_lines(channel) for channel in sets]
    head = [("format", _FORMAT), ("version", _VERSION),
            ("bands", bands(sets[0])), ("convention", _CONVENTION),
            ("notes", notes)]
    text = "{\n" + "".join(" %s: %s,\n" % (
        json.dumps(name), _dumped(value)) for name, value in head)
    if len(lists) == 1:
        return text + ' "coefficients": %s\n}\n' % lists[0]
    return text + ' "coefficients": {\n%s\n }\n}\n' % ",\n".join(
        ' "%s": %s' % pair for pair in zip(_CHANNELS, lists))


def load(path):
    """Read a set that `save` has written.

    path: the file

    Returns a new set, or a tuple of three (red, green, blue)
    Raises ValueError, with path and place, for a file of another kind or
        version, truncated, damaged or larger than 1 MB; IOError
    """
    return load_with_notes(path)[0]


def load_with_notes(path):
    """Read a set and the notes that were saved with it.

    path: the file

    Returns (set, notes): notes by name, texts as unicode
    Raises ValueError, IOError as `load`
    """
    with open(path, "rb") as opened:
        text = opened.read(_LARGEST + 1)
    if len(text) > _LARGEST:
        raise ValueError("%s: more than %d bytes" % (path, _LARGEST))
    try:
        return parsed(text)
    except (ValueError, RuntimeError) as error:  # nested too deeply
        raise ValueError("%s: %s" % (path, error))


def parsed(text):
    """The set and the notes in the text of a file: as load_with_notes.

    Raises ValueError, with the place, and RuntimeError
    """
    try:
        contents = json.loads(text.decode("utf-8"), parse_int=_whole)
    except UnicodeDecodeError as error:
        raise ValueError("no text: byte %d is not UTF-8" % error.start)
    if not isinstance(contents, dict) or contents.get("format") != _FORMAT:
        raise ValueError('no set; expected {"format": "%s", ...}' % _FORMAT)
    if contents.get("version") != _VERSION:
        raise ValueError("version %r; expected %d"
                         % (contents.get("version"), _VERSION))
    number, notes = contents.get("bands"), contents.get("notes", {})
    if (not isinstance(number, int) or isinstance(number, bool)
            or not 0 <= number <= MOST_BANDS):
        raise ValueError("bands is %r; expected 0 to %d"
                         % (number, MOST_BANDS))
    if not isinstance(notes, dict):
        raise ValueError("notes are %s; expected an object" % _kind(notes))
    lists = contents.get("coefficients")
    if isinstance(lists, dict):
        if sorted(lists) != sorted(_CHANNELS):
            raise ValueError("channels %s; expected %s" % (
                ", ".join(sorted(lists)), ", ".join(_CHANNELS)))
        return tuple(_set(lists[name], number, name + " ")
                     for name in _CHANNELS), notes
    return _set(lists, number, ""), notes


def write_whole(path, contents):
    """Write a file under a temporary name beside it, then rename it.

    contents: the bytes, or a function that writes them into an open file

    Raises IOError, OSError; the file is then as it was
    """
    folder = os.path.dirname(os.path.abspath(path))
    number, temporary = tempfile.mkstemp(dir=folder, prefix=".orvanekit-")
    try:
        with os.fdopen(number, "wb") as opened:
            if callable(contents):
                contents(opened)
            else:
                opened.write(contents)
            opened.flush()
            os.fsync(opened.fileno())
        if os.name == "nt":
            if os.path.exists(path):
                os.remove(path)  # which a rename does elsewhere
        else:
            mask = os.umask(0)
            os.umask(mask)
            os.chmod(temporary, 0o666 & ~mask)
        os.rename(temporary, path)
    except BaseException:
        if os.path.exists(temporary):
            os.remove(temporary)
        raise


def _dumped(value):
    # Once there and back: then all texts are unicode, whether they came as
    # that or as UTF-8, and can be written as they are read.
    texts = json.loads(json.dumps(value, allow_nan=False))
    return json.dumps(texts, ensure_ascii=False,
                      sort_keys=True).encode("utf-8")


def _lines(sh):
    """The coefficients as JSON, a line a band."""
    number = bands(sh)
    if sh.GetNumCoefficients() != number * number or number > MOST_BANDS:
        raise ValueError("a set of %d coefficients; expected those of 0 to "
                         "%d whole bands" % (sh.GetNumCoefficients(),
                                             MOST_BANDS))
    contents = str(sh.GetAsBuffer())
    words = struct.unpack("<%dI" % (number * number), contents)
    floats = struct.unpack("<%df" % (number * number), contents)
    texts = map(_text, words, floats)
    return "[%s\n ]" % ",".join("\n  [%s]" % ", ".join(
        texts[l * l:(l + 1) * (l + 1)]) for l in range(number))


def _text(word, value):
    """One number of JSON, or a string for what JSON has no number for."""
    if value != value:  # with its bits: there are many
        return '"nan %08x"' % word
    if value - value != 0.0:
        return '"inf"' if value > 0 else '"-inf"'
    text = "%.9g" % value  # nine digits tell single precisions apart
    return text if re.search("[.e]", text) else text + ".0"


def _set(lists, number, channel):
    if not isinstance(lists, list) or len(lists) != number:
        raise ValueError("%scoefficients are %s; expected %d lists" % (
            channel, "%d lists" % len(lists) if isinstance(lists, list)
            else _kind(lists), number))
    words = []
    for l, band in enumerate(lists):
        if not isinstance(band, list) or len(band) != 2 * l + 1:
            raise ValueError("%sband %d is %s; expected a list of %d" % (
                channel, l, "a list of %d" % len(band)
                if isinstance(band, list) else _kind(band), 2 * l + 1))
        for place, value in enumerate(band):
            words.append(_word(value, "%sband %d, order %d" % (
                channel, l, place - l)))
    return from_bytes("".join(words), number)


def _whole(digits):
    """A number without a point; int takes the square of the length."""
    return int(digits) if len(digits) < 400 else float(digits)


def _word(value, place):
    """Four bytes of single precision."""
    if isinstance(value, basestring):
        if value in ("inf", "-inf"):
            return struct.pack("<f", float(value))
        match = re.match("nan ([0-9a-f]{8})$", value)
        if match:
            word = int(match.group(1), 16)
            if word & 0x7f800000 == 0x7f800000 and word & 0x7fffff:
                return struct.pack("<I", word)
    elif isinstance(value, (int, long, float)) and not isinstance(value, bool):
        try:
            if abs(value) < 1e39:
                return struct.pack("<f", value)
        except OverflowError:
            pass
    raise ValueError("%s is %s; expected a number of single precision"
                     % (place, json.dumps(value)[:40]))


def _kind(value):
    return {type(None): "missing", bool: "a truth value", dict: "an object",
            list: "a list", unicode: "a text"}.get(type(value), "a number")
