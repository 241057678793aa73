"""Prints what the functions of orvanekit cost, as a Markdown table.

usage: measure.py MODULE_FOLDER     the folder of _Orvane; run in the project's folder
"""

import math
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time

sys.path[:0] = [sys.argv[1], "."]

import orvanekit as kit

RUNS = 5


def measured(function):
    """The median of some runs, in milliseconds."""
    times = []
    for _ in range(RUNS):
        start = time.time()
        function()
        times.append(1e3 * (time.time() - start))
    return sorted(times)[RUNS // 2]


def random_set(numbers, bands):
    return kit.make_set([numbers.uniform(-1, 1) / (1 + l)
                         for l in range(bands) for _ in range(2 * l + 1)])


def disc(width, height):
    return [1.0 if (y + 0.5) * math.pi / height < 0.6 else 0.0
            for y in range(height) for _ in range(width)]


def jobs(folder):
    """(name, aim in ms, function)"""
    numbers = random.Random(1)
    a, b = random_set(numbers, 30), random_set(numbers, 30)
    large, small = disc(512, 256), disc(128, 64)
    ringing = kit.projected(large, 512, 256, 30)
    points = [(math.acos(numbers.uniform(-1, 1)), numbers.uniform(0, 2 * math.pi),
               numbers.uniform(-1, 1)) for _ in range(2000)]
    picture = [numbers.random() for _ in range(1024 * 512)]
    path = os.path.join(folder, "%s").__mod__
    kit.save(path("a.json"), a)
    kit.write_image(path("a.png"), 1024, 512, (picture, picture, picture))
    kit.write_image(path("a.hdr"), 1024, 512, (picture, picture, picture))
    module = os.path.abspath(sys.argv[1])
    environment = dict(os.environ, PYTHONPATH=os.pathsep.join([module, os.getcwd()]))

    def started(statement):
        return lambda: subprocess.check_call([sys.executable, "-c", statement], env=environment)

    yield "`projected` 512x256", 1000, lambda: kit.projected(large, 512, 256, 30)
    yield "`projected` 128x64", 100, lambda: kit.projected(small, 128, 64, 30)
    yield "`product`", 100, lambda: kit.product(a, b)
    yield "`extremes`", 30, lambda: kit.extremes(a)
    yield "`dering` of a disc", 300, lambda: kit.dering(ringing)
    yield "`fitted` 2,000 points, 10 bands", 500, lambda: kit.fitted(points, 10)
    yield "`fitted` 2,000 points, 20 bands", 4000, lambda: kit.fitted(points, 20)
    yield "`save`", 10, lambda: kit.save(path("b.json"), a)
    yield "`load`", 10, lambda: kit.load(path("a.json"))
    yield "`read_image` PNG 1024x512", 2000, lambda: kit.read_image(path("a.png"))
    yield "`read_image` HDR 1024x512", 2000, lambda: kit.read_image(path("a.hdr"))
    yield "`globe` 512", 1500, lambda: kit.globe(a, 512)
    yield "a process that does nothing", None, started("pass")
    yield "a process that imports the package (30 more)", None, started("import orvanekit")


def main():
    folder = tempfile.mkdtemp()
    try:
        print "|30 bands|ms|aim|\n|---|--:|--:|"
        for name, aim, function in jobs(folder):
            print "|%s|%.1f|%s|" % (name, measured(function), aim or "")
            sys.stdout.flush()
    finally:
        shutil.rmtree(folder)


if __name__ == "__main__":
    main()
