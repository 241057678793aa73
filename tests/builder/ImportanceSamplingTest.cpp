#include "model/LiteralImportance.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Errors.h"
#include "platform/RuntimeRandom.h"
#include "tests/kernels/EachInstructionSet.h"
#include "tests/native/MakeObject.h"
#include "tests/native/SameBits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace {

constexpr double fourPi = 12.566370964050293;
constexpr double K0 = 0.28209479177387814;

struct Sampled {
    explicit Sampled(int numSteps) { builder->GenerateLookUpTables(numSteps); }

    /// A new set.
    const SphericalHarmonic &Make(double latitude, double longitude, double stdDev)
    {
        set = MakeObject<SphericalHarmonic>();
        return builder->CreateImportanceSampledGaussSH(*set, latitude, longitude, stdDev);
    }

    std::shared_ptr<SHBuilder> builder = MakeObject<SHBuilder>();
    std::shared_ptr<SphericalHarmonic> set;
};

TEST(PdfSamples, AreThoseOfTheLiteralDraws)
{
    const auto builder = MakeObject<SHBuilder>();
    const struct {
        int seed, sqrtNumSamples, numGaussSamples;
    } cases[] = {{1, 0, 0},   {9, 10, 1},  {5, -3, -7},   {1, 0, 2},
                 {2, 3, 128}, {4, 5, 129}, {-6, 2, 1000}, {7, 1, std::numeric_limits<int>::min()}};
    for (const auto &[seed, sqrtNumSamples, numGaussSamples] : cases) {
        const literal::PdfSamples expected =
            literal::GeneratePdfSamples(seed, sqrtNumSamples, numGaussSamples);
        const std::uint32_t stateAfter = platform::ThreadRandom().state;
        builder->GeneratePDFSamples(seed, sqrtNumSamples, numGaussSamples);
        EXPECT_EQ(platform::ThreadRandom().state, stateAfter);
        EXPECT_EQ(builder->pdfDensities, expected.densities);
        ASSERT_EQ(builder->pdfGaussOffsets.size(), expected.offsets.size());
        for (std::size_t i = 0; i < expected.offsets.size(); ++i) {
            ASSERT_EQ(builder->pdfGaussOffsets[i].x, expected.offsets[i].x) << i;
            ASSERT_EQ(builder->pdfGaussOffsets[i].y, expected.offsets[i].y) << i;
        }
        ASSERT_EQ(builder->pdfSphericalSamples.size(), expected.cover.size());
        for (std::size_t i = 0; i < expected.cover.size(); ++i) {
            ASSERT_EQ(builder->pdfSphericalSamples[i].theta, expected.cover[i].theta) << i;
            ASSERT_EQ(builder->pdfSphericalSamples[i].phi, expected.cover[i].phi) << i;
        }
    }
}

TEST(PdfSamples, HaveTheNumbersOfTheKnownSeed)
{
    const auto builder = MakeObject<SHBuilder>();
    builder->GeneratePDFSamples(1, 0, 2);
    ASSERT_EQ(builder->pdfGaussOffsets.size(), 2u);
    EXPECT_EQ(builder->pdfGaussOffsets[0].x, 0.0);
    EXPECT_EQ(builder->pdfDensities[0], 1.0);
    EXPECT_NEAR(builder->pdfGaussOffsets[1].x, -0.17738063218470482, 1e-15);
    EXPECT_NEAR(builder->pdfGaussOffsets[1].y, -0.2998941676115506, 1e-15);
    EXPECT_NEAR(builder->pdfDensities[1], 0.37544671065806196, 1e-15);
}

TEST(PdfSamples, BeyondTheLimitsAreRefusedBeforeSeeding)
{
    const auto builder = MakeObject<SHBuilder>();
    builder->GeneratePDFSamples(1, 2, 3);
    platform::srand(5);
    EXPECT_THROW(builder->GeneratePDFSamples(1, 16385, 1), std::invalid_argument);
    EXPECT_THROW(builder->GeneratePDFSamples(1, 1, (1 << 27) + 1), std::invalid_argument);
    EXPECT_EQ(platform::ThreadRandom().state, 5u);
    EXPECT_EQ(builder->pdfGaussOffsets.size(), 3u);
    EXPECT_EQ(builder->pdfSphericalSamples.size(), 4u);
    EXPECT_EQ(builder->pdfDensities.size(), 7u);
}

