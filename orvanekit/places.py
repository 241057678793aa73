"""Where in a line of JSON something stands."""

import json
import json.scanner
import re

_SPACE = re.compile(r"[ \t\r\n]*")
_scan = json.JSONDecoder().scan_once


class Fields(dict):
    """An object of JSON; `twice` names the fields that it gives twice."""

    def __init__(self, pairs):
        dict.__init__(self, pairs)
        names = [name for name, _ in pairs]
        self.twice = sorted(set(name for name in names
                                if names.count(name) > 1))


_decoder = json.JSONDecoder(object_pairs_hook=Fields)


def parsed(text):
    """The value of a line of JSON, its objects as Fields.

    text: unicode

    Raises Misplaced
    """
    start = _after_space(text, 0)
    try:
        value, end = _decoder.scan_once(text, start)
    except (StopIteration, ValueError, RuntimeError):
        raise _misplaced(text, start)
    end = _after_space(text, end)
    if end < len(text):
        raise Misplaced(end + 1, "more after the end of the object")
    return value


def _misplaced(text, start):
    # The scanner in C does not say where it has met no value.
    try:
        json.scanner.py_make_scanner(_decoder)(text, start)
    except ValueError as error:
        found = re.search(r"column (\d+)", str(error))
        return Misplaced(int(found.group(1)) if found else start + 1,
                         str(error).split(":")[0].replace("object",
                                                          "a value"))
    except RuntimeError:
        return Misplaced(start + 1, "nested too deeply")
    except StopIteration:
        pass
    return Misplaced(start + 1, "no value of JSON")


class Misplaced(ValueError):
    """What is wrong with a line, and at which column, from 1."""

    def __init__(self, column, words):
        ValueError.__init__(self, column, words)


def column(text, path, name=False):
    """The column, from 1, of a value within a line of JSON.

    text: unicode that parsed() takes
    path: names of fields and indices of lists that lead to the value
    name: that of the last field's name instead; of a field that is given
        twice, the second time
    """
    at = _after_space(text, 0)
    for depth, step in enumerate(path):
        at = _after_space(text, at + 1)
        found = at
        index = 0
        while text[at] not in "}]":
            place = at
            if isinstance(step, basestring):
                key, at = _scan(text, at)
                at = _after_space(text, _after_space(text, at) + 1)
            else:
                key = index
            if key == step:
                found = place if name and depth == len(path) - 1 else at
            at = _after_space(text, _scan(text, at)[1])
            if text[at] == ",":
                at = _after_space(text, at + 1)
            index += 1
        at = found
    return at + 1


def _after_space(text, at):
    return _SPACE.match(text, at).end()
