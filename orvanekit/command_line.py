"""python2.7 -m orvanekit COMMAND: reads the arguments, reports refusals.

Exit status 0; 1 where an input is refused, with one line on stderr that
begins with the file's name (a batch has one for each job); 2 for wrong
arguments; 130 after Ctrl-C.
"""

import argparse
import collections
import contextlib
import errno
import sys

PROGRAM = "python2.7 -m orvanekit"

# name: of the command; summary: a line; examples: lines without the
# program; arguments: a function that adds them to a parser; run: a function
# of the parsed arguments, which may return an exit status.
Command = collections.namedtuple(
    "Command", "name summary examples arguments run")


def main(commands, arguments):
    """Run one of the commands.

    commands: list of Command
    arguments: those of the program

    Returns the exit status
    """
    try:
        options = _parser(commands).parse_args(arguments)
        status = options.run(options)
        sys.stdout.flush()
    except KeyboardInterrupt:
        return 130
    except EnvironmentError as error:
        if error.errno == errno.EPIPE:
            return 1
        return _refuse("%s: %s" % (error.filename, error.strerror)
                       if error.filename else str(error))
    except ValueError as error:
        return _refuse(str(error))
    return status or 0


@contextlib.contextmanager
def about(path):
    """Let every refusal within begin with the file's name."""
    try:
        yield
    except ValueError as error:
        words = str(error)
        raise ValueError(words if words.startswith(path + ":")
                         else "%s: %s" % (path, words))
    except EnvironmentError as error:
        # Not that of a temporary one beside it.
        error.filename = path
        raise
    except MemoryError:
        raise ValueError("%s: not enough memory" % path)


def _refuse(words):
    sys.stderr.write(" ".join(words.split()) + "\n")
    return 1


def _parser(commands):
    parser = argparse.ArgumentParser(
        prog=PROGRAM, description="Works on sets of real spherical "
        "harmonics, kept in JSON files.")
    chosen = parser.add_subparsers(metavar="COMMAND")
    for command in commands:
        one = chosen.add_parser(
            command.name, help=command.summary, description=command.summary,
            formatter_class=argparse.RawDescriptionHelpFormatter,
            epilog="examples:\n" + "\n".join(
                "  %s %s %s" % (PROGRAM, command.name, line)
                for line in command.examples))
        command.arguments(one)
        one.set_defaults(run=command.run)
    return parser
