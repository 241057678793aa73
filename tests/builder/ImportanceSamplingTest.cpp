#include "model/LiteralImportance.h"
#include "tests/builder/BuilderCase.h"

namespace {

constexpr double fourPi = 12.566370964050293;
constexpr double K0 = 0.28209479177387814;

struct Sampled : BuilderCase {
    using BuilderCase::BuilderCase;

    /// A new Gaussian.
    const SphericalHarmonic &Make(double latitude, double longitude, double stdDev)
    {
        set.SetNumBands(0);
        return builder.CreateImportanceSampledGaussSH(set, latitude, longitude, stdDev);
    }
};

TEST(PdfSamples, AreThoseOfTheLiteralDraws)
{
    BuilderCase model;
    SHBuilder &builder = model.builder;
    const struct {
        int seed, sqrtNumSamples, numGaussSamples;
    } cases[] = {{1, 0, 0},   {9, 10, 1},  {5, -3, -7},   {1, 0, 2},
                 {2, 3, 128}, {4, 5, 129}, {-6, 2, 1000}, {7, 1, least}};
    for (const auto &[seed, sqrtNumSamples, numGaussSamples] : cases) {
        const literal::PdfSamples expected =
            literal::GeneratePdfSamples(seed, sqrtNumSamples, numGaussSamples);
        const int nextDraw = platform::rand();
        builder.GeneratePDFSamples(seed, sqrtNumSamples, numGaussSamples);
        EXPECT_EQ(platform::rand(), nextDraw);
        EXPECT_EQ(builder.pdfDensities, expected.densities);
        EXPECT_TRUE(SamePoints(builder.pdfGaussOffsets, expected.offsets));
        EXPECT_TRUE(SamePoints(builder.pdfSphericalSamples, expected.cover));
    }
}

TEST(PdfSamples, BeyondTheLimitsLeaveThoseThatAreThere)
{
    BuilderCase model;
    SHBuilder &builder = model.builder;
    builder.GeneratePDFSamples(1, 0, 2);
    EXPECT_NEAR(builder.pdfGaussOffsets.at(1).y, -0.2998941676115506, 1e-15);
    platform::srand(5);
    EXPECT_THROW(builder.GeneratePDFSamples(1, 16385, 1), std::invalid_argument);
    EXPECT_THROW(builder.GeneratePDFSamples(1, 1, (1 << 27) + 1), std::invalid_argument);
    EXPECT_EQ(platform::rand(), platform::RuntimeRandom{5}.Next());
    EXPECT_EQ(builder.pdfGaussOffsets.size(), 2u);
    EXPECT_EQ(builder.pdfSphericalSamples.size(), 0u);
    EXPECT_NEAR(builder.pdfDensities.at(1), 0.37544671065806196, 1e-15);
}

TEST(ImportanceSampling, HasTheBitsOfTheLiteralTreeAndLoop)
{
    const struct {
        double latitude, longitude, stdDev;
    } places[] = {{1.0, 2.0, 0.3}, {0.0, 0.0, 0.2},   {0.05, 6.2, 0.5}, {3.1, -4.0, -0.4},
                  {1.5, 1.0, 0.0}, {9.0, 100.0, 3.0}, {-2.0, 0.1, 0.1}, {20.0, -30.0, 40.0}};
    for (const int numSteps : {1, 5, 256, 1000}) {
        Sampled sampled(numSteps);
        literal::PdfSamples pdf = literal::GeneratePdfSamples(3, 7, 61);
        sampled.builder.GeneratePDFSamples(3, 7, 61);
        const double hairAbove = std::nextafter(literal::twoPi, 7.0);
        pdf.cover[0].phi = sampled.builder.pdfSphericalSamples[0].phi = hairAbove;
        for (const auto &[latitude, longitude, stdDev] : places) {
            EXPECT_TRUE(sampled.Gives(
                literal::ImportanceSampledGauss(sampled.tables, pdf, latitude, longitude, stdDev),
                [&, latitude = latitude, longitude = longitude, stdDev = stdDev] {
                    sampled.Make(latitude, longitude, stdDev);
                }))
                << latitude << ", " << longitude << ", " << stdDev;
            EXPECT_EQ(sampled.set.numBands, 30);
        }
    }
}

// One point, which is the mean.
TEST(ImportanceSampling, ReadsTheTablesAtTheAnglesInDoublePrecision)
{
    Sampled sampled(1000);
    sampled.builder.GeneratePDFSamples(1, 0, 1);
    const literal::PdfSamples pdf = literal::GeneratePdfSamples(1, 0, 1);
    for (const int step : {1, 7, 100, 333, 499}) {
        const double edge = sampled.EdgeOf(step);
        const double below = std::nextafter(edge, 0.0);
        for (const auto &[latitude, longitude] : {std::pair{edge, below}, {below, edge}})
            EXPECT_TRUE(sampled.Gives(
                literal::ImportanceSampledGauss(sampled.tables, pdf, latitude, longitude, 0.0),
                [&, latitude = latitude, longitude = longitude] {
                    sampled.Make(latitude, longitude, 0.0);
                }))
                << step;
    }
}

TEST(ImportanceSampling, WithoutSamplesGivesNaNAndReadsNoTable)
{
    Sampled sampled;
    const auto expectRefusals = [&sampled] {
        for (const double bad : {infinity, -infinity, std::nan("")}) {
            EXPECT_THROW(sampled.Make(bad, 1.0, 0.1), std::invalid_argument);
            EXPECT_THROW(sampled.Make(1.0, bad, 0.1), std::invalid_argument);
            EXPECT_THROW(sampled.Make(1.0, 1.0, bad), std::invalid_argument);
        }
    };
    for (const double argument : {1.0, infinity, std::nan("")}) {
        sampled.Make(argument, 1.0, argument);
        EXPECT_TRUE(SameBits(sampled.set.coefficients, std::vector<float>(900, std::nanf(""))));
    }
    sampled.builder.GeneratePDFSamples(1, 0, 1);
    EXPECT_THROW(sampled.Make(1.0, 1.0, 0.1), orvane::NotReady);
    sampled.builder.GenerateLookUpTables(16);
    expectRefusals();
    // Finite numbers that place points beyond all bounds.
    sampled.builder.GeneratePDFSamples(1, 0, 50);
    for (const auto &[latitude, longitude] : {std::pair{1e308, 0.0}, {0.0, 1e308}, {-1e308, 0.0}})
        EXPECT_THROW(sampled.Make(latitude, longitude, 1.7e308), std::invalid_argument);
    EXPECT_EQ(sampled.set.coefficients.size(), 0u);
    EXPECT_NO_THROW(sampled.Make(1e39, -1e39, 1e39)); // beyond single precision
}

TEST(ImportanceSampling, AddsToCoefficientsThatAreThere)
{
    Sampled sampled(64);
    sampled.builder.GeneratePDFSamples(1, 0, 1);
    const auto set = MakeSet(1, {1.0f});
    sampled.builder.CreateImportanceSampledGaussSH(*set, 1.0, 1.0, 0.1);
    EXPECT_EQ(set->coefficients[0], static_cast<float>(K0 * fourPi) + 1.0f);
    EXPECT_EQ(set->coefficients[1], sampled.Make(1.0, 1.0, 0.1).coefficients[1]);
    // A start of -0 counts as 0, also where nothing but -0 is added: sines of 0.
    const auto zeros = MakeSet(30, std::vector<float>(900, -0.0f));
    sampled.builder.CreateImportanceSampledGaussSH(*zeros, 1.0, 0.0, 0.0);
    EXPECT_TRUE(SameBits(zeros->coefficients, sampled.Make(1.0, 0.0, 0.0).coefficients));
}

} // namespace
