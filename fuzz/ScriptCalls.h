#pragma once

// The grammar of the script fuzzer: every method with the kinds of its arguments.
//
// s set, a azimuth or any angle, t polar angle, f any float, b band count, i index into the set,
// k index into the tables, n number of table steps, q samples per axis, g number of offsets, r
// seed, w image extent, o pixel offset, z slices per axis, x slice, m matrix; B, E and I stand for
// the whole argument lists of the three methods that take a buffer.

struct MethodCall {
    const char *name;
    const char *arguments;
    bool onSet = false;          ///< a method of SphericalHarmonic
    bool changesBuilder = false; ///< leaves other tables, samples or pixels behind
    bool rare = false;           ///< too costly to be called as often as the others
};

inline constexpr MethodCall methodCalls[] = {
    {"SetNumBands", "b", true},
    {"SetCoefficient", "if", true},
    {"GetCoefficient", "i", true},
    {"GetNumCoefficients", "", true},
    {"Clean", "", true},
    {"GetAsBuffer", "", true},
    {"GetValueAt", "sat"},
    {"GetValueAtBand", "satb"},
    {"CopySH", "s"},
    {"RotateSH", "sm"},
    {"RotateZ", "sa"},
    {"GetGaussDensity", "fff"},
    {"GenerateLookUpTables", "n", false, true, true},
    {"GenerateSphericalSamples", "rq", false, true},
    {"GeneratePDFSamples", "rqg", false, true},
    {"GenerateImporanceIntegralMipMaps", "", false, false, true},
    {"SHBasisFunc", "kat"},
    {"RenderSHToImageBuffer", "sfozx"},
    {"SetImageBuffer", "ww", false, true},
    {"ClearImageBuffer", "", false, true},
    {"GetImageBuffer", ""},
    {"AddSH", "ss"},
    {"AddScaledSH", "ssf"},
    {"SubtractSH", "ss"},
    {"SubtractScaledSH", "ssf"},
    {"ScaleSH", "sf"},
    {"OffsetSH", "sf"},
    {"LerpSH", "sssf"},
    {"CopyScaleAndSubtractSH", "ssfs"},
    {"CreateLatitudeSH", "b"},
    {"CreateLongtitudeSH", "b"},
    {"CreateConstantSH", "fb"},
    {"CreateGaussSH", "bftf"},
    {"CreateImportanceSampledGaussSH", "tff"},
    {"CreateSHFromBuffer", "B"},
    {"ExtendSHFromBuffer", "E"},
    {"LatitudeProjectionFunc", "at"},
    {"LongtitudeProjectionFunc", "at"},
    {"GaussProjectionFunc", "aaf"},
    {"SetRandomSeed", "r"},
    {"CreateSHFromImageBuffer", "I"},
};

inline constexpr int methodCount = sizeof(methodCalls) / sizeof(methodCalls[0]);
static_assert(methodCount == 41);
