"""Reference counts: no call, successful or not, leaves one behind or takes one too many."""

import gc
import sys
import unittest

import _Orvane

from support import (HOST, METHODS, OBJECT_ALLOCATION, OrvaneTest, World, host_totals)

CALLS = 10000
CALLS_OF_SLOW_METHODS = 100
SLOW = ["GenerateImporanceIntegralMipMaps"]  # over a millisecond a call


class Unconvertible(object):
    def __float__(self):
        raise ValueError("no value")

    __int__ = __float__


class ReferenceTest(OrvaneTest):
    def setUp(self):
        OrvaneTest.setUp(self)
        self.world = World()
        self.addCleanup(self.__dict__.pop, "world")

    def check(self, method, arguments, error=None, before_call=None):
        """Calls the method often; `error` tells what it must raise each time."""
        call = self.world.bound(method)
        watched = arguments + [self.world.builder, self.world.set, None, _Orvane.SphericalHarmonic,
                               _Orvane.SHBuilder, buffer, TypeError]
        raised = 0
        counts, totals = map(sys.getrefcount, watched), host_totals()
        number = CALLS_OF_SLOW_METHODS if method.name in SLOW else CALLS
        for _ in xrange(number):
            if before_call:
                before_call()
            try:
                call(*arguments)
            except Exception as caught:
                raised += type(caught) is error
        caught = None
        sys.exc_clear()
        for thing, before, after in zip(watched, counts, map(sys.getrefcount, watched)):
            # A few more or less belong to the loop and its exceptions.
            self.assertLess(abs(after - before), 10, (method.name, thing, before, after))
        self.assertEqual(host_totals(), totals, method.name)
        self.assertEqual(raised, number if error else 0, method.name)

    def test_success(self):
        for method in METHODS:
            self.check(method, self.world.calls[method.name])

    def test_refused_arguments(self):
        for method in METHODS:
            legal = self.world.calls[method.name]
            if method.style == "direct":
                continue
            self.check(method, legal + [1], TypeError)
            for i, kind in enumerate(method.arguments):
                self.check(method, legal[:i] + [Ellipsis] + legal[i + 1:], TypeError)
                if kind in ("float", "i"):
                    self.check(method, legal[:i] + [Unconvertible()] + legal[i + 1:], ValueError)

    def test_refusals_of_operations(self):
        for name, arguments, error in (
                ("GetCoefficient", [99], IndexError), ("SetNumBands", [-1], ValueError),
                ("AddSH", [self.world.set, None], TypeError),
                ("CreateLatitudeSH", [31], ValueError),
                ("CreateSHFromBuffer", [self.world.bytes, 3], TypeError),
                ("CreateSHFromBuffer", ["", 32768], ValueError),
                ("CreateSHFromImageBuffer", [-4, -4, 2, self.world.bytes], ValueError),
                ("ExtendSHFromBuffer", [self.world.set, self.world.bytes, 2, 3], TypeError),
                ("RotateSH", [self.world.set, ((1.0,) * 4,) * 2 + (1, 2)], TypeError)):
            method = [m for m in METHODS if m.name == name][0]
            self.check(method, arguments, error)

    def test_no_memory_for_the_new_set(self):
        for method in METHODS:
            if method.style == "tuple" and method.result == "SH":
                self.check(method, self.world.calls[method.name], MemoryError,
                           lambda: HOST.TeskFailAllocation(OBJECT_ALLOCATION, 1))


if __name__ == "__main__":
    unittest.main()