TEST(ImportanceSampling, HasTheBitsOfTheLiteralTreeAndLoop)
{
    const struct {
        double latitude, longitude, stdDev;
    } places[] = {{1.0, 2.0, 0.3}, {0.0, 0.0, 0.2},   {0.05, 6.2, 0.5}, {3.1, -4.0, -0.4},
                  {1.5, 1.0, 0.0}, {9.0, 100.0, 3.0}, {-2.0, 0.1, 0.1}, {20.0, -30.0, 40.0}};
    for (const int numSteps : {1, 5, 256, 1000}) {
        const literal::Tables tables(numSteps);
        Sampled sampled(numSteps);
        literal::PdfSamples pdf = literal::GeneratePdfSamples(3, 7, 61);
        sampled.builder->GeneratePDFSamples(3, 7, 61);
        const double hairAbove = std::nextafter(literal::twoPi, 7.0);
        pdf.cover[0].phi = sampled.builder->pdfSphericalSamples[0].phi = hairAbove;
        for (const auto &[latitude, longitude, stdDev] : places) {
            const std::vector<float> expected =
                literal::ImportanceSampledGauss(tables, pdf, latitude, longitude, stdDev);
            for (const orvane::Kernels *kernels : SupportedKernels()) {
                sampled.builder->UseInstructionSet(kernels->instructionSet);
                const SphericalHarmonic &set = sampled.Make(latitude, longitude, stdDev);
                EXPECT_EQ(set.numBands, 30);
                EXPECT_TRUE(SameBits(set.coefficients.data(), set.coefficients.size(),
                                     expected.data(), expected.size()))
                    << numSteps << " steps, " << latitude << ", " << longitude << ", " << stdDev;
            }
        }
    }
}

TEST(ImportanceSampling, OfOneOffsetIsTheBasisWhereItIsPlaced)
{
    const double pi = 3.1415927410125732;
    const struct {
        GaussOffset offset;
        double latitude, longitude, stdDev, theta, phi;
    } cases[] = {{{0.0, 0.0}, 0.7, 5.0, 0.3, 0.7, 5.0},
                 {{0.5, -1.0}, 0.75, 1.0, 0.5, 1.0, 0.5},
                 {{-1.0, 0.0}, 0.5, 1.0, 1.0, 0.5, 1.0 + pi}, // beyond the pole
                 {{1.0, 0.0}, 2.0, 1.0, 2.0, 4.0, 1.0},       // beyond the other, left there
                 {{1.0, 0.0}, 6.0, 1.0, 2.0, 8.0 - 2 * pi, 1.0}};
    Sampled sampled(1024);
    sampled.builder->GeneratePDFSamples(1, 0, 1);
    for (const auto &[offset, latitude, longitude, stdDev, theta, phi] : cases) {
        sampled.builder->pdfGaussOffsets[0] = offset;
        const SphericalHarmonic &set = sampled.Make(latitude, longitude, stdDev);
        for (int k = 0; k < 900; ++k)
            ASSERT_EQ(set.coefficients[k],
                      static_cast<float>(sampled.builder->SHBasisFunc(k, phi, theta) * fourPi))
                << k << " at latitude " << latitude;
    }
}

TEST(ImportanceSampling, BandZeroIsWhatTheDensitiesSay)
{
    // Without deviation all offsets share one leaf: its area a comes in as a / count for each
    // density, and as a for each point in the total.
    Sampled sampled(1024);
    const int count = 400;
    sampled.builder->GeneratePDFSamples(8, 0, count);
    const auto &densities = sampled.builder->pdfDensities;
    const double sum = std::accumulate(densities.begin(), densities.end(), 0.0);
    const double expected = K0 * fourPi * sum / count / count;
    EXPECT_NEAR(sampled.Make(1.0, 2.0, 0.0).coefficients[0], expected, 1e-5 * expected);
}

