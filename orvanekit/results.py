"""Results of jobs: files that say what they are of and whether they are whole.

A result is a set file as `save` writes it or a PNG picture. Its mark is an
object of JSON: in the notes of the set, under "batch", or in the picture's
comment. It holds the job's id and digest, the digests of the files that it
read, the machine's fingerprint, and a checksum: the hash of the whole file
with zeros in the checksum's own place.
"""

import hashlib
import json
import os
import re

from . import files, png
from .jobs import is_picture

_ZEROS = 64 * "0"
_NOTES = re.compile(r'^ "notes": (.*),$', re.M)


class Damaged(ValueError):
    """A result that is not what its checksum says."""


def path(folder, job):
    """Where the result of a job belongs."""
    return os.path.join(folder, job.id + (
        ".png" if is_picture(job) else ".json"))


def sealed(made, mark):
    """The bytes of a result.

    made: a set, a tuple of three, or the bytes of a PNG file
    mark: a dictionary, without a checksum
    """
    def written(checksum):
        whole = dict(mark, checksum=checksum)
        if isinstance(made, str):
            return png.with_text(made, json.dumps(whole, sort_keys=True))
        return files.encoded(made, {"batch": whole})
    return written(hashlib.sha256(written(_ZEROS)).hexdigest())


def opened(where):
    """Read a result and check that it is whole.

    where: the file

    Returns (contents, mark): the bytes of the file, and its mark
    Raises Damaged; IOError
    """
    with open(where, "rb") as file_:
        contents = file_.read()
    try:
        if where.endswith(".png"):
            plain, text = png.without_text(contents)
            mark = json.loads(text)
            blank = png.with_text(plain, _blank(text, mark))
        else:
            text = _NOTES.search(contents).group(1)
            mark = json.loads(text)["batch"]
            blank = _blank(contents, mark)
    except (AttributeError, LookupError, TypeError, ValueError):
        raise Damaged("no result of a job")
    if hashlib.sha256(blank).hexdigest() != mark["checksum"]:
        raise Damaged("its checksum does not fit")
    return contents, mark


def _blank(text, mark):
    return text.replace(mark["checksum"].encode("ascii"), _ZEROS, 1)
