// Memory runs out at every point where it can: each allocation of each call fails once, and nothing
// has happened then but a MemoryError.

#include "orvane/base/PolarRow.h"
#include "orvane/builder/SHBuilder.h"
#include "platform/RuntimeRandom.h"
#include "tesk/TeskReport.h"
#include "teskexposure/include/TeskPython"
#include "teskexposure/include/TeskRecords"
#include "tests/module/FailingNew.h"
#include "tests/module/Interpreter.h"

#include <cstdint>
#include <list>
#include <span>
#include <sstream>
#include <string>
#include <type_traits>

namespace {

/// Whose allocations fail.
struct Allocator {
    void (*fail)(std::int64_t n);
    bool (*isPending)();
};

constexpr Allocator allocators[] = {
    // new, host objects, the tracking allocator
    {&failing_new::Fail, &failing_new::IsPending},
    {[](std::int64_t n) { TeskFailAllocation(TeskObjectAllocation, n); }, &TeskFailureIsPending},
    {[](std::int64_t n) { TeskFailAllocation(TeskContainerAllocation, n); }, &TeskFailureIsPending},
};

/// All bytes of an object's fields, one after the other.
class Bytes {
public:
    template <typename T> void Add(const T &value)
    {
        if constexpr (std::is_trivially_copyable_v<T>) {
            text.append(reinterpret_cast<const char *>(&value), sizeof value);
        } else {
            Add(value.size());
            for (const auto &element : value)
                Add(element);
        }
    }
    void Add(const SphericalHarmonic &sh)
    {
        Add(sh.numBands);
        Add(sh.coefficients);
    }
    void Add(const SHBuilder &b)
    {
        Add(b.tables.angleScale);
        for (const std::int32_t value : {b.tables.numSteps, b.tables.maxBands,
                                         b.tables.maxCoefficients, b.imageWidth, b.imageHeight})
            Add(value);
        Add(b.imageBuffer != nullptr);
        for (std::int64_t i = 0; b.imageBuffer && i < std::int64_t{b.imageWidth} * b.imageHeight;
             ++i)
            Add(b.imageBuffer[i]);
        Add(b.tables.cosLut);
        Add(b.tables.sinLut);
        Add(b.tables.orderLut);
        // Whether there are steps beyond pi changes no result.
        const std::size_t upToPi = b.tables.numSteps / 2 + 1;
        for (const std::span<const double> array : b.tables.legendreLut)
            for (const double value : array.first(upToPi))
                Add(value);
        for (const double value : b.tables.polarRows.first(upToPi * orvane::polarRowLength))
            Add(value);
        Add(b.pdfGaussOffsets);
        Add(b.pdfSphericalSamples);
        Add(b.sphericalSamples);
        Add(b.pdfDensities);
        Add(b.integrals.thetaIntegralMipMap);
        Add(b.integrals.phiIntegralMipMap);
        Add(b.integrals.integralScratch);
        Add(b.integrals.totalIntegral);
    }

    std::string text;
};

/// What a call has given and what it has left behind.
struct Outcome {
    std::string result; ///< or the exception
    std::string state;

    bool operator==(const Outcome &) const = default;
};

/// Python variables: a builder with everything generated, in small, and sets to work on.
class World {
public:
    World() : variables(PyDict_New())
    {
        PyDict_SetItemString(variables.Get(), "__builtins__", PyEval_GetBuiltins());
        const Reference none(PyRun_String(setUp, Py_file_input, variables.Get(), variables.Get()));
        EXPECT_EQ(TakeError(), "");
    }

    /// The value of an expression; null with a Python error set where it raised one.
    PyObject *Evaluate(const char *expression) const
    {
        return PyRun_String(expression, Py_eval_input, variables.Get(), variables.Get());
    }

    /// What the world is like after a call with this result.
    Outcome After(PyObject *result) const { return {result ? Text(result) : TakeError(), State()}; }

    Outcome Call(const char *expression) const
    {
        const Reference result(Evaluate(expression));
        return After(result.Get());
    }

    /// All objects, and the random generator, which a look seeds anew as the world began.
    std::string State() const
    {
        Bytes bytes;
        bytes.Add(platform::rand());
        platform::srand(77);
        bytes.Add(*Native<SHBuilder>("b"));
        for (const char *name : {"sh", "small", "other"})
            bytes.Add(*Native<SphericalHarmonic>(name));
        return bytes.text;
    }

private:
    static std::string Text(PyObject *result)
    {
        if (const auto *sh =
                dynamic_cast<SphericalHarmonic *>(TeskUnwrapObjectFromPython(result))) {
            Bytes bytes;
            bytes.Add(*sh);
            return bytes.text;
        }
        const Reference text(PyBuffer_Check(result) ? PyObject_Str(result) : PyObject_Repr(result));
        return {PyString_AS_STRING(text.Get()),
                static_cast<std::size_t>(PyString_GET_SIZE(text.Get()))};
    }

    template <typename T> T *Native(const char *variable) const
    {
        return static_cast<T *>(
            TeskUnwrapObjectFromPython(PyDict_GetItemString(variables.Get(), variable)));
    }

