#include "orvane/builder/LookUpTables.h"

#include "model/LiteralModel.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Basis.h"
#include "orvane/sh/Constants.h"
#include "orvane/sh/Errors.h"
#include "tests/kernels/EachInstructionSet.h"
#include "tests/native/MakeObject.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

using namespace orvane;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

class LookUpTables : public testing::Test {
protected:
    void SetRandomly(int bands)
    {
        std::normal_distribution<float> normal;
        set.SetNumBands(bands);
        for (float &coefficient : set.coefficients)
            coefficient = normal(random);
    }

    const std::shared_ptr<SHBuilder> builderOwner = MakeObject<SHBuilder>();
    const std::shared_ptr<SphericalHarmonic> setOwner = MakeObject<SphericalHarmonic>();
    SHBuilder &builder = *builderOwner;
    SphericalHarmonic &set = *setOwner;
    std::mt19937 random{1};
};

bool SameBits(const std::vector<double> &a, const std::vector<double> &b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

TEST_F(LookUpTables, HaveTheLiteralBitsAtEveryInstructionSet)
{
    for (const int numSteps : {1, 5, 31, 256, 1000, 1024, 1027}) {
        const literal::Tables tables(numSteps);
        for (const Kernels *kernels : SupportedKernels()) {
            SCOPED_TRACE(testing::Message() << Name(kernels->instructionSet) << ", " << numSteps);
            builder.UseInstructionSet(kernels->instructionSet);
            builder.GenerateLookUpTables(numSteps);
            EXPECT_EQ(builder.angleScale, tables.angleScale);
            EXPECT_EQ(builder.numSteps, numSteps);
            EXPECT_EQ(builder.maxBands, 30);
            EXPECT_EQ(builder.maxCoefficients, 900);
            EXPECT_TRUE(SameBits(builder.cosLut, tables.cosLut));
            EXPECT_TRUE(SameBits(builder.sinLut, tables.sinLut));
            EXPECT_EQ(builder.orderLut, tables.orderLut);
            ASSERT_EQ(builder.legendreLut.size(), 900u);
            std::vector<double> rows(std::size_t(numSteps) * polarRowLength); // padded with zeros
            for (int l = 0; l < 30; ++l)
                for (int m = -l; m <= l; ++m) {
                    const int index = CoefficientIndex(l, m);
                    EXPECT_TRUE(SameBits(builder.legendreLut[index], tables.legendreLut[index]));
                    for (int k = 0; k < numSteps; ++k)
                        rows[std::size_t(k) * polarRowLength + PolarIndex(l, std::abs(m))] =
                            literal::NormalisationTable()[index] * tables.legendreLut[index][k];
                }
            EXPECT_TRUE(
                SameBits(rows, {builder.polarTable.rows.begin(), builder.polarTable.rows.end()}));
        }
    }
}

TEST_F(LookUpTables, MapAnglesAsStated)
{
    builder.GenerateLookUpTables(256);
    EXPECT_EQ(builder.angleScale, 40.7436637878418);
    const double step = 0.02454369328916073;
    EXPECT_EQ(builder.cosLut[2], std::cos(2 * step));
    EXPECT_EQ(TableIndex(builder.angleScale, 2 * step), 1);
    EXPECT_EQ(PolarStep(builder, std::acos(-1.0)), 127u);
    EXPECT_EQ(TableIndex(builder.angleScale, TWO_PI_F), 255);
    builder.GenerateLookUpTables(1);
    EXPECT_EQ(builder.angleScale, 0.15915493667125702);
    EXPECT_EQ(builder.sinLut, std::vector<double>{0.0});
    EXPECT_EQ(builder.cosLut, std::vector<double>{1.0});
}

TEST_F(LookUpTables, RefuseSizesOutOfRangeAndKeepTheOldOnes)
{
    builder.GenerateLookUpTables(8);
    for (const int numSteps : {0, -1, 262145, INT32_MIN, INT32_MAX})
        EXPECT_THROW(builder.GenerateLookUpTables(numSteps), std::invalid_argument);
    EXPECT_EQ(builder.numSteps, 8);
    EXPECT_TRUE(SameBits(builder.legendreLut[899], literal::Tables(8).legendreLut[899]));
}

TEST_F(LookUpTables, BasisFunctionsHaveTheLiteralBits)
{
    std::uniform_real_distribution<double> azimuth(-20.0, 20.0);
    std::uniform_real_distribution<double> polar(0.0, 3.14159);
    for (const int numSteps : {1, 5, 10, 256, 1000}) {
        builder.GenerateLookUpTables(numSteps);
        const literal::Tables tables(numSteps);
        for (int point = 0; point < 20; ++point) {
            const double phi = point == 0 ? TWO_PI_F : azimuth(random);
            const double theta = point == 1 ? 0.0 : polar(random);
            for (int index = 0; index < 900; ++index)
                ASSERT_EQ(builder.SHBasisFunc(index, phi, theta), tables.Basis(index, phi, theta))
                    << numSteps << " " << index << " " << phi << " " << theta;
        }
    }
}

TEST_F(LookUpTables, EvaluationHasTheLiteralBitsAtEveryInstructionSet)
{
    std::uniform_real_distribution<double> azimuth(-20.0, 20.0);
    std::uniform_real_distribution<double> polar(0.0, 6.0);
    SetRandomly(30);
    for (const int numSteps : {1, 7, 100, 1024}) {
        builder.GenerateLookUpTables(numSteps);
        const literal::Tables tables(numSteps);
        for (int point = 0; point < 60; ++point) {
            const double phi = point == 0 ? TWO_PI_F : point == 1 ? -TWO_PI_F : azimuth(random);
            const double theta = polar(random);
            const int bands = point % 31;
            const double expected = tables.Evaluate(set.coefficients.data(), bands, phi, theta);
            for (const Kernels *kernels : SupportedKernels()) {
                builder.UseInstructionSet(kernels->instructionSet);
                ASSERT_EQ(builder.GetValueAtBand(set, phi, theta, bands), expected);
                ASSERT_EQ(builder.GetValueAtBand(set, phi, theta, -bands), expected);
            }
        }
    }
    // The square of this count, a wrapping product, is 17: band 4 is summed in part.
    double sum = 0.0;
    for (int i = 0; i < 17; ++i)
        sum += set.coefficients[i] * literal::Tables(1024).Basis(i, 0.3, 0.4);
    EXPECT_EQ(builder.GetValueAtBand(set, 0.3, 0.4, 869476073), sum);
}

TEST_F(LookUpTables, EvaluateByHand)
{
    SetRandomly(3);
    builder.GenerateLookUpTables(1024);
    EXPECT_EQ(builder.GetValueAtBand(set, 0.3, 0.4, 1), set.coefficients[0] * 0.28209479177387814);
    EXPECT_EQ(builder.GetValueAt(set, 0.3, 0.4), builder.GetValueAtBand(set, 0.3, 0.4, 3));
    EXPECT_EQ(builder.GetValueAt(set, -0.5, 0.4), builder.GetValueAt(set, -0.5 + TWO_PI_F, 0.4));
    // Against the formulas, to the precision of the tables.
    builder.GenerateLookUpTables(4096);
    for (const double theta : {0.1, 1.0, 3.0})
        for (int l = 0; l < 30; ++l)
            for (int m = -l; m <= l; ++m) {
                const double phi = 2.0;
                const double angle = std::abs(m) * phi;
                const double exact = NormalisationTable()[CoefficientIndex(l, m)] *
                                     std::assoc_legendre(l, std::abs(m), std::cos(theta)) *
                                     (m % 2 ? -1 : 1) * (m < 0 ? std::sin(angle) : std::cos(angle));
                EXPECT_NEAR(builder.SHBasisFunc(CoefficientIndex(l, m), phi, theta), exact, 0.1);
            }
}

TEST_F(LookUpTables, RefuseWhatHasNoEntry)
{
    EXPECT_EQ(builder.GetValueAt(set, NAN, -1.0), 0.0); // no bands: nothing is looked at
    SetRandomly(3);
    EXPECT_EQ(builder.GetValueAtBand(set, infinity, -1.0, 0), 0.0);
    EXPECT_EQ(builder.GetValueAtBand(set, infinity, -1.0, 65536), 0.0);
    EXPECT_EQ(builder.GetValueAtBand(set, infinity, -1.0, 46341), 0.0);
    EXPECT_THROW(builder.GetValueAt(set, 0.0, 0.0), NotReady);
    EXPECT_THROW(builder.SHBasisFunc(0, 0.0, 0.0), NotReady);
    builder.GenerateLookUpTables(64);
    for (const double theta :
         {-1e-300, -1.0, 6.284, 7.0, 1e300, infinity, -infinity, double(NAN)}) {
        EXPECT_THROW(builder.GetValueAt(set, 0.0, theta), std::invalid_argument) << theta;
        EXPECT_THROW(builder.SHBasisFunc(0, 0.0, theta), std::invalid_argument) << theta;
    }
    for (const double phi : {infinity, -infinity, double(NAN)}) {
        EXPECT_THROW(builder.GetValueAt(set, phi, 0.0), std::invalid_argument);
        EXPECT_THROW(builder.SHBasisFunc(0, phi, 0.0), std::invalid_argument);
    }
    EXPECT_NO_THROW(builder.GetValueAt(set, 8e307, -0.0));
    EXPECT_THROW(builder.GetValueAt(set, 1.7e308, 0.0), std::invalid_argument);
    for (const int band : {4, 31, -4, 46340})
        EXPECT_THROW(builder.GetValueAtBand(set, 0.0, 0.0, band), std::invalid_argument);
    for (const int index : {-1, 900, INT32_MIN, INT32_MAX})
        EXPECT_THROW(builder.SHBasisFunc(index, 0.0, 0.0), std::out_of_range);
    set.numBands = 4; // written on its own
    EXPECT_THROW(builder.GetValueAt(set, 0.0, 0.0), std::invalid_argument);
    SetRandomly(31);
    EXPECT_THROW(builder.GetValueAt(set, 0.0, 0.0), std::invalid_argument);
}

} // namespace
