"""A page that shows sets in any browser, in one file, and checks itself."""

import base64
import hashlib
import json
import math
import os
import re
import struct

import _Orvane

from .extremes import extremes
from .files import write_whole
from .sets import channels, finite, make_set

_FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "viewer")
_SCRIPTS = ("harmonics.js", "globe.js", "colours.js", "painters.js", "net.js",
            "bars.js", "state.js", "sets.js", "main.js")
_MOST_SETS = 64
_CHECKS = 24
_STEPS = 1024  # of the tables, in a full circle


def write_page(path, sets, title="Spherical harmonics"):
    """Write a page that shows sets: one HTML file, whole or not at all.

    The page draws globe, map and spectrum in any browser of today; it asks
    nothing of any network. It carries 24 values of each set, as the module
    evaluates them, and warns where its own differ by 1e-5 of the set's
    largest magnitude.

    path: the file
    sets: list of (name, set), 1 to 64; a tuple of three sets (red, green,
        blue) is shown in colour. Names are any unicode, or UTF-8.
    title: any text

    Raises ValueError for another number of sets, for text that is no UTF-8
        and, with the set's name, for a set of more than 30 bands or with
        coefficients that are not finite; TypeError: not a set, not a name;
        IOError, OSError
    """
    write_whole(path, page(sets, title))


def page(sets, title):
    """The bytes of the page: the same sets and title give the same."""
    sets = list(sets)
    if not 1 <= len(sets) <= _MOST_SETS:
        raise ValueError("%d sets; expected 1 to %d" % (len(sets),
                                                        _MOST_SETS))
    title = _unicode(title, "title")
    places = list(_places())
    builder = _Orvane.SHBuilder()
    builder.GenerateLookUpTables(_STEPS)
    contents = {"title": title, "points": [shown for shown, _ in places],
                "sets": [_contents(each, places, builder) for each in sets]}
    style, script = map(_packed, (_read("page.css"), viewer_script()))
    policy = ("default-src 'none'; style-src '%s'; script-src '%s'; "
              "base-uri 'none'; form-action 'none'"
              % (_digest(style), _digest(script)))
    parts = {"title": _html(title), "policy": policy, "style": style,
             "script": script, "data": _json(contents)}
    return re.sub(r"\{\{(\w+)\}\}", lambda match: parts[match.group(1)],
                  _read("page.html"))


def viewer_script():
    """The page's JavaScript, with comments."""
    return '(() => {\n"use strict";\n\n%s})();\n' % "\n".join(
        map(_read, _SCRIPTS))


def _packed(text):
    """A script or a style without comments' lines and indentation."""
    return re.sub(r"(?m)^ *(//.*|/\*.*\*/)?\n|^ +", "", text)


def _places():
    """Where the page compares values: places as it shall compute them, each
    with the (theta, phi) that bring the module's tables there.

    Angles are cut down to steps of the tables: theta is asked for in the
    middle of a step; phi soon after the beginning of one, so that none of
    its multiples, up to 29, leaves the step.
    """
    step = struct.unpack("<f", struct.pack("<f", 2 * math.pi))[0] / _STEPS
    golden = math.pi * (3 - math.sqrt(5))  # spreads places evenly
    for i in range(_CHECKS):
        theta = int(math.acos(1 - (2 * i + 1.0) / _CHECKS) / step)
        phi = int(i * golden / step) % _STEPS
        yield ([theta * step, phi * 2 * math.pi / _STEPS],
               ((theta + 0.5) * step, (phi + 1.0 / 64) * step))


def _contents(item, places, builder):
    """What the page knows about one set."""
    try:
        name, sh = item
    except (TypeError, ValueError):
        raise TypeError("%r; expected (name, set)" % (item,))
    name = _unicode(name, "name")
    try:
        lists = map(finite, channels(sh))
    except ValueError as error:
        raise ValueError("%s: %s" % (name.encode("utf-8"), error))
    copies = map(make_set, lists)
    ranges = map(extremes, copies)
    return {
        "name": name,
        "channels": [base64.b64encode(struct.pack("<%df" % len(each), *each))
                     for each in lists],
        "range": [_short(min(each.least for each in ranges)),
                  _short(max(each.greatest for each in ranges))],
        "values": [[_short(builder.GetValueAt(each, phi, theta))
                    for _, (theta, phi) in places] for each in copies],
    }


def _short(value):
    return float("%.9g" % value)


def _unicode(text, what):
    if not isinstance(text, basestring):
        raise TypeError("%s is %s; expected a text"
                        % (what, type(text).__name__))
    if isinstance(text, unicode):
        return text
    try:
        return text.decode("utf-8")
    except UnicodeDecodeError:
        raise ValueError("%s %r; expected UTF-8" % (what, text))


def _read(name):
    with open(os.path.join(_FOLDER, name), "rU") as opened:
        return opened.read()


def _digest(text):
    """By which the page's policy knows a text: no other runs."""
    return "sha256-" + base64.b64encode(hashlib.sha256(text).digest())


def _json(contents):
    """JSON that no reader of HTML takes for markup."""
    text = json.dumps(contents, sort_keys=True, separators=(",", ":"))
    return re.sub("[<>&]", lambda match: "\\u%04x" % ord(match.group()), text)


def _html(text):
    """ASCII that HTML shows as the text."""
    text = re.sub(u"[\x00-\x1f\x7f-\x9f]|[\ud800-\udbff](?![\udc00-\udfff])"
                  u"|(?<![\ud800-\udbff])[\udc00-\udfff]", u" ", text)
    for letter, name in (("&", "&amp;"), ("<", "&lt;"), (">", "&gt;")):
        text = text.replace(letter, name)
    return text.encode("ascii", "xmlcharrefreplace")
