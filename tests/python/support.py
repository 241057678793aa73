"""What the test scripts share: the expected surface, the host's counters, a small world to play in.

surface.tsv holds the surface as the tests expect it, one line per class, attribute and method, in
order; SH stands for a coefficient set, a backslash and n for a line feed.
"""

import collections
import ctypes
import gc
import os
import sys
import unittest

import _Orvane

Attribute = collections.namedtuple("Attribute", "name code offset size flags doc")
Method = collections.namedtuple("Method", "owner name style result arguments doc")

MODULE_FOLDER = os.path.dirname(os.path.abspath(_Orvane.__file__))


def read_surface():
    """The classes' docstrings by name, the attributes by class name, and all methods."""
    docs, attributes, methods = {}, collections.defaultdict(list), []
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "surface.tsv")
    for line in open(path):
        fields = line.rstrip("\n").split("\t")
        doc = fields.pop().replace("\\n", "\n")
        kind, name = fields[:2]
        if kind == "class":
            owner = name
            docs[name] = doc
        elif kind == "attribute":
            attributes[owner].append(Attribute(name, *fields[2].split(), doc=doc))
        else:
            style, result, arguments = fields[2:]
            arguments = arguments.split() if style == "thunk" else list(arguments)
            methods.append(Method(owner, name, style, result, arguments, doc))
    return docs, attributes, methods


DOCS, ATTRIBUTES, METHODS = read_surface()


class Totals(ctypes.Structure):
    """The host's sums over all classes and tags."""

    _fields_ = [(name, ctypes.c_int64) for name in
                ("live_objects", "allocations", "bytes", "peak_bytes", "assertion_hits")]


HOST = ctypes.CDLL(os.path.join(
    MODULE_FOLDER, "tesk.dll" if os.name == "nt" else "libtesk.so"))
HOST.TeskReportTotals.restype = Totals
HOST.TeskFailAllocation.argtypes = [ctypes.c_int, ctypes.c_int64]
OBJECT_ALLOCATION = 1


def host_totals():
    totals = HOST.TeskReportTotals()
    return totals.live_objects, totals.allocations, totals.bytes, totals.assertion_hits


def filled_set(bands, first=1.0):
    """A set whose coefficient i is first + i."""
    sh = _Orvane.SphericalHarmonic()
    sh.SetNumBands(bands)
    for i in range(sh.GetNumCoefficients()):
        sh.SetCoefficient(i, first + i)
    return sh


IDENTITY = tuple(tuple(float(i == j) for j in range(4)) for i in range(4))


class World(object):
    """A builder with everything generated, two sets, and legal arguments for every method."""

    def __init__(self):
        self.builder = _Orvane.SHBuilder()
        self.builder.GenerateLookUpTables(16)
        self.builder.GenerateSphericalSamples(1, 2)
        self.builder.GeneratePDFSamples(1, 2, 3)
        self.builder.SetImageBuffer(8, 4)
        self.set = filled_set(2)
        self.other = filled_set(2, -3.5)
        self.bytes = str(self.other.GetAsBuffer())
        sets = [self.set, self.other]
        self.calls = {
            "SetNumBands": [2], "SetCoefficient": [3, 0.5], "GetCoefficient": [3],
            "GetNumCoefficients": [], "Clean": [], "GetAsBuffer": [],
            "GetValueAt": [self.set, 1.0, 0.5], "GetValueAtBand": [self.set, 1.0, 0.5, 1],
            "CopySH": [self.set], "RotateSH": [self.set, IDENTITY], "RotateZ": [self.set, 0.25],
            "GetGaussDensity": [1.0, 0.5, 2.0], "GenerateLookUpTables": [16],
            "GenerateSphericalSamples": [1, 2], "GeneratePDFSamples": [1, 2, 3],
            "GenerateImporanceIntegralMipMaps": [], "SHBasisFunc": [5, 1.0, 0.5],
            "RenderSHToImageBuffer": [self.set, 10.0, 128, 1, 0], "SetImageBuffer": [8, 4],
            "ClearImageBuffer": [], "GetImageBuffer": [], "AddSH": sets, "SubtractSH": sets,
            "AddScaledSH": sets + [0.5], "SubtractScaledSH": sets + [0.5],
            "ScaleSH": [self.set, 0.5], "OffsetSH": [self.set, 0.5],
            "LerpSH": [self.set, self.set, self.other, 0.5],
            "CopyScaleAndSubtractSH": [self.set, self.set, 2.0, self.other],
            "CreateLatitudeSH": [2], "CreateLongtitudeSH": [2], "CreateConstantSH": [1.0, 2],
            "CreateGaussSH": [2, 0.5, 1.0, 2.0], "CreateImportanceSampledGaussSH": [1.0, 2.0, 0.5],
            "CreateSHFromBuffer": [self.bytes, 2],
            "ExtendSHFromBuffer": [self.set, self.bytes[:12], 1, 2],
            "LatitudeProjectionFunc": [1.0, 0.5], "LongtitudeProjectionFunc": [1.0, 0.5],
            "GaussProjectionFunc": [1.0, 0.5, 2.0], "SetRandomSeed": [1],
            "CreateSHFromImageBuffer": [4, 4, 2, self.bytes],
        }

    def bound(self, method):
        owner = self.set if method.owner == "SphericalHarmonic" else self.builder
        return getattr(owner, method.name)

    def call(self, method, i, value):
        """Calls the method with legal arguments but for number i."""
        arguments = list(self.calls[method.name])
        arguments[i] = value
        return self.bound(method)(*arguments)

    def snapshot(self):
        """All that a refused call must leave as it was, as far as a script can see it."""
        b = self.builder
        return (self.set.numBands, str(self.set.GetAsBuffer()), str(self.other.GetAsBuffer()),
                b.angleName, b.numSteps, str(b.GetImageBuffer()), str(
                    b.CreateLatitudeSH(2).GetAsBuffer()))


