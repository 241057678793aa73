#include "orvane/base/Limits.h"
#include "orvane/module/ClassTables.h"
#include "orvane/module/MethodFunctions.h"
#include "orvane/module/Text.h"
#include "orvane/module/Thunk.h"
#include "orvane/module/TupleEntry.h"

namespace orvane::binding {

namespace {

constexpr AttributeRow attributes[] = {
    {"numBands", AttributeTypeInt32, offsetof(SphericalHarmonic, numBands),
     AttributeReadable | AttributeWritable, "The number of bands in this spherical harmonic",
     "The number of bands, 0 in a new set. Writing it changes this number alone, not the "
     "coefficients; use SetNumBands to resize."},
};

constexpr MethodRow methods[] = {
    {"SetNumBands",
     Thunk<&SphericalHarmonic::SetNumBands>(),
     "Set the number of bands and resize the coefficients",
     {.what = "Resizes the set.",
      .arguments = {{{"bands", filledIn<"number of bands, 0 to #", maxSetBands>}}},
      .errors = "ValueError outside the range, MemoryError; the set is then unchanged.",
      .remarks =
          "It then has bands * bands coefficients: the first ones are kept, new ones are 0.0."}},

    {"SetCoefficient",
     Thunk<&SphericalHarmonic::SetCoefficient>(),
     "Set the a specific coefficients",
     {.what = "Writes one coefficient.",
      .arguments = {{{"index", "l * l + l + m for band l, order m; 0 to GetNumCoefficients() - 1"},
                     {"value", "rounded to single precision"}}},
      .errors = "IndexError outside the set."}},

    {"GetCoefficient",
     Thunk<&SphericalHarmonic::GetCoefficient>(),
     "Get a specific coefficients",
     {.what = "Reads one coefficient.",
      .arguments = {{{"index",
                      "l * l + l + m for band l, order m; 0 to GetNumCoefficients() - 1"}}},
      .result = "the coefficient",
      .errors = "IndexError outside the set."}},

    {"GetNumCoefficients",
     Thunk<&SphericalHarmonic::GetNumCoefficients>(),
     "Get the number of coefficients",
     {.what = "Counts the coefficients.",
      .result = "the number that the set really holds, whatever was written to numBands"}},

    {"Clean",
     Thunk<&SphericalHarmonic::Clean>(),
     "Set all values to zero.  Number of coefficients remains the same",
     {.what = "Sets every coefficient to 0.0; their number stays."}},

    {"GetAsBuffer",
     Direct<&GetAsBuffer>(),
     "Get the coefficients as a python buffer. Will remain valid as long as SH is not changed.\n",
     {.what = "Shows the coefficients in place, as bytes.",
      .result = "a read-only buffer of 4-byte floats in the machine's byte order, in index order",
      .errors = "MemoryError.",
      .remarks = "The buffer is live: it shows every later change of a coefficient. It stays safe "
                 "to read when the set is resized or gone, and then shows the last contents it had "
                 "before. Arguments are ignored."}},
};
static_assert(NotesFitEntries(methods));
static_assert(std::size(methods) <= maxMethods && std::size(attributes) <= maxAttributes);

} // namespace

constinit const ClassTable sphericalHarmonicTable = {
    .name = className<SphericalHarmonic>,
    .doc = "This is a hello world example through tesk's new exposure macros.",
    .note =
        "One set of real spherical-harmonic coefficients, in single precision: a scalar function "
        "on the sphere. SphericalHarmonic() makes an empty set. Use CopySH for a copy: copy.copy, "
        "copy.deepcopy and pickle with protocol 2 give an empty set, without an error; pickle's "
        "older protocols raise TypeError. To store a set, write the bytes of GetAsBuffer to a "
        "file; CreateSHFromBuffer reads them back.",
    .attributes = attributes,
    .methods = methods,
};

} // namespace orvane::binding
