"""Does the jobs of a file, or a part of them, into a folder.

A worker may be killed at any time and started again, anywhere, twice: a
result is whole or not there, and one that is there and belongs to its job
is not made again. Beside the results `ID.json` or `ID.png` the folder holds
`ID.error` for each job that could not be done, the fingerprint of the
machine that began it, `batch.fingerprint`, and a copy of the file of jobs,
`batch.jobs`.
"""

import errno
import os
import sys

from . import builders, jobs, results
from .files import write_whole
from .fingerprint import fingerprint
from .progress import Progress

_BUILDERS = 4  # settings whose tables and samples a worker keeps


def batch(todo, path, folder, part=(1, 1), any_fingerprint=False):
    """Do the jobs of a file whose results are not there yet.

    todo: the jobs, as jobs.read gives them
    path: the file of jobs
    folder: of the results; made where there is none
    part: (K, N): job number I of the file, from 0, is done where
        I % N == K - 1
    any_fingerprint: go on in a folder that a machine with another
        fingerprint has begun, and accept the results of such

    Returns (made, found, failed): how many results were made, were there
        already, and could not be made
    Raises ValueError: the folder was begun under another fingerprint;
        IOError, OSError
    """
    first, parts = part
    own = fingerprint()
    _begin(path, folder, own, any_fingerprint)
    todo = todo[first - 1::parts]
    builders.keep(_BUILDERS)
    counts = {"made": 0, "found": 0, "failed": 0}
    known = {}
    base = os.path.dirname(path)
    with Progress("working on " + path) as progress:
        for number, job in enumerate(todo):
            progress(float(number) / len(todo))
            counts[_one(job, base, folder, known,
                        own, any_fingerprint)] += 1
    builders.keep(0)
    return counts["made"], counts["found"], counts["failed"]


def _begin(path, folder, own, any_fingerprint):
    """See to the folder, its fingerprint and its copy of the jobs."""
    try:
        os.makedirs(folder)
    except OSError as error:
        if error.errno != errno.EEXIST:
            raise
    mark = os.path.join(folder, "batch.fingerprint")
    if not os.path.exists(mark):
        write_whole(mark, own + "\n")
    begun = _contents(mark).strip()
    if begun != own and not any_fingerprint:
        raise ValueError(
            "%s: begun under the fingerprint %.12s..., this machine has "
            "%.12s...: its results may differ in their last bits; "
            "--any-fingerprint goes on all the same" % (folder, begun, own))
    copy = os.path.join(folder, "batch.jobs")
    text = _contents(path)
    if not os.path.exists(copy) or _contents(copy) != text:
        write_whole(copy, text)


def _one(job, base, folder, known, own, any_fingerprint):
    """Do a job: "made", "found" or "failed"."""
    where = results.path(folder, job)
    failure = os.path.join(folder, job.id + ".error")
    try:
        mark = {"id": job.id, "job": job.digest, "fingerprint": own,
                "inputs": jobs.digests(job, base, known)}
        outcome = "found"
        if not _is_there(where, mark, any_fingerprint):
            write_whole(where, results.sealed(jobs.done(job, base), mark))
            outcome = "made"
        if os.path.exists(failure):
            os.remove(failure)
        return outcome
    except Exception as error:  # whatever it is, the others go on
        words = "%s: %s" % (type(error).__name__, error)
        sys.stderr.write("%s: %s\n" % (job.id, words))
        try:
            write_whole(failure, words + "\n")
        except EnvironmentError as also:
            sys.stderr.write("%s: %s\n" % (failure, also.strerror))
        return "failed"


def _is_there(where, mark, any_fingerprint):
    """Whether the result is whole and belongs to this job and machine."""
    if not os.path.exists(where):
        return False
    try:
        found = dict(results.opened(where)[1])
    except results.Damaged:
        return False
    del found["checksum"]
    if any_fingerprint:
        found["fingerprint"] = mark["fingerprint"]
    return found == mark


def _contents(path):
    with open(path, "rb") as opened:
        return opened.read()
