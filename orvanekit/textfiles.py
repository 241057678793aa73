"""Numbers in text files, apart by commas, semicolons or white space.

What follows a # is a comment, and a first line that is no number a
heading.
"""

import re

_LONGEST_FILE = 64 << 20  # bytes
_APART = re.compile(r"[,;\s]+")


def read_numbers(path):
    """Read a file of numbers, however they are spread over its lines.

    Raises ValueError that begins with the path and names the line; IOError.
    """
    return [number for _, row in _rows(path) for number in row]


def read_points(path):
    """Read a file of points, one a line: theta, phi, value.

    Returns a list of such triples
    Raises ValueError that begins with the path and names the line; IOError.
    """
    points = []
    for line, row in _rows(path):
        if len(row) != 3:
            raise ValueError("%s: line %d: %d numbers; expected theta, phi "
                             "and value" % (path, line, len(row)))
        points.append(tuple(row))
    return points


def _rows(path):
    """The number of each line that is not empty, and its numbers."""
    with open(path, "rb") as opened:
        text = opened.read(_LONGEST_FILE + 1)
    if len(text) > _LONGEST_FILE:
        raise ValueError("%s: more than %d bytes" % (path, _LONGEST_FILE))
    rows, seen = [], False
    for line, words in enumerate(text.splitlines(), 1):
        words = [word for word in _APART.split(words.split("#")[0]) if word]
        if not words:
            continue
        try:
            rows.append((line, map(float, words)))
        except ValueError:
            if seen:
                raise ValueError("%s: line %d: %r; expected numbers" % (
                    path, line, " ".join(words)[:40]))
        seen = True
    return rows