OBJECTS = {"CreateSHFromBuffer": ["buffer"], "CreateSHFromImageBuffer": ["buffer"],
           "ExtendSHFromBuffer": ["set", "buffer"], "RotateSH": ["set", "matrix"]}


def kinds(method):
    """What each argument is; of format O a set, buffer or matrix."""
    objects = iter(OBJECTS.get(method.name, ["set"]))
    return [next(objects) if kind == "O" else kind for kind in method.arguments]


def arguments_of(*kinds):
    """Each argument of these kinds: its method and its index."""
    return [(method, i) for method in METHODS for i, kind in enumerate(method.arguments)
            if kind in kinds]


# What calls give out, or refuse with, whatever their arguments are.
WATCHED = [None, buffer, _Orvane.SphericalHarmonic, _Orvane.SHBuilder, IndexError, MemoryError,
           OverflowError, RuntimeError, TypeError, ValueError]


class OrvaneTest(unittest.TestCase):
    """Fails where a test leaves a host object behind or provokes an assertion of the host's."""

    def setUp(self):
        gc.collect()
        before = host_totals()

        def nothing_is_left():
            sys.exc_clear()
            gc.collect()
            self.assertEqual(host_totals(), before)

        self.addCleanup(nothing_is_left)

    def outcomes(self, function, *arguments):
        """What a function gives when it is called often: types of results, or types and texts of
        exceptions. No call may leave an object behind, or a reference, or take one too many."""
        watched = [function, getattr(function, "__self__", None)] + WATCHED + list(arguments)
        found, case = set(), (function, arguments)
        counts, totals = map(sys.getrefcount, watched), host_totals()
        for _ in xrange(20):
            try:
                result = type(function(*arguments))
            except Exception as error:
                result = type(error), str(error)
            found.add(result)
        result = error = None
        sys.exc_clear()
        for thing, before, after in zip(watched, counts, map(sys.getrefcount, watched)):
            # A few more or less belong to the loop and its exceptions.
            self.assertLess(abs(after - before), 10, (case, thing, before, after))
        self.assertEqual(host_totals(), totals, case)
        return found

    def assert_raises(self, error, text, function, *arguments):
        """Each time; `text` is the whole message, None leaves it to Python."""
        for found in self.outcomes(function, *arguments):
            self.assertEqual(found, (error, found[1] if text is None else text), arguments)


class WorldTest(OrvaneTest):
    """With a world to play in."""

    def setUp(self):
        OrvaneTest.setUp(self)
        self.world = World()
        self.addCleanup(self.__dict__.pop, "world")
