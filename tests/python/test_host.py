"""What the host adds to the module: wrappers, types, attributes, numbers, tesk-run."""

import copy
import gc
import os
import pickle
import subprocess
import sys
import tempfile
import unittest
import weakref

import _Orvane

from support import HOST, MODULE_FOLDER, OrvaneTest, host_totals


LEAK = """import _Orvane, ctypes
ctypes.pythonapi.Py_IncRef(ctypes.py_object(_Orvane.SHBuilder()))
"""


class Float(object):
    """Has a float value, or raises."""

    def __init__(self, value):
        self.value = value

    def __float__(self):
        if isinstance(self.value, Exception):
            raise self.value
        return self.value


class OldFloat:
    def __float__(self):
        return 2.5


class Long(long):
    pass


class HostTest(OrvaneTest):
    def setUp(self):
        OrvaneTest.setUp(self)
        self.builder = _Orvane.SHBuilder()
        self.sh = _Orvane.SphericalHarmonic()

    def tearDown(self):
        del self.builder, self.sh

    def expect(self, function, value, expected):
        """`expected` is a result, or an exception whose type and text have to match."""
        try:
            result = function(value)
        except Exception as error:
            result = error
        self.assertEqual((type(result), str(result)), (type(expected), str(expected)), repr(value))

    def test_one_wrapper_per_object_while_it_lives(self):
        other = _Orvane.SphericalHarmonic()
        self.assertIs(self.builder.AddSH(self.sh, other), self.sh)
        self.assertIs(self.builder.AddSH(other, self.sh), other)
        self.assertIsNot(_Orvane.SphericalHarmonic(), other)
        self.assertEqual(sys.getrefcount(self.builder.CopySH(other)), 1)

    def test_weak_references_and_garbage(self):
        told, before = [], host_totals()
        sh = _Orvane.SphericalHarmonic()
        reference = weakref.ref(sh, told.append)
        self.assertIs(reference(), sh)
        circle = [sh]
        circle.append(circle)
        del sh, circle
        gc.collect()
        self.assertEqual(told, [reference])
        self.assertIs(reference(), None)
        self.assertEqual(host_totals(), before)

    def test_types_take_no_arguments_in_any_way(self):
        for cls in (_Orvane.SphericalHarmonic, _Orvane.SHBuilder):
            self.expect(lambda value: cls(value=value), 1,
                        TypeError("%s() takes no arguments" % cls.__name__))
            self.assertRaises(TypeError, object.__new__, cls)

    def test_copies_are_empty_and_old_pickles_refused(self):
        self.sh.SetNumBands(2)
        self.builder.GenerateLookUpTables(8)
        for original, field in ((self.sh, "numBands"), (self.builder, "numSteps")):
            self.assertNotEqual(getattr(original, field), 0)
            for duplicate in (copy.copy(original), copy.deepcopy(original),
                              pickle.loads(pickle.dumps(original, 2))):
                self.assertIs(type(duplicate), type(original))
                self.assertEqual(getattr(duplicate, field), 0)
            for protocol in (0, 1):
                self.assertRaises(TypeError, pickle.dumps, original, protocol)

    def test_numbers(self):
        signed = OverflowError("Argument 0 is out of the range -2147483648 to 2147483647.")
        unsigned = OverflowError("Argument 0 is out of the range 0 to 4294967295.")
        mismatch = TypeError("Could not match argument 0 to expected type: int.")
        self.sh.SetNumBands(1)

        def attribute(value):
            self.sh.numBands = value
            return self.sh.numBands

        def seed(value):
            self.builder.GenerateSphericalSamples(value, 1)

        def single(value):
            self.sh.SetCoefficient(0, value)
            return self.sh.GetCoefficient(0)

        def double(value):  # the density at 0 of a curve around 0 is 1 / (deviation sqrt(2 pi))
            return self.builder.GetGaussDensity(value, value, 1)

        signed_seed, peak = self.builder.SetRandomSeed, double(0.0)
        for function, value, expected in [
                (attribute, 7, 7), (attribute, 2 ** 31 - 1, int(2 ** 31 - 1)),
                (attribute, -2 ** 31, int(-2 ** 31)), (attribute, Long(3), 3), (attribute, True, 1),
                (attribute, 2 ** 31, signed), (attribute, -10 ** 40, signed),
                (attribute, 1.0, mismatch), (attribute, "1", mismatch), (attribute, None, mismatch),
                (signed_seed, -2 ** 31, None), (signed_seed, 2 ** 31 - 1, None),
                (signed_seed, Long(5), None), (signed_seed, False, None),
                (signed_seed, -2 ** 31 - 1, signed), (signed_seed, 2 ** 64, signed),
                (seed, 0, None), (seed, 2 ** 32 - 1, None), (seed, -1, unsigned),
                (seed, 2 ** 32, unsigned),
                (single, 0.1, 0.10000000149011612), (single, 1e308, float("inf")),
                (single, 3L, 3.0),
                (double, 1, peak), (double, True, peak), (double, 10 ** 30, peak),
                (double, -2.5, peak), (double, Float(2.5), peak), (double, OldFloat(), peak),
                (double, Float(KeyError("mine")), KeyError("mine")),
                (double, Float("text"), TypeError("nb_float should return float object")),
                (double, 10 ** 400, OverflowError("long int too large to convert to float"))]:
            self.expect(function, value, expected)
        self.assertEqual(self.sh.numBands, 1)  # what failed changed nothing
        self.assertEqual(self.sh.GetNumCoefficients(), 1)
        for name in ("angleName", "numSteps", "maxBands", "maxCoefficients"):
            self.assertRaises(AttributeError, setattr, self.builder, name, 1)


