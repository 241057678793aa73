"""Pictures: whatever a builder has rendered before, it renders as a new one does."""

import unittest

import _Orvane

from support import OrvaneTest, filled_set


class PicturesTest(OrvaneTest):
    # Steps, width, height, bands, slices per side, slice; each line changes something.
    RENDERS = [(256, 64, 32, 5, 1, 0), (256, 64, 32, 5, 1, 0),
               (256, 64, 32, 12, 1, 0), (256, 32, 32, 12, 1, 0),
               (256, 32, 64, 12, 1, 0), (100, 32, 64, 12, 1, 0),
               (100, 100, 64, 12, 1, 0), (100, 100, 64, 12, 2, 3),
               (256, 100, 64, 12, 2, 3), (256, 128, 64, 12, 2, 3),
               (256, 128, 64, 12, 4, 1), (256, 128, 64, 2, 4, 1),
               (256, 128, 64, 2, 1, 0), (256, 33, 5, 2, 1, 0),
               (256, 64, 32, 5, 1, 0)]

    def test_a_used_builder_renders_as_a_new_one(self):
        kept = _Orvane.SHBuilder()
        for steps, width, height, bands, slices, index in self.RENDERS:
            pictures = []
            for builder in kept, _Orvane.SHBuilder():
                if builder.numSteps != steps:
                    builder.GenerateLookUpTables(steps)
                builder.SetImageBuffer(width, height)
                builder.RenderSHToImageBuffer(
                    filled_set(bands, -20.0), 1.5, 128, slices, index)
                pictures.append(str(builder.GetImageBuffer()))
            self.assertEqual(pictures[0], pictures[1])
            self.assertGreater(len(set(pictures[0])), 10)


if __name__ == "__main__":
    unittest.main()
