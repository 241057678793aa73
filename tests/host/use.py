"""Uses every part of the module, and leaves objects, views and references that live on."""

import weakref

import _Orvane

X_AND_Y_SWAPPED = ((0.0, 1.0, 0.0, 0.0), (1.0, 0.0, 0.0, 0.0), (0.0, 0.0, 1.0, 0.0), 4 * (0.0,))


def use(builder):
    builder.GenerateLookUpTables(16)
    builder.GenerateSphericalSamples(1, 4)
    builder.GeneratePDFSamples(1, 4, 9)
    made = builder.RotateSH(builder.CreateGaussSH(30, 0.5, 1.0, 2.0), X_AND_Y_SWAPPED)
    builder.SetImageBuffer(8, 4)
    builder.RenderSHToImageBuffer(made, 9.0, 99, 1, 0)
    return [str(builder.RotateZ(made, 1.0).GetAsBuffer()), str(builder.GetImageBuffer()),
            builder.SHBasisFunc(7, 1.0, 1.0)]


builder, sh = _Orvane.SHBuilder(), _Orvane.SphericalHarmonic()
before = use(builder)
sh.SetNumBands(3)
views = [sh.GetAsBuffer(), builder.GetImageBuffer()]
told = []
references = [weakref.ref(sh, told.append)]
circle = [builder, sh, views]
circle.append(circle)