class TeskRunTest(unittest.TestCase):
    RUNNER = os.path.join(MODULE_FOLDER, os.pardir, "bin", "tesk-run")

    def run_host(self, *arguments):
        """Its status, output and error output."""
        process = subprocess.Popen((self.RUNNER,) + arguments, universal_newlines=True,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   env=dict(os.environ, PATH="") if os.name == "posix" else None)
        output, errors = process.communicate()
        return process.returncode, output, errors

    def run_script(self, text, *arguments):
        number, name = tempfile.mkstemp(suffix=".py")
        self.addCleanup(os.remove, name)
        with os.fdopen(number, "w") as script:
            script.write(text)
        return self.run_host(name, *arguments)

    def test_status(self):
        for text, expected in [
                ("", 0),
                ("import sys; sys.exit()", 0),
                ("import sys; sys.exit(7)", 7),
                ("import sys; sys.exit('no')", 1),
                ("import _Orvane, sys; sys.exit(_Orvane.SHBuilder())", 1),
                ("raise ValueError(1)", 1),
                ("syntax error", 1),
                # Cycles and what is used at exit are no leak.
                ("import _Orvane, atexit\n"
                 "circle = [_Orvane.SphericalHarmonic()]\n"
                 "circle.append(circle)\n"
                 "atexit.register(lambda: circle[0].Clean())\n", 0),
                # A reference too many is one, and so is an assertion.
                (LEAK, 1), (LEAK + "import sys; sys.exit()", 1), (LEAK + "exit(5)", 5),
                ("import ctypes\n"
                 "text = ctypes.pythonapi.Py_GetVersion\n"
                 "text.restype = ctypes.c_void_p\n"
                 "fail = ctypes.CDLL(%r)._ZN15VEXAssertHelper6HandleEPKcS1_i\n"
                 "fail(None, *[ctypes.c_void_p(text())] * 2 + [7])\n" % HOST._name, 1)]:
            status, _, errors = self.run_script(text)
            self.assertEqual(status, expected, text + errors)
            self.assertIn("%stotal: %d live objects" % (
                "\n" if "import _Orvane" in text else "", LEAK in text), errors)

    def test_no_script(self):
        for arguments, text in ((), "usage: "), (("/no such file",), "No such file"):
            status, _, errors = self.run_host(*arguments)
            self.assertEqual((status, text in errors), (2, True), errors)

    def test_script_surroundings(self):
        """The script's folder comes first, then the module's; no text has an owner too many."""
        status, output, errors = self.run_script(
            "import os, sys, _Orvane\n"
            "print sys.getrefcount(sys.path[1])  # list, importers' cache, call\n"
            "print __name__, sys.argv == [__file__, 'a', 'b'], os.path.exists(sys.executable)\n"
            "print [os.path.realpath(path) for path in sys.path[:2]] == map(\n"
            "    os.path.realpath, map(os.path.dirname, (__file__, _Orvane.__file__)))\n"
            "import atexit\n"
            "def count():\n"
            "    print sys.getrefcount(__file__)\n"
            "atexit.register(count)\n", "a", "b")
        self.assertEqual((status, output), (0, "3\n__main__ True True\nTrue\n2\n"), errors)


if __name__ == "__main__":
    unittest.main()
