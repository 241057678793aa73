"""Reference counts: no call, successful or not, leaves one behind or takes one too many. What the
operations refuse is called as often by test_limits.py."""

import sys
import unittest

import _Orvane

from support import HOST, METHODS, OBJECT_ALLOCATION, WorldTest, host_totals

CALLS = 40  # well above what the loop itself may leave


class Unconvertible(object):
    def __float__(self):
        raise ValueError("no value")

    __int__ = __float__


class ReferenceTest(WorldTest):
    def check(self, call, arguments, error=None, before_call=None):
        """Calls a method often; `error` tells what it must raise each time."""
        watched = arguments + [call.__self__, None, _Orvane.SphericalHarmonic, _Orvane.SHBuilder,
                               buffer, error]
        raised = 0
        counts, totals = map(sys.getrefcount, watched), host_totals()
        for _ in xrange(CALLS):
            if before_call:
                before_call()
            try:
                call(*arguments)
            except Exception as caught:
                raised += type(caught) is error
        caught = None
        sys.exc_clear()
        case = call.__name__, arguments
        for thing, before, after in zip(watched, counts, map(sys.getrefcount, watched)):
            # A few more or less belong to the loop and its exceptions.
            self.assertLess(abs(after - before), 10, (case, thing, before, after))
        self.assertEqual(host_totals(), totals, case)
        self.assertEqual(raised, CALLS if error else 0, case)

    def test_success(self):
        for method in METHODS:
            self.check(self.world.bound(method), self.world.calls[method.name])

    def test_refused_arguments(self):
        for method in METHODS:
            call, legal = self.world.bound(method), self.world.calls[method.name]
            if method.style == "direct":
                continue
            self.check(call, legal + [1], TypeError)
            if legal:
                self.check(call, legal[:-1], TypeError)
            for i, kind in enumerate(method.arguments):
                wrong = [(Ellipsis, TypeError)]
                if kind in ("float", "f", "d", "i"):
                    wrong.append((Unconvertible(), ValueError))
                if kind in ("int", "i"):
                    wrong.append((2 ** 70, OverflowError))
                for value, error in wrong:
                    self.check(call, legal[:i] + [value] + legal[i + 1:], error)

    def test_no_memory_for_the_new_set(self):
        for method in METHODS:
            if method.style == "tuple" and method.result == "SH":
                self.check(self.world.bound(method), self.world.calls[method.name], MemoryError,
                           lambda: HOST.TeskFailAllocation(OBJECT_ALLOCATION, 1))


if __name__ == "__main__":
    unittest.main()
