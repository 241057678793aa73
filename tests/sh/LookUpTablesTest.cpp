#include "orvane/sh/LookUpTables.h"

#include "orvane/base/Constants.h"
#include "orvane/base/PolarRow.h"
#include "tests/builder/BuilderCase.h"

#include <span>

using namespace orvane;

namespace {

TEST(LookUpTables, HaveTheLiteralBitsAtEveryInstructionSet)
{
    for (const int numSteps : {1, 5, 31, 256, 1000, 1024, 1027}) {
        BuilderCase model;
        SHBuilder &builder = model.builder;
        const literal::Tables tables(numSteps);
        std::vector<double> rows(std::size_t(numSteps) * polarRowLength); // padded with zeros
        for (int l = 0; l < 30; ++l)
            for (int m = 0; m <= l; ++m)
                for (int k = 0; k < numSteps; ++k) {
                    const int index = CoefficientIndex(l, m);
                    rows[std::size_t(k) * polarRowLength + PolarIndex(l, m)] =
                        literal::NormalisationTable()[index] * tables.legendreLut[index][k];
                }
        for (const Kernels *kernels : SupportedKernels()) {
            SCOPED_TRACE(testing::Message() << Name(kernels->instructionSet) << ", " << numSteps);
            builder.UseInstructionSet(kernels->instructionSet);
            builder.GenerateLookUpTables(numSteps);
            EXPECT_EQ(builder.tables.angleScale, tables.angleScale);
            EXPECT_EQ(builder.tables.numSteps, numSteps);
            EXPECT_EQ(builder.tables.maxBands, 30);
            EXPECT_EQ(builder.tables.maxCoefficients, 900);
            EXPECT_TRUE(SameBits(builder.tables.cosLut, tables.cosLut));
            EXPECT_TRUE(SameBits(builder.tables.sinLut, tables.sinLut));
            EXPECT_EQ(builder.tables.orderLut, tables.orderLut);
            ASSERT_EQ(builder.tables.legendreLut.size(), 900u);
            const auto expectSteps = [&](int count) {
                EXPECT_TRUE(SameBits(builder.tables.polarRows,
                                     std::span(rows).first(std::size_t(count) * polarRowLength)));
                for (int index = 0; index < 900; ++index)
                    EXPECT_TRUE(SameBits(builder.tables.legendreLut[index],
                                         std::span(tables.legendreLut[index]).first(count)));
            };
            // Up to pi at first; the rest at the first point that asks for it.
            const int upToPi = numSteps / 2 + 1;
            expectSteps(upToPi);
            builder.tables.EnsurePolarStep(builder.tables.PolarStep(pi));
            expectSteps(upToPi);
            builder.tables.EnsurePolarStep(numSteps - 1);
            expectSteps(numSteps);
            builder.GenerateLookUpTables(numSteps); // in place
            expectSteps(upToPi);
            builder.GenerateLookUpTables(2); // so that the next set starts anew
        }
    }
}

TEST(LookUpTables, AreReadWithTheLiteralBitsAtEveryInstructionSet)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> azimuth(-20.0, 20.0);
    std::uniform_real_distribution<double> polar(0.0, 6.0);
    for (const int numSteps : {1, 5, 7, 10, 100, 256, 1000, 1024}) {
        BuilderCase model(numSteps);
        model.SetRandomly(30);
        const float *coefficients = model.set.coefficients.data();
        std::vector<std::pair<double, double>> points = {
            {TWO_PI_F, 0.5}, {-TWO_PI_F, 3.0}, {0.3, 0.0}};
        for (int step = 1; step < numSteps && step < 9; step += 2) {
            const double edge = model.EdgeOf(step);
            points.push_back({edge, std::nextafter(edge, 0.0)});
            points.push_back({std::nextafter(edge, 0.0), edge});
        }
        while (points.size() < 60)
            points.push_back({azimuth(random), polar(random)});
        for (int point = 0; point < 60; ++point) {
            const auto [phi, theta] = points[point];
            const int bands = point % 31;
            const double expected = model.tables.Evaluate(coefficients, bands, phi, theta);
            for (const Kernels *kernels : SupportedKernels()) {
                model.builder.UseInstructionSet(kernels->instructionSet);
                ASSERT_EQ(model.builder.GetValueAtBand(model.set, phi, theta, bands), expected);
                ASSERT_EQ(model.builder.GetValueAtBand(model.set, phi, theta, -bands), expected);
                model.set.numBands = bands;
                ASSERT_EQ(model.builder.GetValueAt(model.set, phi, theta), expected);
            }
            for (int index = 0; index < 900 && point < 20; ++index)
                ASSERT_EQ(model.builder.SHBasisFunc(index, phi, theta),
                          model.tables.Basis(index, phi, theta))
                    << numSteps << " steps, " << index << " at " << phi << ", " << theta;
        }
        // The square of this count, a wrapping product, is 17: band 4 is summed in part.
        double sum = 0.0;
        for (int i = 0; i < 17; ++i)
            sum += coefficients[i] * model.tables.Basis(i, 0.3, 0.4);
        EXPECT_EQ(model.builder.GetValueAtBand(model.set, 0.3, 0.4, 869476073), sum);
    }
}

TEST(LookUpTables, RefuseWhatHasNoEntry)
{
    BuilderCase model;
    SHBuilder &builder = model.builder;
    SphericalHarmonic &set = model.set;
    EXPECT_EQ(builder.GetValueAt(set, NAN, -1.0), 0.0); // no bands: nothing is looked at
    model.SetRandomly(3);
    for (const int band : {0, 65536, 46341})
        EXPECT_EQ(builder.GetValueAtBand(set, infinity, -1.0, band), 0.0);
    builder.GenerateLookUpTables(64);
    const std::pair<double, double> illegal[] = {
        {0, -1e-300},   {0, -1},  {0, 6.284},    {0, 7},         {0, 1e300}, {0, infinity},
        {0, -infinity}, {0, NAN}, {infinity, 0}, {-infinity, 0}, {NAN, 0}};
    for (const auto &[phi, theta] : illegal) {
        EXPECT_THROW(builder.GetValueAt(set, phi, theta), std::invalid_argument) << theta;
        EXPECT_THROW(builder.SHBasisFunc(0, phi, theta), std::invalid_argument) << theta;
    }
    EXPECT_NO_THROW(builder.GetValueAt(set, 8e307, -0.0));
    EXPECT_THROW(builder.GetValueAt(set, 1.7e308, 0.0), std::invalid_argument);
    for (const int band : {4, 31, -4, 46340})
        EXPECT_THROW(builder.GetValueAtBand(set, 0.0, 0.0, band), std::invalid_argument);
    for (const int index : {-1, 900, least, most})
        EXPECT_THROW(builder.SHBasisFunc(index, 0.0, 0.0), std::out_of_range);
    set.numBands = 4; // written on its own
    EXPECT_THROW(builder.GetValueAt(set, 0.0, 0.0), std::invalid_argument);
    model.SetRandomly(31);
    EXPECT_THROW(builder.GetValueAt(set, 0.0, 0.0), std::invalid_argument);
}

} // namespace
