"""Nanoseconds per call of the module's methods beside minimal C functions that parse the same
arguments and return the same kind of result. Python 2.7.

usage: measure.py DIRECTORY_OF_THE_MODULES
"""

import gc
import itertools
import sys
import time

sys.path.insert(0, sys.argv[1])

import _Orvane
import minimal

CALLS = 200000
REPETITIONS = 25

builder = _Orvane.SHBuilder()
target = _Orvane.SphericalHarmonic()  # 0 bands: the operation itself costs nothing
source = _Orvane.SphericalHarmonic()

# name, aim, arguments, method, minimal function
ROWS = [
    ("no argument: `GetNumCoefficients()`", 1.5, "()",
     target.GetNumCoefficients, minimal.NoArgument),
    ("one int: `SetRandomSeed(1)`", 1.5, "(1)",
     builder.SetRandomSeed, minimal.OneInt),
    ("set + set: `AddSH(target, source)`", 2.5, "(target, source)",
     builder.AddSH, minimal.TwoObjects),
    ("set + 2 floats: `GetValueAt(target, 0.5, 1.0)`", 2.5, "(target, 0.5, 1.0)",
     builder.GetValueAt, minimal.ObjectAndAngles),
]


LOOP = """
def loop(numbers, call, target, source):
    start = clock()
    for _ in numbers:
        %s
    return clock() - start
"""


def make_loop(statement):
    names = {"clock": time.clock}  # processor time
    exec(LOOP % statement, names)
    return names["loop"]


def median(values):
    return sorted(values)[len(values) // 2]


def measure(variants):
    """Median nanoseconds of one pass of each (statement, function), measured in turn."""
    loops = [(make_loop(statement), function) for statement, function in variants]
    times = [[] for _ in loops]
    for _ in range(REPETITIONS):
        for (loop, function), taken in zip(loops, times):
            seconds = loop(itertools.repeat(None, CALLS), function, target, source)
            taken.append(seconds * 1e9 / CALLS)
    return [median(taken) for taken in times]


def main():
    gc.disable()
    print("Python %s: nanoseconds per pass of the loop, median of %d loops of %d passes.\n"
          % (sys.version.split()[0], REPETITIONS, CALLS))
    print("| call | empty loop | minimal function | method | ratio | aim | ratio without loop |")
    print("|---|---:|---:|---:|---:|---:|---:|")
    for name, aim, arguments, method, minimum in ROWS:
        empty, least, shipped = measure([("pass", None), ("call" + arguments, minimum),
                                         ("call" + arguments, method)])
        print("| %s | %.1f | %.1f | %.1f | %.2f | \xe2\x89\xa4 %.1f | %.2f |"
              % (name, empty, least, shipped, shipped / least, aim,
                 (shipped - empty) / (least - empty)))


if __name__ == "__main__":
    main()
