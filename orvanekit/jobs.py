"""Files of jobs: one object of JSON a line, checked before any is done.

A job names what makes a set, with the fields of that operation, and in
`then` what is done with the set after that:

    {"id": "sky-1", "do": "project", "given": "sky.hdr", "bands": 12,
     "then": [{"do": "filter", "dering": true}, {"do": "render"}]}

The fields are the options of the command line under the same names.
"""

import argparse
import collections
import hashlib
import json
import math
import os
import re

import orvanekit as kit

from . import operations
from .places import Misplaced, column, parsed

# id: of the job; digest: of its text; line: of the file, from 1; inputs:
# names of the files that it reads; steps: list of (name, options).
Job = collections.namedtuple("Job", "id digest line inputs steps")

_FILE, _FILES, _GAUSSIANS, _NOTHING = (
    "the name of a file", "a list of names of files",
    "a list of [theta, phi, standard deviation, weight]", None)
# Of each operation its options, what it is given as the first of a job,
# and what later, beside the set that the step before has made.
_OPERATIONS = {
    "project": (operations.project_options, _FILE, None),
    "gaussians": (operations.gaussians_options, _GAUSSIANS, None),
    "importance": (operations.importance_options, _GAUSSIANS, None),
    "fit": (operations.fit_options, _FILE, None),
    "filter": (operations.filter_options, _FILE, _NOTHING),
    "rotate": (operations.rotate_options, _FILE, _NOTHING),
    "combine": (operations.combine_options, _FILES, _FILES),
    "render": (operations.render_options, _FILE, _NOTHING)}
_LATER = ("combine", "filter", "render", "rotate")
_ID = re.compile(r"[A-Za-z0-9][A-Za-z0-9._-]{0,99}$")
# What is no file's name everywhere.
_DEVICE = re.compile(r"(con|prn|aux|nul|com\d|lpt\d)(\.|$)|.*\.$", re.I)


def read(path, with_files=False):
    """The jobs of a file; lines that are empty are left out.

    path: the file
    with_files: say also which of the files that jobs read are not there;
        their names are relative to the folder of the file of jobs

    Returns (jobs, wrong): a list of Job, and a list of what is wrong, each
        with line and column; nothing is to be done with the jobs then
    Raises IOError
    """
    with open(path, "rb") as opened:
        lines = opened.read().split(b"\n")
    jobs, wrong, seen = [], [], {}
    folder = os.path.dirname(path)
    for number, line in enumerate(lines, 1):
        if not line.strip():
            continue
        checked = _Line(line, number, seen, folder if with_files else None)
        wrong.extend("line %d, column %d: %s" % ((number,) + each)
                     for each in checked.wrong)
        if not checked.wrong:
            jobs.append(checked.job)
    return jobs, wrong


def digests(job, folder, known):
    """The hashes of the contents of what a job reads.

    folder: that the names are relative to
    known: dictionary of what has been hashed, which grows

    Returns a dictionary by name, in unicode
    Raises IOError
    """
    for name in job.inputs:
        if name not in known:
            total = hashlib.sha256()
            with open(os.path.join(folder, name), "rb") as opened:
                for piece in iter(lambda: opened.read(1 << 20), b""):
                    total.update(piece)
            known[name] = total.hexdigest()
    return dict((name.decode("utf-8"), known[name]) for name in job.inputs)


def is_picture(job):
    """Whether a job makes a picture, and not a set."""
    return job.steps[-1][0] == "render"


def done(job, folder):
    """Do a job.

    folder: that the names of its files are relative to

    Returns a set, a tuple of three, or the bytes of a PNG file
    Raises what its operations raise
    """
    made = None
    for name, options in job.steps:
        given = options.given
        if made is None and isinstance(given, basestring):
            options = argparse.Namespace(**dict(
                vars(options), given=os.path.join(folder, given)))
            if name in ("filter", "rotate", "render"):
                made = kit.load(options.given)
        if name == "project":
            made = operations.project(options)
        elif name == "fit":
            made = operations.fit(options)
        elif name == "gaussians":
            made = operations.gaussians(options)
        elif name == "importance":
            made = operations.importance(options)
        elif name == "filter":
            made = operations.smooth(made, options)[0]
        elif name == "rotate":
            made = operations.rotate(made, options)
        elif name == "combine":
            others = [kit.load(os.path.join(folder, each)) for each in given]
            made = operations.combine(
                others if made is None else [made] + others, options)
        else:
            made = operations.render(made, options)
    return made