TEST(ImportanceSampling, PointsWhereTheMeanIs)
{
    Sampled sampled(1024);
    sampled.builder->GeneratePDFSamples(1, 40, 4000);
    for (const double latitude : {0.5, 1.6, 2.6})
        for (const double longitude : {0.0, 2.0, 6.0}) {
            const SphericalHarmonic &set = sampled.Make(latitude, longitude, 0.2);
            double highest = -1.0, bestTheta = 0.0, bestPhi = 0.0;
            for (int cell = 0; cell < 80 * 160; ++cell) {
                const int row = cell / 160;
                const double theta = row * 0.039;
                const double phi = (cell - row * 160) * 0.039;
                const double value = sampled.builder->GetValueAtBand(set, phi, theta, 12);
                if (value > highest) {
                    highest = value;
                    bestTheta = theta;
                    bestPhi = phi;
                }
            }
            const double cosine =
                std::cos(bestTheta) * std::cos(latitude) +
                std::sin(bestTheta) * std::sin(latitude) * std::cos(bestPhi - longitude);
            EXPECT_GT(cosine, std::cos(0.1)) << latitude << ", " << longitude;
        }
}

TEST(ImportanceSampling, HasTheShapeOfTheProjectedGaussian)
{
    // Where the leaves fit the cloud well, its densities make the projected Gaussian, lower by the
    // density at the mean, 0.3989, and by what the cloud does not reach.
    Sampled sampled(1024);
    sampled.builder->GeneratePDFSamples(1, 40, 20000);
    sampled.builder->GenerateSphericalSamples(1, 128);
    const auto projected = MakeObject<SphericalHarmonic>();
    sampled.builder->CreateGaussSH(*projected, 12, 0.4f, 1.6f, 2.0f);
    const SphericalHarmonic &set = sampled.Make(1.6f, 2.0f, 0.4f);
    double product = 0.0, square = 0.0, projectedSquare = 0.0;
    for (std::size_t k = 0; k < projected->coefficients.size(); ++k) {
        product += double{set.coefficients[k]} * projected->coefficients[k];
        square += double{set.coefficients[k]} * set.coefficients[k];
        projectedSquare += double{projected->coefficients[k]} * projected->coefficients[k];
    }
    EXPECT_GT(product / std::sqrt(square * projectedSquare), 0.98);
    EXPECT_GT(product / projectedSquare, 0.28);
    EXPECT_LT(product / projectedSquare, 0.4);
}

TEST(ImportanceSampling, RefusesAndSparesTheSet)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const auto builder = MakeObject<SHBuilder>();
    const auto set = MakeObject<SphericalHarmonic>();
    builder->CreateImportanceSampledGaussSH(*set, 1.0, 1.0, 0.1);
    ASSERT_EQ(set->coefficients.size(), 900u);
    EXPECT_TRUE(std::isnan(set->coefficients[0]) && std::isnan(set->coefficients[899]))
        << "no samples, no tables";

    set->SetNumBands(2);
    builder->GeneratePDFSamples(1, 0, 1);
    EXPECT_THROW(builder->CreateImportanceSampledGaussSH(*set, 1.0, 1.0, 0.1), orvane::NotReady);
    builder->GenerateLookUpTables(16);
    for (const double bad : {infinity, -infinity, std::nan("")}) {
        EXPECT_THROW(builder->CreateImportanceSampledGaussSH(*set, bad, 1.0, 0.1),
                     std::invalid_argument);
        EXPECT_THROW(builder->CreateImportanceSampledGaussSH(*set, 1.0, bad, 0.1),
                     std::invalid_argument);
        EXPECT_THROW(builder->CreateImportanceSampledGaussSH(*set, 1.0, 1.0, bad),
                     std::invalid_argument);
    }
    EXPECT_EQ(set->coefficients.size(), 4u);
}

TEST(ImportanceSampling, AddsToCoefficientsThatAreThere)
{
    Sampled sampled(64);
    sampled.builder->GeneratePDFSamples(1, 0, 1);
    const auto set = MakeObject<SphericalHarmonic>();
    set->SetNumBands(1);
    set->coefficients[0] = 1.0f;
    sampled.builder->CreateImportanceSampledGaussSH(*set, 1.0, 1.0, 0.1);
    EXPECT_EQ(set->coefficients[0], static_cast<float>(K0 * fourPi) + 1.0f);
    EXPECT_EQ(set->coefficients[1], sampled.Make(1.0, 1.0, 0.1).coefficients[1]);
}

} // namespace
