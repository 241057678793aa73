"""A line on a terminal while something takes long."""

import sys
import threading
import time

_PATIENCE = 1.0  # seconds before anything is shown


class Progress(object):
    """Says what is being done, from a second on, on a terminal only.

    with Progress("fitting points.csv") as progress: ...; call it with the
    part that is done, 0 to 1, where that is known.
    """

    def __init__(self, words, stream=None, patience=_PATIENCE):
        self._words = words
        self._stream = stream or sys.stderr
        self._patience = patience
        self._part = None
        self._done = threading.Event()
        self._thread = None

    def __call__(self, part):
        self._part = part

    def __enter__(self):
        if self._stream.isatty():
            self._thread = threading.Thread(target=self._show)
            self._thread.daemon = True
            self._thread.start()
        return self

    def __exit__(self, *_):
        self._done.set()
        if self._thread:
            self._thread.join()

    def _show(self):
        start = time.time()
        shown = 0
        while not self._done.wait(self._patience):
            line = "%s: %d s" % (self._words, time.time() - start)
            if self._part is not None:
                line += ", %d %%" % (100 * self._part)
            self._stream.write("\r" + line.ljust(shown))
            self._stream.flush()
            shown = len(line)
        if shown:
            self._stream.write("\r" + " " * shown + "\r")
            self._stream.flush()
