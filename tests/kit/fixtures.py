"""What the package's tests share: refusals, empty folders, captured output, little memory."""

import contextlib
import os
import shutil
import StringIO
import sys
import tempfile
import unittest

try:
    import resource
except ImportError:
    resource = None  # not on Windows


class KitTest(unittest.TestCase):
    def refuses(self, error, words, function, *arguments, **more):
        """Expects an error with these pieces in its message, parted by |; ^ is its beginning."""
        try:
            result = function(*arguments, **more)
        except error as caught:
            for word in words.split("|"):
                self.assertIn(word, "^" + str(caught))
        else:
            self.fail("%s: gave %r" % (words, result))

    def replace(self, owner, name, value):
        """Gives an attribute of a module or class another value until the test ends."""
        self.addCleanup(setattr, owner, name, getattr(owner, name))
        setattr(owner, name, value)

    def assert_near(self, found, expected, tolerance, name=None):
        """Compares numbers one by one."""
        self.assertEqual(len(found), len(expected), name)
        for one, other in zip(found, expected):
            self.assertTrue(abs(one - other) <= tolerance, (name, found, expected))


class FolderTest(KitTest):
    """Each test in an empty folder, which is entered."""

    def setUp(self):
        self.folder, here = tempfile.mkdtemp(), os.getcwd()
        self.addCleanup(shutil.rmtree, self.folder)
        self.addCleanup(os.chdir, here)
        os.chdir(self.folder)

    def write(self, name, contents):
        with open(name, "wb") as opened:
            opened.write(contents)

    def read(self, name):
        with open(name, "rb") as opened:
            return opened.read()

    def count_refusals(self, path, texts, load):
        """How many of these contents are refused, always by a ValueError with the path."""
        refused = 0
        for text in texts:
            self.write(path, text)
            try:
                load(path)
            except ValueError as error:
                self.assertTrue(str(error).startswith(path + ": "), error)
                refused += 1
            # Some file systems wait for the disk where a file is written over.
            os.remove(path)
        return refused


def damaged(contents, numbers, pieces):
    """The bytes with pieces put in at one to four places, half of them near the beginning; at each
    up to nine bytes go."""
    result = bytearray(contents)
    for _ in range(numbers.randint(1, 4)):
        at = numbers.randrange(min(len(result), numbers.choice((90, 1 << 30))))
        result[at:at + numbers.choice((0, 1, 1, 9))] = numbers.choice(pieces)
    return bytes(result)


@contextlib.contextmanager
def captured():
    """What is written to stdout and stderr, as a pair of streams."""
    streams = StringIO.StringIO(), StringIO.StringIO()
    before = sys.stdout, sys.stderr
    sys.stdout, sys.stderr = streams
    try:
        yield streams
    finally:
        sys.stdout, sys.stderr = before


class LimitedMemory(object):
    """Lets the process ask for no more than this many bytes beyond what it has."""

    def __init__(self, more):
        self.more = more

    def __enter__(self):
        """Whether that can be done here."""
        self.before = None
        if resource and os.path.exists("/proc/self/statm"):
            with open("/proc/self/statm") as statm:
                has = int(statm.read().split()[0]) * resource.getpagesize()
            # A sanitizer has reserved more than there is.
            if has < 1 << 40:
                self.before = resource.getrlimit(resource.RLIMIT_AS)
                resource.setrlimit(resource.RLIMIT_AS, (has + self.more, self.before[1]))
        return self.before is not None

    def __exit__(self, *_):
        if self.before:
            resource.setrlimit(resource.RLIMIT_AS, self.before)
