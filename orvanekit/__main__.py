"""python2.7 -m orvanekit: the command line."""

import sys

from .command_line import main
from .commands import COMMANDS

if __name__ == "__main__":
    sys.exit(main(COMMANDS, sys.argv[1:]))
