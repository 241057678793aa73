"""Arguments that strike back: conversions that run Python code in the middle of a call, tuples with
holes, extreme numbers. Each call gives a result or an exception, and never more than that."""

import gc
import itertools
import unittest

import _Orvane

from support import World, WorldTest, arguments_of, filled_set


class Trap(object):
    """A number that acts when it is converted."""

    def __init__(self, action, value=1):
        self.action, self.value = action, value

    def __float__(self):
        self.action()
        return float(self.value)

    def __int__(self):
        self.action()
        return int(self.value)


class Raising(Exception):
    pass


def raise_it():
    raise Raising("from within")


class TupleWithHoles(object):
    """Gives `items`, then itself, unfinished, to `use`, while tuple() is building it."""

    def __init__(self, length, items, use):
        self.length, self.items, self.use = length, list(items), use

    def __length_hint__(self):
        return self.length

    def __iter__(self):
        for item in self.items:
            yield item
        for candidate in gc.get_referrers(self.items[-1]):
            if type(candidate) is tuple and len(candidate) == self.length:
                self.use(candidate)
        for _ in range(len(self.items), self.length):
            yield None


NUMBERS = "float", "f", "d", "i"  # what is converted by Python code of the argument's own


class HostileTest(WorldTest):
    def test_every_conversion_may_change_everything(self):
        def havoc():
            world.set.SetNumBands(sizes.next())
            world.other.SetNumBands(1)
            world.builder.GenerateLookUpTables(3)
            world.builder.GenerateSphericalSamples(1, 1)
            world.builder.GeneratePDFSamples(1, 1, 1)
            world.builder.ClearImageBuffer()
            gc.collect()

        for method, i in arguments_of(*NUMBERS):
            world = World()
            sizes = itertools.cycle([0, 7])
            try:
                world.call(method, i, Trap(havoc, world.calls[method.name][i]))
            except (IndexError, RuntimeError, TypeError, ValueError):
                pass
            self.assertEqual(world.builder.numSteps, 3, method.name)

    def test_exceptions_of_a_conversion_stand(self):
        before = self.world.snapshot()
        for method, i in arguments_of(*NUMBERS):
            self.assert_raises(Raising, "from within", self.world.call, method, i, Trap(raise_it))
        self.assertEqual(self.world.snapshot(), before)

    def test_sizes_are_looked_up_after_the_conversion(self):
        world, b, sh = self.world, self.world.builder, self.world.set
        self.assertRaises(IndexError, sh.SetCoefficient, 3, Trap(lambda: sh.SetNumBands(1)))
        self.assertEqual(b.RotateZ(sh, Trap(lambda: sh.SetNumBands(3))).numBands, 3)
        self.assertRaises(RuntimeError, b.RenderSHToImageBuffer, sh, Trap(b.ClearImageBuffer), 0, 1,
                          0)
        data = bytearray(16)
        self.assertRaisesRegexp(TypeError, "^The buffer of 3 bytes doesn't match a float array",
                                b.CreateSHFromBuffer, data,
                                Trap(lambda: data.__delitem__(slice(13)), 2))
        data = bytearray(12)
        b.ExtendSHFromBuffer(sh, data, Trap(lambda: data.extend("\0" * 8), 2), 3)
        self.assertEqual(sh.GetNumCoefficients(), 9)
        world.other.SetNumBands(2)
        before = str(sh.GetAsBuffer())
        b.LerpSH(sh, sh, world.other, Trap(lambda: world.other.SetNumBands(1)))
        self.assertEqual(str(sh.GetAsBuffer()), before)

    def test_last_references_dropped_in_the_middle(self):
        held = [_Orvane.SHBuilder(), filled_set(2), filled_set(2)]
        drop = Trap(lambda: held.__delitem__(slice(None)), 2.0)
        result = held[0].AddScaledSH(held[1], held[2], drop)
        self.assertEqual([result.GetCoefficient(i) for i in range(4)], [3.0, 6.0, 9.0, 12.0])
        held[:] = [_Orvane.SHBuilder(), filled_set(2)]
        self.assertEqual(held[0].RotateZ(held[1], drop).numBands, 2)
        held[:] = [_Orvane.SHBuilder(), filled_set(2).GetAsBuffer()]
        self.assertEqual(held[0].CreateSHFromBuffer(held[1], drop).GetCoefficient(3), 4.0)

    def test_tuples_with_holes(self):
        world, seen = self.world, []

        def as_matrix(hole):
            self.assert_raises(TypeError, "matrix tuple should contain more tuples",
                               world.builder.RotateSH, world.set, hole)
            seen.append("matrix")

        def as_row(hole):
            self.assert_raises(TypeError, "inner matrix tuples should contain floats",
                               world.builder.RotateSH, world.set, (hole,) * 4)
            seen.append("row")

        def as_arguments(hole):
            for function in world.builder.AddSH, world.builder.RotateZ, world.builder.RotateSH:
                self.assert_raises(TypeError, "argument 1 is missing", apply, function, hole)
            seen.append("arguments")

        tuple(TupleWithHoles(4, [(1.0, 0.0, 0.0, 0.0)], as_matrix))
        tuple(TupleWithHoles(4, [123.25], as_row))
        tuple(TupleWithHoles(2, [world.set], as_arguments))
        self.assertEqual(set(seen), set(["matrix", "row", "arguments"]))

    def test_extreme_numbers_everywhere(self):
        floats = [float("nan"), float("inf"), -float("inf"), 5e-324, 1e308, -1e308, 2.0 ** 31, -0.0]
        ints = [-2 ** 31, 2 ** 31 - 1, -1, 0, 46341, 65536]
        for method, i in arguments_of("int", *NUMBERS):
            for extreme in ints if method.arguments[i] in ("int", "i") else floats:
                if method.name == "GenerateLookUpTables" and 0 < extreme < 2 ** 20:
                    continue  # legal, and half a gigabyte
                world = World()
                try:
                    world.call(method, i, extreme)
                except (IndexError, MemoryError, OverflowError, RuntimeError, TypeError,
                        ValueError):
                    pass
                if method.name != "SetNumBands":
                    self.assertGreaterEqual(world.set.GetNumCoefficients(), 4, method.name)


if __name__ == "__main__":
    unittest.main()
