"""Compares the module with the golden vectors: results that every build of it has to reproduce.

Runs inside any host whose Python 2.7 can import _Orvane. Vectors in which no library function takes
part have to be equal to the bit; the others may differ by the tolerance that the vector states.

usage: compare_golden.py [VECTORS]
       compare_golden.py --write VECTORS     writes the results of the module at hand instead
"""

import os
import re
import struct
import sys

import _Orvane

VECTORS = os.path.join(os.path.dirname(os.path.abspath(__file__)),
                       "..", "tests", "golden", "vectors.txt")
TRAILING_ZEROS = re.compile(r"\.?0*p")


class Vector(object):
    """One recipe with the result that it has to give."""

    def __init__(self, block):
        self.recipe, result = block.split("\nresult ")
        lines = self.recipe.splitlines()
        self.name = lines[0]
        self.functions = lines[1].split()[1:]
        self.exact = self.functions == ["none"]
        self.tolerance = float(lines[2].split()[1])
        self.calls = [line.split() for line in lines[3:]]
        words = result.split()
        self.target, count, values = words[0], int(words[1]), words[2:]
        if self.target == "image":
            self.expected = list(bytearray.fromhex("".join(values)))
        else:
            self.expected = [float.fromhex(value) for value in values]
            self.expected += [0.0] * (count - len(values))

    def value_lines(self, values):
        """The lines that a result stands in."""
        if self.target == "image":
            for i in range(0, len(values), 48):
                yield "".join("%02x" % value for value in values[i:i + 48])
            return
        while values and bits(values[-1]) == bits(0.0):
            values = values[:-1]
        for i in range(0, len(values), 6):
            yield " ".join(TRAILING_ZEROS.sub("p", value.hex()) for value in values[i:i + 6])

    def run(self):
        """What the module at hand gives: coefficients, pixels or the methods' results."""
        builder = _Orvane.SHBuilder()
        sets = {}
        results = []
        for words in self.calls:
            new_set, method = (words[0], words[2]) if "=" in words else (None, words[0])
            arguments = words[3:] if new_set else words[1:]
            values = [sets[word] if word in sets else number(word) for word in arguments]
            result = getattr(builder, method)(*as_parameters(method, values))
            if new_set:
                sets[new_set] = result
            results.append(result)
        if self.target == "image":
            return list(bytearray(str(builder.GetImageBuffer())))
        if self.target == "results":
            return [result for result in results if isinstance(result, float)]
        chosen = sets[self.target]
        return [chosen.GetCoefficient(i) for i in range(chosen.GetNumCoefficients())]


def read_vectors(path):
    """The text before the first vector, and the vectors."""
    with open(path) as text:
        blocks = text.read().split("\nvector ")
    return blocks[0], [Vector(block) for block in blocks[1:]]


def write_vectors(path):
    """Puts the results of the module at hand into a file of vectors."""
    head, vectors = read_vectors(path)
    with open(path, "wb") as text:
        text.write(head)
        for vector in vectors:
            values = vector.run()
            text.write("\nvector %s\nresult %s %d\n"
                       % (vector.recipe, vector.target, len(values)))
            text.writelines(line + "\n" for line in vector.value_lines(values))


def draws(seed, count):
    """Draws of the random generator: 0 to 32767."""
    state = seed
    for _ in range(count):
        state = (state * 214013 + 2531011) & 0xffffffff
        yield state >> 16 & 32767


def as_parameters(method, values):
    """The values of a recipe's line as the method takes them."""
    if method == "CreateSHFromBuffer":
        seed, bands = values
        floats = [(draw - 16384) / 16384.0 for draw in draws(seed, bands * bands)]
        return struct.pack("<%df" % len(floats), *floats), bands
    if method == "CreateSHFromImageBuffer":
        width, height, bands, seed = values
        pixels = bytearray(draw & 255 for draw in draws(seed, width * height))
        return width, height, bands, str(pixels)
    if method == "RotateSH":
        rows = [tuple(values[i:i + 3]) + (0.0,) for i in (1, 4, 7)]
        return values[0], tuple(rows) + ((0.0, 0.0, 0.0, 1.0),)
    return values


def number(word):
    try:
        return int(word)
    except ValueError:
        return float(word)


def bits(value):
    return struct.pack("<d", value)


def unit_in_last_place(value, number, integer):
    """From a finite value's magnitude to the next larger one, in the format that struct calls
    `number` and an integer of its size."""
    pattern, = struct.unpack(integer, struct.pack(number, abs(value)))
    larger, = struct.unpack(number, struct.pack(integer, pattern + 1))
    return larger - abs(value)


def compare(vector, actual):
    """(whether `actual` passes, what is to be said of it)"""
    expected = vector.expected
    if len(actual) != len(expected):
        return False, "%d values instead of %d" % (len(actual), len(expected))
    different = sum(bits(a) != bits(e) for a, e in zip(actual, expected))
    if not different:
        return True, "equal to the bit"
    greatest = max(abs(e) for e in expected)
    if vector.target == "image":
        unit = 1.0
    elif vector.target == "results":
        unit = unit_in_last_place(greatest, "<d", "<q")
    else:
        unit = unit_in_last_place(greatest, "<f", "<i")
    largest = max(abs(a - e) for a, e in zip(actual, expected)) / unit
    passes = not vector.exact and largest <= vector.tolerance
    return passes, "%d of %d differ, by at most %.3g %s (tolerance %g)" % (
        different, len(expected), largest,
        "grey levels" if vector.target == "image" else "units in the last place",
        vector.tolerance)


def main():
    if sys.argv[1:2] == ["--write"]:
        return write_vectors(sys.argv[2])
    failures = 0
    for vector in read_vectors(sys.argv[1] if len(sys.argv) > 1 else VECTORS)[1]:
        passes, verdict = compare(vector, vector.run())
        failures += not passes
        print "%-4s %-24s %-24s %s" % ("ok" if passes else "FAIL", vector.name,
                                       " ".join(vector.functions), verdict)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