class _Line(object):
    """Checks a line: job is None where `wrong` has columns and words."""

    def __init__(self, line, number, seen, folder):
        self.job, self.wrong, self.inputs = None, [], []
        self.folder = folder
        try:
            self.text = line.decode("utf-8")
            fields = parsed(self.text)
        except UnicodeDecodeError as error:
            self.wrong.append((error.start + 1, "no UTF-8"))
            return
        except Misplaced as error:
            self.wrong.append(error.args)
            return
        if not isinstance(fields, dict):
            self.refuse((), "expected an object")
            return
        self.check_id(fields, number, seen)
        steps = [self.step(fields, (), True)]
        then = fields.get("then", [])
        if not isinstance(then, list):
            self.refuse(("then",), "expected a list of objects")
            then = []
        for index, each in enumerate(then):
            path = ("then", index)
            if not isinstance(each, dict):
                self.refuse(path, "expected an object")
                continue
            if steps[-1] and steps[-1][0] == "render":
                self.refuse(path, "nothing can be done after render")
            steps.append(self.step(each, path, False))
        if not self.wrong:
            text = json.dumps(fields, sort_keys=True)
            self.job = Job(fields["id"].encode("ascii"),
                           hashlib.sha256(text).hexdigest(), number,
                           sorted(set(self.inputs)), steps)

    def refuse(self, path, words, name=False):
        self.wrong.append((column(self.text, path, name),
                           words.encode("utf-8")))

    def check_id(self, fields, number, seen):
        name = fields.get("id")
        if name is None:
            self.refuse((), 'no "id"')
        elif not (isinstance(name, unicode) and _ID.match(name)
                  and not _DEVICE.match(name)):
            self.refuse(("id",), "no name of a file; expected letters, "
                        "digits, - _ and ., up to 100")
        elif name.lower() in seen:
            self.refuse(("id",), "the same as in line %d"
                        % seen[name.lower()])
        else:
            seen[name.lower()] = number

    def step(self, fields, path, first):
        """(name, options) of a step, or None."""
        allowed = sorted(_OPERATIONS) if first else _LATER
        name = fields.get("do")
        if name not in allowed:
            words = "expected one of " + ", ".join(allowed)
            if "do" in fields:
                self.refuse(path + ("do",), words)
            else:
                self.refuse(path, 'no "do"; ' + words)
            return None
        options, as_first, as_later = _OPERATIONS[name]
        known = ["do"] + (["id", "then"] if first else [])
        kind = as_first if first else as_later
        values = {"given": None}
        if kind:
            known.append("given")
            if "given" in fields:
                values["given"] = self.given(fields["given"], kind, path)
            else:
                self.refuse(path, 'no "given": ' + kind)
        parser = _parser(options)
        for action in parser._actions:
            known.append(action.dest)
            values[action.dest] = action.default
            if action.dest in fields:
                values[action.dest] = self.value(
                    action, fields[action.dest], path + (action.dest,))
            elif action.required:
                self.refuse(path, 'no "%s"' % action.dest)
        for group in parser._mutually_exclusive_groups:
            names = [action.dest for action in group._group_actions]
            chosen = [each for each in names
                      if fields.get(each, False) is not False]
            if len(chosen) > 1:
                self.refuse(path + (chosen[1],), "%s was given too"
                            % chosen[0], True)
            elif group.required and not chosen:
                self.refuse(path, "expected one of " + ", ".join(names))
        for each in sorted(set(fields) - set(known)):
            self.refuse(path + (each,), "unknown field; %s has %s" % (
                name, ", ".join(sorted(known))), True)
        for each in fields.twice:
            self.refuse(path + (each,), "given twice", True)
        return name, argparse.Namespace(**values)

    def value(self, action, value, path):
        """What an option of the command line would be."""
        if action.const is True:
            if isinstance(value, bool):
                return value
            self.refuse(path, "expected true or false")
            return None
        count = action.nargs
        values = value if count else [value]
        kind = getattr(action.type, "__name__").replace("int", "whole number")
        if isinstance(values, list) and len(values) == (count or 1):
            try:
                return (list if count else _only)([
                    _number(each, action.type) for each in values])
            except (ValueError, OverflowError):
                pass
        self.refuse(path, "expected a " + (
            "list of %d, each a " % count if count else "") + kind)
        return None

    def given(self, value, kind, path):
        """What a step works on; the files among it are remembered."""
        path += ("given",)
        if kind == _GAUSSIANS:
            return self.gaussians(value, path)
        names = value if kind == _FILES else [value]
        if not isinstance(names, list) or not names:
            self.refuse(path, "expected " + kind)
            return None
        for index, name in enumerate(names):
            where = path + ((index,) if kind == _FILES else ())
            if not isinstance(name, unicode) or not name or "\0" in name:
                self.refuse(where, "expected the name of a file")
                continue
            names[index] = name = name.encode("utf-8")
            self.inputs.append(name)
            if self.folder is not None and not os.path.isfile(
                    os.path.join(self.folder, name)):
                self.refuse(where, "there is no such file")
        return names if kind == _FILES else names[0]

    def gaussians(self, rows, path):
        if not isinstance(rows, list) or not rows:
            self.refuse(path, "expected " + _GAUSSIANS)
            return None
        for index, row in enumerate(rows):
            try:
                if not isinstance(row, list) or len(row) != 4:
                    raise ValueError
                theta, _, width, _ = [
                    _number(each, operations.number) for each in row]
                if not 0 <= theta <= math.pi or not width > 0:
                    raise ValueError
            except (ValueError, OverflowError):
                self.refuse(path + (index,), "expected [theta, phi, standard "
                            "deviation, weight], theta from 0 to pi, the "
                            "deviation above 0")
        return rows


def _parser(options, made={}):
    """The parser of the options of an operation, made once."""
    if options not in made:
        made[options] = argparse.ArgumentParser(add_help=False)
        options(made[options])
    return made[options]


def _only(values):
    return values[0]


def _number(value, kind):
    """A number of JSON by a type of the command line.

    Raises ValueError
    """
    allowed = (int, long) + ((float,) if kind is operations.number else ())
    if isinstance(value, bool) or not isinstance(value, allowed):
        raise ValueError(value)
    return kind(value)
