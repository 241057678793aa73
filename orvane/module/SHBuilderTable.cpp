#include "orvane/base/Bands.h"
#include "orvane/base/Limits.h"
#include "orvane/module/ClassTables.h"
#include "orvane/module/MethodFunctions.h"
#include "orvane/module/Text.h"
#include "orvane/module/Thunk.h"
#include "orvane/module/TupleEntry.h"

namespace orvane::binding {

namespace {

// Names and docstrings stay as scripts know them, `angleName` and every slip of spelling included.

constexpr AttributeRow attributes[] = {
    {"angleName", AttributeTypeDouble, offsetof(SHBuilder, tables.angleScale), AttributeReadable,
     "The angle scale for used converting phi and theta to lut lookup indices",
     "Table steps per radian; 0.0 before GenerateLookUpTables."},
    {"numSteps", AttributeTypeInt32, offsetof(SHBuilder, tables.numSteps), AttributeReadable,
     "The number of steps in the sin and cos LUT",
     "Steps in a full circle, as GenerateLookUpTables was given them; 0 before."},
    {"maxBands", AttributeTypeInt32, offsetof(SHBuilder, tables.maxBands), AttributeReadable,
     "The max number of bans supported",
     filledIn<"# from GenerateLookUpTables on; 0 before.", tableBands>},
    {"maxCoefficients", AttributeTypeInt32, offsetof(SHBuilder, tables.maxCoefficients),
     AttributeReadable, "The max number of coefficents supported",
     filledIn<"# from GenerateLookUpTables on; 0 before.", tableCoefficients>},
};

// Texts that several notes share.

constexpr ArgumentNote aSet{"sh", "the set"};
constexpr ArgumentNote target{"target", "the set that is changed"};
constexpr ArgumentNote source{"source", "the other set; may be the target"};
constexpr ArgumentNote azimuth{"phi", "azimuth in radians, any finite number"};
constexpr ArgumentNote polarAngle{"theta", "polar angle in radians, 0 to pi"};
constexpr ArgumentNote bandCount{"numBands", filledIn<"number of bands, 0 to #", tableBands>};
constexpr ArgumentNote samplesPerAxis{
    "sqrtNumSamples", filledIn<"samples per axis, up to #; none below 1", maxSamplesPerAxis>};

constexpr std::string_view newSet = "a new set";
constexpr std::string_view newWholeSet{filledIn<"a new set, always of # bands", tableBands>};
constexpr std::string_view theTarget = "the target: the same object that was passed in";

constexpr std::string_view evaluationErrors{
    filledIn<"RuntimeError before GenerateLookUpTables; ValueError where an angle is not finite, "
             "theta lies beyond the tables, or there are more terms than the set has coefficients "
             "or than #.",
             tableCoefficients>};
constexpr std::string_view projectionErrors =
    "RuntimeError where there are samples but no tables; ValueError for another number of bands; "
    "MemoryError.";
constexpr std::string_view projectionRemarks =
    "Projects the function over the samples of GenerateSphericalSamples; without any, every "
    "coefficient is NaN.";
constexpr std::string_view missingOperand = "TypeError where a set is None.";
constexpr std::string_view smallerSource =
    "Acts on as many coefficients as the source has. A source that is empty or has more than the "
    "target changes nothing.";
constexpr std::string_view equalOperands =
    "The target takes over the size of the operands and may be one of them. Operands with "
    "different numbers of coefficients change nothing.";
constexpr std::string_view resizeErrors{
    filledIn<"TypeError where a set is None; MemoryError, and ValueError where numBands of the "
             "first operand was written to be more than # (some such numbers pass).",
             maxSetBands>};
constexpr std::string_view foldedAngle =
    "RuntimeError before GenerateLookUpTables; ValueError where an angle that is folded is not "
    "finite.";

constexpr MethodRow methods[] = {
    {"GetValueAt",
     Tuple<"Odd", &SHBuilder::GetValueAt>(),
     "Get the value of a spherical harmonic at a spherical coordinate (phi, theta)",
     {.what = "Evaluates a set at one point.",
      .arguments = {{aSet, azimuth, polarAngle}},
      .result = "the sum over the bands that numBands tells",
      .errors = evaluationErrors,
      .remarks = "Angles are cut down to steps of the tables, not interpolated. A set without "
                 "bands is 0.0 everywhere and needs no tables."}},

    {"GetValueAtBand",
     Tuple<"Oddi", &SHBuilder::GetValueAtBand>(),
     "Get the value of a spherical harmonic at a spherical coordinate (phi, theta, band)",
     {.what = "Evaluates the first bands of a set at one point.",
      .arguments = {{aSet, azimuth, polarAngle, {"band", "number of bands to add up"}}},
      .result = "the sum of the first band * band terms",
      .errors = evaluationErrors,
      .remarks = "All bands below band are added up: it is not the value of one band. A negative "
                 "number counts like the positive one."}},

    {"CopySH",
     TupleNewSet<"O", &CopyInto>(),
     "Copy a spherical harmonic",
     {.what = "Copies a set.", .arguments = {{aSet}}, .result = newSet, .errors = "MemoryError."}},

    {"RotateSH",
     TupleNewSet<"OO", &RotateInto>(),
     "Rotate using an Ivanic based rotation matrics. Uses a 4x4 matrix as input\n"
     "Return:\n"
     " returns new rotated spherical harmonic\n"
     "Argumets:\n"
     " shIn - spherical harmonic to rotate\n"
     " matrix - 4x4 matix as a 4x4 float tuples",
     {.what = "Rotates a copy of a set by a matrix.",
      .arguments = {{{"shIn", "the set to rotate"},
                     {"matrix", "a tuple of 4 tuples of 4 floats (no integers); its upper left 3x3 "
                                "part is the rotation"}}},
      .result = newWholeSet,
      .errors = "TypeError for anything but a tuple of tuples of floats; MemoryError.",
      .remarks = filledIn<
          "The rows of the matrix are x, y, z, which band 1 holds as coefficients 3, 1, 2. "
          "A row vector is multiplied by the matrix from the right: the matrix ((cos a, "
          "-sin a, 0), (sin a, cos a, 0), (0, 0, 1)) does what RotateZ(shIn, a) does. "
          "Whether the matrix is a rotation is not checked. Bands that the set lacks, and "
          "those beyond #, come out as 0.0. The fourth row and column are ignored.",
          tableBands>}},

    {"RotateZ",
     TupleNewSet<"Of", &RotateZInto>(),
     "Rotate spherical harmonic about the Z axis\n"
     "Return:\n"
     " returns new rotated spherical harmonic\n"
     "Argumets:\n"
     " shIn - spherical harmonic to rotate\n"
     " angle - angle in radians to rotage SH",
     {.what = "Rotates a copy of a set about the polar axis.",
      .arguments = {{{"shIn", "the set to rotate"}, {"angle", "in radians, single precision"}}},
      .result = "a new set with the bands of shIn",
      .errors = filledIn<"MemoryError, and ValueError where numBands was written to be more than "
                         "# (some such numbers pass).",
                         maxSetBands>,
      .remarks =
          filledIn<"The result at azimuth phi has the value of shIn at phi + angle: the pattern "
                   "moves towards smaller azimuths. The polar axis stays. Bands beyond # "
                   "come out as 0.0.",
                   tableBands>}},

    {"GetGaussDensity",
     Thunk<&SHBuilder::GetGaussDensity>(),
     "(x, mean, stdDev)",
     {.what = "Evaluates the density of the normal distribution.",
      .arguments = {{{"x", "where"},
                     {"mean", "the mean"},
                     {"stdDev", "the standard deviation; used as given, negative too"}}},
      .result = "exp(-(x - mean)^2 / (2 stdDev^2)) / (stdDev sqrt(2 pi)), NaN where stdDev is 0"}},

    {"GenerateLookUpTables",
     Thunk<&SHBuilder::GenerateLookUpTables>(),
     "Generate lookup tables on for basis function calculations\n"
     "Arguments:\n"
     "numSteps - the number of steps in a circle",
     {.what = "Makes the tables that evaluation, projection and rendering read.",
      .arguments = {{{"numSteps", filledIn<"steps in a full circle, 1 to #", maxTableSteps>}}},
      .errors = "ValueError outside the range, MemoryError; the old tables are then kept.",
      .remarks = "They take 8 KB of memory per step. More steps make finer results; the examples "
                 "use 1024."}},

    {"GenerateSphericalSamples",
     Thunk<&SHBuilder::GenerateSphericalSamples>(),
     "Generate lookup tables on for basis function calculations\n"
     "Arguments:\n"
     "seed - the number of steps in a circle\n"
     "sqrtNumSamples - the number of samples per axis (total is sqrtNumSamples*sqrtNumSamples)",
     {.what = "Makes the samples over which functions and images are projected.",
      .arguments = {{{"seed", "of the random generator, 0 to 4294967295"}, samplesPerAxis}},
      .errors = "ValueError for too many samples, MemoryError; the old samples are then kept.",
      .remarks =
          "They are spread evenly over the sphere; the same seed makes the same samples. The "
          "docstring's first and third lines describe GenerateLookUpTables."}},

    {"GeneratePDFSamples",
     Thunk<&SHBuilder::GeneratePDFSamples>(),
     "Create gauss distributed samples for importance sampling and depletion profile creation\n"
     "Arguments: (seed, sqrtNumSamples, numGaussSamples)",
     {.what = "Makes the samples of CreateImportanceSampledGaussSH.",
      .arguments = {{{"seed", "of the random generator, any int"},
                     samplesPerAxis,
                     {"numGaussSamples", filledIn<"samples around the mean, up to #; at least the "
                                                  "mean itself is made",
                                                  maxGaussOffsets>}}},
      .errors = "ValueError for too many samples, MemoryError; the old samples are then kept.",
      .remarks =
          "Some lie around the mean, the others cover the sphere evenly. The same seed makes "
          "the same samples."}},

    {"GenerateImporanceIntegralMipMaps",
     Thunk<&SHBuilder::GenerateImporanceIntegralMipMaps>(),
     "Create two 1D mipmaps for integrals used in importance sampling",
     {.what = "Integrates the basis functions over zones and wedges of the sphere, at twelve "
              "resolutions.",
      .errors = "RuntimeError before GenerateLookUpTables; MemoryError.",
      .remarks = "No other method reads the integrals."}},

    {"SHBasisFunc",
     Thunk<&SHBuilder::SHBasisFunc>(),
     "Calculate a particular basis function at a spherical coordinate\n"
     " return a basis function coefficient\n"
     "Arguments:\n"
     "index - index of the coefficient\n"
     "phi   - a float in range [0..2*Pi]\n"
     "theta - a float in range [0..Pi]",
     {.what = "Evaluates one basis function at one point.",
      .arguments = {{{"index",
                      filledIn<"l * l + l + m for band l, order m; 0 to #", tableCoefficients - 1>},
                     azimuth,
                     polarAngle}},
      .result = "the value of that basis function",
      .errors = "IndexError for another index; RuntimeError before GenerateLookUpTables; "
                "ValueError where an angle is not finite or theta lies beyond the tables.",
      .remarks = "Angles are cut down to steps of the tables, not interpolated."}},

    {"RenderSHToImageBuffer",
     Tuple<"Ofiii", &SHBuilder::RenderSHToImageBuffer>(),
     "Render an SH to an image buffer of byte sized pixels.\n"
     "All values outside of range will be truncated\n"
     " return a buffer containing a rendered SH\n"
     "Arguments:\n"
     "sh     - Spherical Harmonic to render\n"
     "scale  - a scaling factor to control the image contrast\n"
     "offset - a offset to the scaled value in pixels\n"
     "sqrtNumSlices - the square of the number of slices to split image to (total N*N)\n"
     "sliceIndex - the index of the slice to generate",
     {.what = "Draws a set into the builder's image.",
      .arguments = {{aSet,
                     {"scale", "pixel steps per unit of value"},
                     {"offset", "the pixel of value 0"},
                     {"sqrtNumSlices", "N, the root of the number of slices: the image is cut into "
                                       "N * N; at least 1, which is the whole image"},
                     {"sliceIndex", "0 to N * N - 1, row by row"}}},
      .errors = "RuntimeError without an image or before GenerateLookUpTables; ValueError for "
                "another slice or a set with fewer coefficients than its bands need.",
      .remarks =
          "Returns None, not a buffer: GetImageBuffer gives the pixels. One slice is drawn, so "
          "that a script can draw a large image piece by piece. A pixel is the value times scale, "
          "truncated, plus offset, limited to 0 to 255. Row 0 is the pole (theta 0), column "
          "0 is phi 0, and a pixel stands for its upper left corner. Rows and columns left over "
          "when the image is cut into slices are not written."}},

    {"SetImageBuffer",
     Thunk<&SHBuilder::SetImageBuffer>(),
     "Set the image buffer to a size (width, height)",
     {.what = "Gives the builder a new, black image.",
      .arguments = {{{"width", "in pixels, 0 or more"}, {"height", "in pixels, 0 or more"}}},
      .errors = "ValueError for a negative size or 2^31 pixels and more, MemoryError; the old "
                "image is then kept.",
      .remarks = "Buffers that show the old image go on showing it."}},

    {"ClearImageBuffer",
     Thunk<&SHBuilder::ClearImageBuffer>(),
     "Clear the image buffer",
     {.what = "Releases the builder's image; it does not blacken it.",
      .remarks = "Buffers that show the image go on showing it."}},

    {"GetImageBuffer",
     Direct<&GetImageBuffer>(),
     "Get a python buffer for the internal image buffer owned by the builder",
     {.what = "Shows the builder's image in place, as bytes.",
      .result = "a read-only buffer of width * height bytes, row by row; empty without an image",
      .errors = "MemoryError.",
      .remarks = "The buffer is live: it shows what is rendered later. It stays safe to read when "
                 "the image is replaced, cleared or gone with its builder, and then shows its last "
                 "pixels. Arguments are ignored."}},

    {"AddSH",
     Thunk<&SHBuilder::AddSH>(),
     "Add a spherical harmonic to another",
     {.what = "Adds a set to the target.",
      .arguments = {{target, source}},
      .result = theTarget,
      .errors = missingOperand,
      .remarks = smallerSource}},

    {"AddScaledSH",
     Thunk<&SHBuilder::AddScaledSH>(),
     "Add a scaled spherical harmonic to another",
     {.what = "Adds a multiple of a set to the target.",
      .arguments = {{target, source, {"scale", "factor of the source"}}},
      .result = theTarget,
      .errors = missingOperand,
      .remarks = smallerSource}},

    {"SubtractSH",
     Thunk<&SHBuilder::SubtractSH>(),
     "Subtract a spherical harmonic from another",
     {.what = "Subtracts a set from the target.",
      .arguments = {{target, source}},
      .result = theTarget,
      .errors = missingOperand,
      .remarks = smallerSource}},

    {"SubtractScaledSH",
     Thunk<&SHBuilder::SubtractScaledSH>(),
     "Subtract a scaled spherical harmonic from another",
     {.what = "Subtracts a multiple of a set from the target.",
      .arguments = {{target, source, {"scale", "factor of the source"}}},
      .result = theTarget,
      .errors = missingOperand,
      .remarks = smallerSource}},

    {"ScaleSH",
     Thunk<&SHBuilder::ScaleSH>(),
     "Scale a spherical harmonic to another",
     {.what = "Multiplies every coefficient of a set by a number.",
      .arguments = {{target, {"scale", "the factor"}}},
      .result = theTarget,
      .errors = missingOperand,
      .remarks = "No other set is involved, whatever the docstring says."}},

    {"OffsetSH",
     Thunk<&SHBuilder::OffsetSH>(),
     "Offset a spherical harmonic to by a constant value (aka color shift)",
     {.what = "Makes the value of a set larger or smaller everywhere.",
      .arguments = {{target, {"value", "4 pi times what is added to the value everywhere"}}},
      .result = theTarget,
      .errors = "TypeError where the set is None; RuntimeError before GenerateLookUpTables unless "
                "the set is empty.",
      .remarks = "Adds value times the band-0 function, 0.2820948, to coefficient 0: the set's "
                 "value grows by value / (4 pi) everywhere, not by value."}},

    {"LerpSH",
     Thunk<&SHBuilder::LerpSH>(),
     "Linear Interpolation between two harmonics using an alpha (0-1)\n"
     "Arguments:\n"
     "target - the result of the lerp operation will be stored here\n"
     "from   - the start SH (when alpha=0)\n"
     "to     - the end SH (when alpha=1)\n"
     "alpha  - the mixing/blending controller.  Value in the range 0-1.0.",
     {.what = "Blends two sets into the target.",
      .arguments = {{target,
                     {"from", "the set at alpha 0"},
                     {"to", "the set at alpha 1"},
                     {"alpha", "not limited: beyond 0 to 1 it extrapolates"}}},
      .result = theTarget,
      .errors = resizeErrors,
      .remarks = equalOperands}},

    {"CopyScaleAndSubtractSH",
     Thunk<&SHBuilder::CopyScaleAndSubtractSH>(),
     "Copy a SH to a target. Scale it and the subtract a SH from the total.  All in one pass\n"
     " return target\n"
     "Arguments:\n"
     "target     - the result will be copied to this SH\n"
     "toCopy     - the SH to copy and scale\n"
     "scale      - the scale to apply to the SH to copy\n"
     "toSubtract - the SH to subtract form the scaled copy",
     {.what = "Sets the target to one set times a number, minus another set.",
      .arguments = {{target,
                     {"toCopy", "the set to scale"},
                     {"scale", "its factor"},
                     {"toSubtract", "the set that is taken off"}}},
      .result = theTarget,
      .errors = resizeErrors,
      .remarks = equalOperands}},

    {"CreateLatitudeSH",
     TupleNewSet<"i", &SHBuilder::CreateLatitudeSH>(),
     "Create a latitude based spherical harmonic with numBands",
     {.what = "Makes a set of sin theta: a belt around the equator.",
      .arguments = {{bandCount}},
      .result = "a new set: sin theta, 1 on the equator and 0 at the poles",
      .errors = projectionErrors,
      .remarks = projectionRemarks}},

    {"CreateLongtitudeSH",
     TupleNewSet<"i", &SHBuilder::CreateLongtitudeSH>(),
     "Create a longtitude based spherical harmonic with numBands",
     {.what = "Makes a set of sin phi, faded out towards the poles.",
      .arguments = {{bandCount}},
      .result = "a new set: sin phi, faded to 0 at the poles",
      .errors = projectionErrors,
      .remarks = projectionRemarks}},

    {"CreateConstantSH",
     TupleNewSet<"fi", &SHBuilder::CreateConstantSH>(),
     "Create a constant value spherical harmonic (value, num bands)",
     {.what = "Makes a set that has the same value everywhere.",
      .arguments = {{{"value", "4 pi times the value of the function"},
                     {"numBands", filledIn<"number of bands, 0 to #", maxSetBands>}}},
      .result = newSet,
      .errors = "RuntimeError before GenerateLookUpTables unless numBands is 0; ValueError for "
                "another number of bands; MemoryError.",
      .remarks = "Coefficient 0 is value times the band-0 function, 0.2820948; the others are 0.0. "
                 "The function has the value value / (4 pi) everywhere."}},

    {"CreateGaussSH",
     TupleNewSet<"ifff", &SHBuilder::CreateGaussSH>(),
     "Create a gaussian distribuition with a mean at (phi=0 theta=0)\n"
     " Returns a spherical harmonic encoding a gaussian distribution\n"
     "Arguments:\n"
     "numBands - the number of bands to generate\n"
     "stdDev   - the standard deviation of the gaussian in radians\n"
     "latitude - the latitude of the mean [0..pi)\n"
     "longitude - the longitude of the mean [0..2*pi)",
     {.what = "Makes a set of a Gaussian around any point, by projection.",
      .arguments = {{bandCount,
                     {"stdDev", "standard deviation in radians"},
                     {"latitude", "polar angle of the mean in radians, 0 to pi from the pole"},
                     {"longitude", "azimuth of the mean in radians"}}},
      .result = "a new set: 1 at the mean, 0 beyond five standard deviations",
      .errors = projectionErrors,
      .remarks = "The mean is at latitude and longitude, not at the pole as the docstring has it. "
                 "Projects the function over the samples of GenerateSphericalSamples; without any, "
                 "every coefficient is NaN."}},

    {"CreateImportanceSampledGaussSH",
     TupleNewSet<"fff", &SHBuilder::CreateImportanceSampledGaussSH>(),
     "Create a sphericel harmonic of a gaussian using importance sampling\n"
     "Arguments:\n"
     " latitude - mean off gaussian\n"
     " longitude - mean off gaussian\n"
     " stdDev - standard deviation of the gaussian",
     {.what = "Makes a set of a Gaussian around any point, by importance sampling.",
      .arguments =
          {{{"latitude", "polar angle of the mean in radians, 0 to pi from the pole"},
            {"longitude", "azimuth of the mean in radians"},
            {"stdDev",
             "in radians; the samples spread with about 0.659 times this standard deviation"}}},
      .result = newWholeSet,
      .errors =
          "RuntimeError where there are samples but no tables; ValueError where a sample is not "
          "finite; MemoryError.",
      .remarks = "Uses the samples of GeneratePDFSamples; without any, every coefficient is NaN. "
                 "The blob is narrower than that of CreateGaussSH, and lower: divide it by its "
                 "value at the mean, with ScaleSH, to make it 1 there."}},

    {"CreateSHFromBuffer",
     Tuple<"Oi", &CreateSHFromBuffer>(),
     "Create SH from a python buffer\n"
     " return SH made from coefficients extracted from the buffer\n"
     "Arguments:\n"
     "buffer - a python buffer containing B*B num floats (4 byte)\n"
     "numBands - the number of bands in the float array",
     {.what = "Makes a set of stored coefficients.",
      .arguments = {{{"buffer", "numBands * numBands 4-byte floats in the machine's byte order"},
                     {"numBands", filledIn<"number of bands, # to #; stored as given",
                                           -maxBufferBands, maxBufferBands>}}},
      .result = newSet,
      .errors = "TypeError where there is no read buffer or its length does not fit; ValueError "
                "for another number of bands; MemoryError.",
      .remarks = "Values are copied bit for bit. Strings, arrays, byte arrays, buffers and memory "
                 "maps have a read buffer; memoryview has none."}},

    {"ExtendSHFromBuffer",
     Tuple<"OOii", &ExtendSHFromBuffer>(),
     "Extend SH bands from a python buffer. Will set new size and override values values for "
     "expanded bands.\n"
     "Arguments:\n"
     "sh - a spherical harmonic to extend\n"
     "buffer - a python buffer containing (newBand**2 - oldBand**2) num floats (4 byte)\n"
     "oldBand - the old max band of the SH\n"
     "newBand - the number of bands in the float array",
     {.what = "Resizes a set and fills its upper bands with stored coefficients.",
      .arguments = {{{"sh", "the set that is changed"},
                     {"buffer", "the coefficients of bands oldBand to newBand - 1, 4-byte floats"},
                     {"oldBand", "first band of the buffer; the set's own number is not looked at"},
                     {"newBand",
                      filledIn<"number of bands afterwards, # to #", -maxSetBands, maxSetBands>}}},
      .errors = "TypeError where there is no read buffer or its length does not fit; ValueError "
                "for bands whose coefficients take 2 GB and more; MemoryError. The set is then "
                "unchanged.",
      .remarks = "Coefficients below oldBand * oldBand are kept, or 0.0 where the "
                 "set had fewer; those from newBand * newBand on are dropped."}},

    {"LatitudeProjectionFunc",
     Tuple<"ff", &SHBuilder::LatitudeProjectionFunc>(),
     "Project latitude function (phi, theta)",
     {.what = "Evaluates the function that CreateLatitudeSH projects.",
      .arguments = {{{"phi", "not used"}, {"theta", "polar angle in radians, any finite number"}}},
      .result = "sin theta, from the tables",
      .errors = foldedAngle,
      .remarks = "Nothing is projected."}},

    {"LongtitudeProjectionFunc",
     Tuple<"ff", &SHBuilder::LongtitudeProjectionFunc>(),
     "Project longtitude function (phi, theta)",
     {.what = "Evaluates the function that CreateLongtitudeSH projects.",
      .arguments = {{azimuth, {"theta", "polar angle in radians"}}},
      .result = "sin phi, from the tables, times 1 - ((theta - pi/2) / (pi/2))^4",
      .errors = foldedAngle,
      .remarks = "Nothing is projected."}},

    {"GaussProjectionFunc",
     Tuple<"fff", &SHBuilder::GaussProjectionFunc>(),
     "Project longtitude function (longitude, latitude, stdDev)",
     {.what = "Evaluates the function that CreateGaussSH projects, with its mean at the pole.",
      .arguments = {{{"longitude", "azimuth in radians"},
                     {"latitude", "polar angle in radians"},
                     {"stdDev", "standard deviation in radians"}}},
      .result = "the Gaussian around the pole: 1 there, 0 beyond five standard deviations, and so "
                "everywhere where stdDev is negative; NaN where an angle is not finite, stdDev is "
                "NaN, or at the pole where it is 0",
      .remarks =
          "Nothing is projected. The longitude changes the result by no more than rounding."}},

    {"SetRandomSeed",
     Thunk<&SHBuilder::SetRandomSeed>(),
     "Set the seed for the random generator",
     {.what = "Seeds the random generator.",
      .arguments = {{{"seed", "any int"}}},
      .remarks =
          "The generator belongs to the thread, not to the builder. GenerateSphericalSamples "
          "and GeneratePDFSamples seed it themselves."}},

    {"CreateSHFromImageBuffer",
     Tuple<"iiiO", &CreateSHFromImageBuffer>(),
     "Create a spherical harmonic from an 8 bit image buffer by projecting the image on the "
     "surface on to the SH\n"
     " Returns a spherical harmnic representing the image\n"
     "Arguments:\n"
     "width - the pixel width of the image buffer\n"
     "height - the pixel width of the image buffer\n"
     "band - the number of bands of the SH generated\n"
     "buffer - a python buffer wrapping an 8 bit buffer",
     {.what = "Makes a set of an image.",
      .arguments =
          {{{"width", "in pixels"},
            {"height", "in pixels"},
            {"band", filledIn<"number of bands, # to #; stored as given", -tableBands, tableBands>},
            {"buffer", "width * height bytes, row by row"}}},
      .result = "a new set whose values are pixels, 0 to 255",
      .errors = filledIn<"TypeError where there is no read buffer or its length does not fit; "
                         "ValueError for a negative size, an image without pixels or, with "
                         "samples, more than # coefficients; RuntimeError where there are samples "
                         "but no tables; MemoryError.",
                         tableCoefficients>,
      .remarks =
          "Row 0 is the pole (theta 0), column 0 is phi 0. Projects the pixels over the samples of "
          "GenerateSphericalSamples; without any, every coefficient is NaN. The builder's "
          "own image is not involved."}},
};
static_assert(NotesFitEntries(methods));
static_assert(std::size(methods) <= maxMethods && std::size(attributes) <= maxAttributes);

} // namespace

constinit const ClassTable shBuilderTable = {
    .name = className<SHBuilder>,
    .doc = "Spherical Harmonic Builder",
    .note =
        "Owns lookup tables, sample points and an 8-bit image, and performs every operation on "
        "sets. Methods that change a set return it, but for ExtendSHFromBuffer; methods that "
        "create one return a new object. A builder cannot be copied: copy.copy, copy.deepcopy and "
        "pickle with protocol 2 give a new builder without tables, samples and image; pickle's "
        "older protocols raise TypeError.",
    .attributes = attributes,
    .methods = methods,
};

} // namespace orvane::binding
