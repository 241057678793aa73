"""Puts the results of a batch together, in the order of the jobs."""

import array
import io
import os
import tarfile

from . import files, jobs, png, results
from .files import write_whole
from .images import read_image
from .sets import channels


def join(folder, path, any_fingerprint=False):
    """Put the results in a folder of a batch into one file.

    folder: that the batch has filled
    path: the file, by its ending: .tar holds the results as they are; .f32
        the coefficients of sets of equal bands, in single precision, one
        set after the other, colour as red, green and blue; .png the picture
        whose slices the results are
    any_fingerprint: join results that were made under others than the
        folder's

    Returns what stands against it, by job, in lines; nothing has been
        written where there is any
    Raises ValueError: what cannot be put together so; IOError, OSError
    """
    ending = os.path.splitext(path)[1].lower()
    if ending not in _WRITERS:
        raise ValueError("%s: ending %r; expected one of %s" % (
            path, ending, " ".join(sorted(_WRITERS))))
    with open(os.path.join(folder, "batch.fingerprint"), "rb") as opened:
        begun = None if any_fingerprint else opened.read().strip()
    todo, wrong = jobs.read(os.path.join(folder, "batch.jobs"))
    read = {}  # by name of a file that jobs read: (its digest, the first)
    for job in todo:
        words = _refusal(job, folder, begun, read)
        if words:
            wrong.append("%s: %s" % (job.id, words))
    if not todo:
        wrong.append("no jobs")
    if not wrong:
        _WRITERS[ending](path, folder, todo)
    return wrong


def _refusal(job, folder, begun, read):
    """What stands against a result, or None."""
    where = results.path(folder, job)
    failure = os.path.join(folder, job.id + ".error")
    if not os.path.exists(where):
        if not os.path.exists(failure):
            return "missing"
        with open(failure, "rb") as opened:
            return "failed: " + opened.read().strip()
    try:
        _, mark = results.opened(where)
    except results.Damaged as error:
        return "damaged: %s" % error
    if (mark.get("id"), mark.get("job")) != (job.id, job.digest):
        return "of another text of the job"
    if begun and mark.get("fingerprint") != begun:
        return "of another fingerprint"
    for name, digest in sorted(mark["inputs"].items()):
        other, before = read.setdefault(name, (digest, job.id))
        if other != digest:
            return "%s had other contents than for %s" % (
                name.encode("utf-8"), before)
    return None


def _tar(path, folder, todo):
    def write(opened):
        with tarfile.open(fileobj=opened, mode="w",
                          format=tarfile.USTAR_FORMAT) as archive:
            for job in todo:
                contents, _ = results.opened(results.path(folder, job))
                entry = tarfile.TarInfo(
                    os.path.basename(results.path(folder, job)))
                entry.size = len(contents)
                archive.addfile(entry, io.BytesIO(contents))
    write_whole(path, write)


def _coefficients(path, folder, todo):
    def write(opened):
        shape = None
        for job in todo:
            if jobs.is_picture(job):
                raise ValueError("%s: %s is a picture; .f32 holds sets"
                                 % (path, job.id))
            sh, _ = files.parsed(results.opened(
                results.path(folder, job))[0])
            sets = channels(sh)
            size = len(sets), sets[0].GetNumCoefficients()
            shape = shape or size
            if size != shape:
                raise ValueError(
                    "%s: %s has %d x %d coefficients, those before it %d x "
                    "%d; .f32 holds sets of one size"
                    % ((path, job.id) + size + shape))
            for each in sets:
                opened.write(str(each.GetAsBuffer()))
    write_whole(path, write)


def _picture(path, folder, todo):
    last = [job.steps[-1] for job in todo]
    number = last[0][1].slices if jobs.is_picture(todo[0]) else 0
    if (not all(jobs.is_picture(job) for job in todo)
            or sorted((options.slices, options.slice) for _, options in last)
            != [(number, index) for index in range(number * number)]):
        raise ValueError("%s: the jobs are not all slices of one picture, "
                         "each once" % path)
    pixels = width = None
    for job, (_, options) in zip(todo, last):
        across, down, planes = read_image(results.path(folder, job), True)
        if pixels is None:
            width, height = across * number, down * number
            pixels = bytearray(3 * width * height)
        if (across * number, down * number) != (width, height):
            raise ValueError("%s: %s is of another size than the slices "
                             "before it" % (path, job.id))
        rows = bytearray(3 * across * down)
        for channel, plane in enumerate(planes):
            rows[channel::3] = bytearray(array.array("B", [
                int(255 * value + 0.5) for value in plane]))
        at = 3 * (options.slice // number * down * width
                  + options.slice % number * across)
        for row in range(down):
            pixels[at + 3 * row * width:at + 3 * (row * width + across)] = \
                rows[3 * row * across:3 * (row + 1) * across]
    write_whole(path, png.packed(width, height, pixels, 3))


_WRITERS = {".tar": _tar, ".f32": _coefficients, ".png": _picture}
