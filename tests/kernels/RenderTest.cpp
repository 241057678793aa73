#include "model/LiteralRender.h"
#include "orvane/base/PolarRow.h"
#include "orvane/builder/PictureTables.h"
#include "tests/builder/BuilderCase.h"

#include <functional>
#include <map>
#include <memory>
#include <random>

namespace {

using namespace orvane;

class Render : public testing::Test {
protected:
    /// Made once for all tests here.
    static const BuilderCase &CaseFor(int numSteps)
    {
        auto &model = cases[numSteps];
        if (!model)
            model = std::make_unique<BuilderCase>(numSteps);
        return *model;
    }
    static void TearDownTestSuite() { cases.clear(); }

private:
    static inline std::map<int, std::unique_ptr<BuilderCase>> cases;
};

/// The factor of order 0.
double Polar(const BuilderCase &model, std::size_t step, int l)
{
    return model.builder.tables.polarRows[step * polarRowLength + l];
}

struct Picture {
    int width, height;
    float scale;
    int offset;
};

/// Renders the set at every instruction set and compares with the literal model; `counts` looks at
/// how the pixels were decided.
void ExpectLiteral(
    const BuilderCase &model, const std::vector<float> &set, const Picture &picture,
    const std::function<void(const RenderCounts &)> &counts = [](const RenderCounts &) {})
{
    const auto [width, height, scale, offset] = picture;
    std::vector<float> padded = set;
    padded.resize(tableCoefficients);
    const int bands = static_cast<int>(std::ceil(std::sqrt(set.size())));
    std::vector<std::uint8_t> expected(width * height);
    literal::Render(model.tables, padded.data(), bands, scale, offset, 1, 0, width, height,
                    expected.data());
    for (const Kernels *kernels : SupportedKernels()) {
        std::vector<std::uint8_t> image(expected.size());
        PictureTables tables;
        for (int render = 0; render < 2; ++render) {
            std::fill(image.begin(), image.end(), 0);
            counts(tables.Render(*kernels,
                                 {.angles = model.builder.tables.Angles(),
                                  .polarRows = model.builder.tables.polarRows.data(),
                                  .coefficients = set.data(),
                                  .count = static_cast<int>(set.size()),
                                  .scale = scale,
                                  .offset = offset},
                                 {width, height, 0, width, 0, height}, image.data()));
            ASSERT_EQ(image, expected)
                << Name(kernels->instructionSet) << ", " << model.tables.numSteps << " steps, "
                << set.size() << " coefficients, " << width << " x " << height << ", scale "
                << scale << ", offset " << offset;
        }
    }
}

// Widths and tables that are cut into every number of segments, that cannot be cut, and whose
// columns do not fit each other though the numbers divide (100 columns at 360 steps, 640 at 100).
TEST_F(Render, WritesTheLiteralBytes)
{
    constexpr int widths[] = {1, 2, 15, 16, 17, 31, 32, 64, 65, 100, 128, 130, 192, 256, 360, 640};
    int round = 0;
    for (const int numSteps : {1, 2, 5, 10, 16, 100, 256, 360, 1000, 1024})
        for (const int width : widths) {
            const int bands = ++round % 5 == 0 ? 30 : round % 13 + 1;
            ExpectLiteral(CaseFor(numSteps), RandomCoefficients(bands * bands, round),
                          {width, 1 + 400 / width % 19, static_cast<float>(1 + round % 40),
                           round * 37 % 256});
        }
}

TEST_F(Render, TakesAnyNumberOfCoefficients)
{
    for (const int count : {1, 2, 3, 5, 8, 17, 24, 101, 899})
        for (const bool sparse : {false, true}) {
            std::vector<float> set = RandomCoefficients(900, count);
            set.resize(count);
            for (int i = 0; sparse && i + 1 < count; ++i)
                set[i] = 0;
            ExpectLiteral(CaseFor(256), set, {33, 9, 50, 100});
        }
    // On the edge of a byte a rounded product with the scale would show.
    const double zonal = Polar(CaseFor(256), 0, 0);
    for (float scale = 1.1f; scale < 3.0f; scale += 0.1f)
        ExpectLiteral(CaseFor(256), {static_cast<float>(65 / (scale * zonal))}, {7, 2, scale, 100});
}

// More different polar rows and columns than a block holds, and image rows that share theirs.
TEST_F(Render, WalksAllRowsAndColumns)
{
    ExpectLiteral(CaseFor(256), RandomCoefficients(9, 3), {8200, 3, 30, 128});
    ExpectLiteral(CaseFor(1200), RandomCoefficients(36, 1), {3, 1100, 30, 128});
    ExpectLiteral(CaseFor(10), RandomCoefficients(900, 2), {67, 90, 5, 128});
}

// The bytes do not tell how a row is cut, but without a cut most of the speed is gone.
TEST_F(Render, CutsRowsThatCanBeCut)
{
    struct Example {
        int numSteps, imageWidth, firstColumn, columns;
        int leastSegments, mostSegments;
    };
    constexpr Example examples[] = {
        {1024, 32, 0, 32, 8, 16},      {1024, 64, 0, 64, 8, 16},     {1024, 256, 0, 256, 16, 16},
        {1024, 2048, 0, 2048, 16, 16}, {1024, 256, 64, 128, 16, 16}, {1000, 1024, 0, 1024, 4, 8},
        {1000, 100, 0, 100, 4, 4},     {1024, 256, 3, 200, 1, 1},    {1024, 255, 0, 255, 1, 1}};
    struct alignas(64) Line {
        float values[16];
    };
    for (const Kernels *kernels : SupportedKernels())
        for (const auto &[numSteps, imageWidth, firstColumn, columns, least, most] : examples) {
            std::vector<std::int32_t> indices(columns * columnOrders);
            std::vector<std::int32_t> lone(MostLoneColumns(columns));
            std::vector<Line> factors(FactorFloats(columns, tableBands) / 16);
            PictureColumns cut;
            kernels->layColumns({.angles = CaseFor(numSteps).builder.tables.Angles(),
                                 .tableStep = static_cast<float>(TWO_PI_F) / numSteps,
                                 .dPhi = static_cast<float>(TWO_PI_F) / imageWidth,
                                 .bands = tableBands,
                                 .imageWidth = imageWidth,
                                 .firstColumn = firstColumn,
                                 .columns = columns,
                                 .arrays = {indices.data(), factors[0].values, lone.data()}},
                                cut);
            EXPECT_TRUE(cut.segments >= least && cut.segments <= most)
                << cut.segments << " segments at " << Name(kernels->instructionSet) << ": "
                << columns << " of " << imageWidth << " columns, " << numSteps << " steps";
        }
}

TEST_F(Render, LeavesFewPixelsToTheSlowTiers)
{
    constexpr int pixels = 256 * 64;
    ExpectLiteral(CaseFor(1024), RandomCoefficients(900, 3), {256, 64, 5, 128},
                  [](const RenderCounts &counts) {
                      EXPECT_GT(counts.rechecked, 0);
                      EXPECT_LT(counts.rechecked, pixels / 200);
                      EXPECT_EQ(counts.exact, 0);
                  });
}

/// A set of which one pixel lies just above the whole number `target`: coefficient `base` makes
/// `target` less `below` at that pixel, as near as two more coefficients of order 0 can tune it,
/// and each of the `small` ones adds `addend`, too little for a sum near `target` to notice.
std::vector<float> EdgeSet(const BuilderCase &model, double phi, double theta, double target,
                           double below, int base, const std::vector<int> &small, double addend)
{
    std::vector<float> set(tableCoefficients);
    const auto tune = [&](int index) {
        const double missing = target - below - model.tables.Evaluate(set.data(), 30, phi, theta);
        set[index] = static_cast<float>(missing / model.tables.Basis(index, phi, theta));
    };
    tune(base);
    tune(base == 0 ? 6 : 0);
    tune(base == 0 ? 20 : 6);
    for (const int index : small)
        set[index] = static_cast<float>(addend / model.tables.Basis(index, phi, theta));
    return set;
}

// Sums of the first tier that stay behind what they should be by as much as roundings can: the base
// comes first, then all orders of its class, then a class in each step of the transform. The bound
// is to cover it, from cosines and from sines, whatever number of segments a row is cut into.
TEST_F(Render, SinglePrecisionBoundCoversRoundingsThatAddUp)
{
    const BuilderCase &model = CaseFor(256);
    constexpr int height = 4;
    constexpr double target = 65.0;
    const double ulp = std::ldexp(1.0, -17);
    const double theta = 2 * static_cast<double>(3.1415927f / height);
    for (const int width : {16, 32, 50, 64, 100, 101, 128, 512})
        for (const int segments : {1, 2, 4, 8, 16})
            for (const bool ofSines : {false, true}) {
                const int column = width / 4 + 1;
                const double phi = column * static_cast<double>(6.2831855f / width);
                std::vector<int> small;
                for (int m = 1; m < 30; ++m) {
                    const int rest = m % segments;
                    const bool sameClass =
                        ofSines ? m > 1 && (rest == 1 % segments || rest == segments - 1)
                                : rest == 0;
                    const bool inTransform = ofSines ? m == 3 || m == 7 : segments % (2 * m) == 0;
                    const int index = CoefficientIndex(m, ofSines ? -m : m);
                    if ((sameClass || inTransform) &&
                        std::fabs(model.tables.Basis(index, phi, theta)) > 0.01)
                        small.push_back(index);
                }
                const double lost = std::floor(0.49 * static_cast<double>(small.size()));
                ExpectLiteral(model,
                              EdgeSet(model, phi, theta, target, lost * ulp, ofSines ? 1 : 0, small,
                                      0.49 * ulp),
                              {width, height, 1, 100});
            }
}

// The literal sum of a pixel stays behind by hundreds of units in the last place, which the sums by
// order notice: the bound of the second tier is to cover that.
TEST_F(Render, DoublePrecisionBoundCoversRoundingsOfTheLiteralSum)
{
    const BuilderCase &model = CaseFor(256);
    constexpr int width = 64;
    constexpr int height = 16;
    const double ulp = std::ldexp(1.0, -46);
    const double phi = 8 * static_cast<double>(6.2831855f / width);
    const double theta = 7 * static_cast<double>(3.1415927f / height);
    std::vector<int> small;
    for (int index = 81; index < tableCoefficients; ++index)
        if (std::fabs(model.tables.Basis(index, phi, theta)) > 1e-6)
            small.push_back(index);
    EXPECT_GT(small.size(), 600);
    for (const double below : {10.0, 50.0, 100.0})
        ExpectLiteral(
            model,
            EdgeSet(model, phi, theta, 65, below * ulp, CoefficientIndex(8, 8), small, 0.45 * ulp),
            {width, height, 1, 100});
}

// Two coefficients of order 0 are tuned until the value at the pixel is a whole number, as near as
// two single-precision numbers can bring it: well within the bound on the double-precision value.
TEST_F(Render, SumsTermByTermOnTheEdgeOfAByte)
{
    constexpr int width = 40;
    constexpr int height = 16;
    const BuilderCase &model = CaseFor(256);
    const double dPhi = 6.2831855f / static_cast<float>(width);
    const double dTheta = 3.1415927f / static_cast<float>(height);
    std::mt19937 random(4);
    int below = 0;
    int notBelow = 0;
    for (const bool wholeRow : {true, false})
        for (int round = 0; round < 12; ++round) {
            const int x = static_cast<int>(random() % width);
            const double theta = static_cast<double>(round % height) * dTheta;
            const int step = model.tables.Index(theta);
            std::vector<float> set = RandomCoefficients(900, round);
            if (wholeRow)
                set.assign(set.size(), 0.0f);
            set[0] = set[6] = 0;
            const double target = round % 2 ? 7 + round : -7 - round;
            const auto missing = [&] {
                return target - model.tables.Evaluate(set.data(), 30, x * dPhi, theta);
            };
            set[0] = static_cast<float>(missing() / Polar(model, step, 0));
            set[6] = static_cast<float>(missing() / Polar(model, step, 2));
            for (int neighbour = -2; neighbour <= 2; ++neighbour) {
                set[6] = std::nextafter(set[6], neighbour < 0 ? -1e9f : 1e9f);
                (std::fabs(target - missing()) < std::fabs(target) ? below : notBelow)++;
                ExpectLiteral(model, set, {width, height, 1, 128}, [&](const RenderCounts &counts) {
                    EXPECT_GE(counts.exact, wholeRow ? width : 1);
                });
            }
        }
    EXPECT_GT(below, 20);
    EXPECT_GT(notBelow, 20);
}

TEST_F(Render, SaturatesExtremes)
{
    constexpr auto infinite = static_cast<float>(infinity);
    const float nan = std::nanf("");
    const BuilderCase &model = CaseFor(256);
    constexpr int width = 19;
    constexpr int height = 6;
    for (const float extreme : {1.0f, 0.0f, 1e38f, -3e38f, 1e-45f, infinite, -infinite, nan})
        for (const float scale : {1.0f, 100.0f, -1e38f, 1e-45f, 0.0f, infinite, nan})
            for (const int offset : {128, -40, 1 << 23, -(1 << 23) - 1, 2000000000, least, most}) {
                std::vector<float> set = RandomCoefficients(16, 5);
                set[6] = extreme;
                ExpectLiteral(
                    model, set, {width, height, scale, offset}, [&](const RenderCounts &counts) {
                        const bool finite = std::isfinite(extreme) && std::isfinite(scale);
                        EXPECT_TRUE(finite || counts.exact == width * height);
                    });
            }
    // An offset beyond 16 bits or the whole floats, and values just as far on the other side.
    for (const int distance : {33000, -33000, 40000, -40000, 1000000000, -1000000000}) {
        std::vector<float> far = RandomCoefficients(4, 6);
        far[0] = static_cast<float>(-distance / Polar(model, 0, 0));
        ExpectLiteral(model, far, {width, height, 1, distance + 100});
    }
    // Beyond 31 bits at the pole alone, where one basis function is above 2.
    for (const float large : {1.2e9f, -1.2e9f}) {
        std::vector<float> pole(tableCoefficients);
        pole[CoefficientIndex(29, 0)] = large;
        ExpectLiteral(model, pole, {width, height, 1, 100});
    }
    for (const float scale : {1e38f, -3e38f})
        ExpectLiteral(model, std::vector<float>(900, 1e-38f), {width, height, scale, 100});
    ExpectLiteral(model, std::vector<float>(900, 1e-43f), {width, height, 3e38f, 100});
    ExpectLiteral(model, std::vector<float>(900, 0.0f), {width, height, infinite, 100});
}

// What the error bounds rest on.
TEST_F(Render, PolarFactorsStayBelowTheBoundOfTheAdditionTheorem)
{
    const double bound = std::sqrt(59 / (4 * pi)) * (1 + 1e-9);
    for (const int numSteps : {1, 5, 100, 1024, 1200})
        for (const double factor : CaseFor(numSteps).builder.tables.polarRows)
            ASSERT_LE(std::fabs(factor), bound);
}

} // namespace
