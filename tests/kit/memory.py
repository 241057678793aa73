"""Little memory, to see who asks for much."""

import os

try:
    import resource
except ImportError:
    resource = None  # not on Windows


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