    static constexpr const char *setUp = R"(
import _Orvane
b = _Orvane.SHBuilder()
b.GenerateLookUpTables(4)
b.GenerateSphericalSamples(1, 2)
b.GeneratePDFSamples(1, 2, 3)
b.SetImageBuffer(4, 2)
b.SetRandomSeed(77)
sh = b.CreateSHFromBuffer('abcd' * 4, 2)
small = b.CreateSHFromBuffer('efgh', 1)
other = b.CreateSHFromBuffer('ijkl' * 4, 2)
matrix = ((0.0, 1.0, 0.0, 0.0), (1.0, 0.0, 0.0, 0.0), (0.0, 0.0, 1.0, 0.0), (0.0,) * 4)
)";

    const Reference variables;
};

/// Expressions, separated by semicolons.
constexpr const char calls[] = R"(
_Orvane.SHBuilder().numSteps; _Orvane.SphericalHarmonic(); sh.SetNumBands(5); sh.SetNumBands(1);
(sh.GetAsBuffer(), sh.SetNumBands(5))[1]; sh.SetCoefficient(3, 0.5); sh.SetCoefficient(4, 0.5);
sh.GetCoefficient(3); sh.GetNumCoefficients(); sh.Clean(); sh.GetAsBuffer();
b.GetValueAt(sh, 1.0, 0.5); b.GetValueAt(sh, 1.0, 5.0); b.GetValueAt(sh, 1.0, 9.0);
b.GetValueAtBand(sh, 1.0, 0.5, 1); b.SHBasisFunc(5, 1.0, 0.5); b.CopySH(sh);
b.RotateSH(sh, matrix); b.RotateZ(sh, 0.25); b.GetGaussDensity(1.0, 0.5, 2.0); b.SetRandomSeed(3);
b.GenerateLookUpTables(1); b.GenerateLookUpTables(4); b.GenerateLookUpTables(0);
b.GenerateSphericalSamples(5, 3); b.GeneratePDFSamples(5, 3, 300);
b.GenerateImporanceIntegralMipMaps(); b.SetImageBuffer(8, 4); b.ClearImageBuffer();
b.GetImageBuffer(); b.RenderSHToImageBuffer(sh, 10.0, 128, 1, 0);
(b.RenderSHToImageBuffer(small, 0, 0, 2, 0), b.RenderSHToImageBuffer(sh, 0, 0, 1, 0));
b.AddSH(sh, other); b.AddSH(sh, None); b.SubtractSH(sh, other); b.AddScaledSH(sh, other, 0.5);
b.SubtractScaledSH(sh, other, 0.5); b.ScaleSH(sh, 0.5); b.OffsetSH(sh, 0.5);
b.LerpSH(small, sh, other, 0.5); b.CopyScaleAndSubtractSH(small, sh, 2.0, other);
b.CreateLatitudeSH(3); b.CreateLongtitudeSH(3); b.CreateConstantSH(1.0, 3);
b.CreateGaussSH(3, 0.5, 1.0, 2.0); b.CreateImportanceSampledGaussSH(0.0, 2.0, 0.9);
b.CreateSHFromBuffer('mnop' * 9, 3); b.ExtendSHFromBuffer(sh, 'mnop' * 5, 2, 3);
b.ExtendSHFromBuffer(sh, buffer(sh.GetAsBuffer(), 0, 0), 9, 9);
b.CreateSHFromImageBuffer(2, 2, 3, 'qrst'); b.LatitudeProjectionFunc(1.0, 0.5);
b.LongtitudeProjectionFunc(1.0, 0.5); b.GaussProjectionFunc(1.0, 0.5, 2.0)
)";

/// Fails each allocation of a call in turn, each in a world of its own, until the call needs no
/// more. Then the call is made again in all of them.
void FailEach(const char *call, const Allocator &allocator)
{
    std::list<World> worlds;
    while (!testing::Test::HasFailure()) {
        const World &world = worlds.emplace_back();
        const std::string before = world.State();
        const TeskTotals totals = TeskReportTotals();
        allocator.fail(static_cast<std::int64_t>(worlds.size()));
        const Reference result(world.Evaluate(call));
        const bool hasFailed = !allocator.isPending();
        allocator.fail(0);
        const Outcome outcome = world.After(result.Get());
        if (!hasFailed) {
            worlds.pop_back();
            break;
        }
        EXPECT_EQ(TeskReportTotals().liveObjects, totals.liveObjects);
        EXPECT_EQ(TeskReportTotals().bytes, totals.bytes);
        EXPECT_EQ(TeskReportTotals().assertionHits, totals.assertionHits);
        EXPECT_EQ(outcome.result, "MemoryError: ");
        EXPECT_TRUE(outcome.state == before);
    }
    const Outcome expected = World().Call(call);
    for (const World &world : worlds)
        EXPECT_TRUE(world.Call(call) == expected);
}

TEST(AllocationFailure, LeavesEverythingAsItWas)
{
    std::istringstream each(calls);
    for (std::string call; each >> std::ws && std::getline(each, call, ';');) {
        SCOPED_TRACE(call);
        for (const Allocator &allocator : allocators)
            FailEach(call.c_str(), allocator);
    }
    for (const auto *descriptor :
         {SHBuilder::StaticClassDescriptor(), SphericalHarmonic::StaticClassDescriptor()})
        for (const PyMethodDef *method = descriptor->methods; method->ml_name; ++method)
            EXPECT_NE(std::string(calls).find('.' + std::string(method->ml_name) + '('),
                      std::string::npos)
                << method->ml_name;
}

} // namespace
