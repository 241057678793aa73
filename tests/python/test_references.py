"""Reference counts: no call, successful or not, leaves one behind or takes one too many."""

import mmap
import sys
import unittest

import _Orvane

from support import HOST, METHODS, OBJECT_ALLOCATION, WorldTest, filled_set, host_totals

CALLS = 100  # well above what the loop itself may leave


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

    def test_refusals_of_operations(self):
        b, sh, data = self.world.builder, self.world.set, self.world.bytes
        fresh, untabled, hollow = _Orvane.SHBuilder(), _Orvane.SHBuilder(), filled_set(1)
        untabled.GenerateSphericalSamples(1, 1)
        untabled.GeneratePDFSamples(1, 1, 1)
        untabled.SetImageBuffer(2, 2)
        hollow.numBands = 46341
        closed = mmap.mmap(-1, 16)
        closed.close()
        inf, row = float("inf"), (1.0,) * 4
        for error, cases in {
                IndexError: [
                    (sh.GetCoefficient, 99), (sh.SetCoefficient, -1, 0.5),
                    (b.SHBasisFunc, 900, 1.0, 0.5)],
                RuntimeError: [
                    (fresh.GetValueAt, sh, 1.0, 0.5), (fresh.GetValueAtBand, sh, 1.0, 0.5, 1),
                    (fresh.SHBasisFunc, 0, 1.0, 0.5), (fresh.GenerateImporanceIntegralMipMaps,),
                    (fresh.RenderSHToImageBuffer, sh, 1.0, 0, 1, 0),
                    (untabled.RenderSHToImageBuffer, sh, 1.0, 0, 1, 0), (fresh.OffsetSH, sh, 1.0),
                    (untabled.CreateLatitudeSH, 2), (untabled.CreateLongtitudeSH, 2),
                    (fresh.CreateConstantSH, 1.0, 2), (untabled.CreateGaussSH, 2, 1.0, 1.0, 1.0),
                    (untabled.CreateImportanceSampledGaussSH, 1.0, 1.0, 1.0),
                    (untabled.CreateSHFromImageBuffer, 4, 4, 2, data),
                    (fresh.LatitudeProjectionFunc, 1.0, 1.0),
                    (fresh.LongtitudeProjectionFunc, 1.0, 1.0)],
                TypeError: [
                    (b.AddSH, sh, None), (b.SubtractSH, None, sh), (b.AddScaledSH, sh, None, 1.0),
                    (b.SubtractScaledSH, None, sh, 1.0), (b.ScaleSH, None, 1.0),
                    (b.OffsetSH, None, 1.0), (b.LerpSH, sh, sh, None, 0.5),
                    (b.CopyScaleAndSubtractSH, sh, None, 1.0, sh), (b.CreateSHFromBuffer, data, 3),
                    (b.ExtendSHFromBuffer, sh, data, 2, 3),
                    (b.CreateSHFromImageBuffer, 4, 3, 2, data), (b.RotateSH, sh, (row,) * 3),
                    (b.RotateSH, sh, (row, row, 1.0, row)), (b.RotateSH, sh, (row[:3],) * 4),
                    (b.RotateSH, sh, (row, row, (1.0, 0.0, 0, 0.0), row))],
                ValueError: [
                    (sh.SetNumBands, -1), (b.GetValueAt, sh, inf, 0.5),
                    (b.GetValueAt, sh, 1.0, 9.0), (b.GetValueAtBand, sh, 1.0, 0.5, 3),
                    (b.SHBasisFunc, 3, inf, 0.5), (b.RotateZ, hollow, 0.5),
                    (b.GenerateLookUpTables, 0), (b.GenerateSphericalSamples, 1, 16385),
                    (b.GeneratePDFSamples, 1, 16385, 1), (b.GeneratePDFSamples, 1, 1, 2 ** 28),
                    (b.RenderSHToImageBuffer, sh, 1.0, 0, 0, 0),
                    (b.RenderSHToImageBuffer, sh, 1.0, 0, 1, 1), (b.SetImageBuffer, -1, 1),
                    (b.SetImageBuffer, 2 ** 16, 2 ** 15), (b.CreateLatitudeSH, 31),
                    (b.CreateLongtitudeSH, -1), (b.CreateConstantSH, 1.0, 46341),
                    (b.CreateGaussSH, 31, 1.0, 1.0, 1.0),
                    (b.CreateImportanceSampledGaussSH, inf, 1.0, 1.0),
                    (b.CreateSHFromBuffer, "", 32768), (b.CreateSHFromBuffer, closed, 2),
                    (b.ExtendSHFromBuffer, sh, "", 0, 32768),
                    (b.ExtendSHFromBuffer, sh, closed, 0, 2),
                    (b.CreateSHFromImageBuffer, -4, -4, 2, data),
                    (b.CreateSHFromImageBuffer, 4, 4, 31, data),
                    (b.CreateSHFromImageBuffer, 0, 0, 2, ""),
                    (b.CreateSHFromImageBuffer, 4, 4, 2, closed),
                    (b.LatitudeProjectionFunc, 1.0, inf),
                    (b.LongtitudeProjectionFunc, inf, 1.0)]}.iteritems():
            for case in cases:
                self.check(case[0], list(case[1:]), error)

    def test_no_memory_for_the_new_set(self):
        for method in METHODS:
            if method.style == "tuple" and method.result == "SH":
                self.check(self.world.bound(method), self.world.calls[method.name], MemoryError,
                           lambda: HOST.TeskFailAllocation(OBJECT_ALLOCATION, 1))


if __name__ == "__main__":
    unittest.main()
