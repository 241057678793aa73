#include "orvane/sh/Basis.h"

#include "model/LiteralModel.h"
#include "orvane/base/Constants.h"
#include "tests/builder/BuilderCase.h"
#include "tests/native/Angles.h"
#include "tests/native/SameBits.h"

#include <cfloat>
#include <cmath>
#include <random>

using namespace orvane;

namespace {

TEST(Basis, NormalisesEveryFunction)
{
    const auto &table = NormalisationTable();
    for (int l = 0; l < tableBands; ++l)
        for (int m = -l; m <= l; ++m) {
            EXPECT_EQ(table[CoefficientIndex(l, m)],
                      literal::NormalisationTable()[CoefficientIndex(l, m)]);
            if (LDBL_MANT_DIG < 64)
                continue;
            // The quotient of the factorials as a product in extended precision.
            long double k = (2 * l + 1) / (4 * std::acos(-1.0L)) * (m ? 2 : 1);
            for (int factor = l - std::abs(m) + 1; factor <= l + std::abs(m); ++factor)
                k /= factor;
            EXPECT_NEAR(table[CoefficientIndex(l, m)] / std::sqrt(k), 1.0L, 2 * DBL_EPSILON);
        }
}

TEST(Basis, LegendreFunctionsAgreeWithTheStandardLibrary)
{
    EXPECT_EQ(LegendreP(2, 3, 0.3), 0.0);
    for (const double x : {-1.0, -0.9, -0.3, 0.0, 0.4, 0.99, 1.0})
        for (int l = 0; l < tableBands; ++l)
            for (int m = 0; m <= l; ++m) {
                const double sign = m % 2 ? -1 : 1; // the standard library leaves it out
                const double scale = NormalisationTable()[CoefficientIndex(l, m)];
                EXPECT_NEAR(LegendreP(l, m, x) * scale, sign * std::assoc_legendre(l, m, x) * scale,
                            1e-12)
                    << l << " " << m << " " << x;
            }
}

TEST(Basis, FoldsAnglesAsSubtractingTurnsDoes)
{
    std::vector<double> folded, expected;
    for (const double angle : AnglesUpTo(1e5)) {
        folded.push_back(WrapAngle(angle));
        expected.push_back(literal::WrapAngle(angle));
    }
    EXPECT_TRUE(SameBits(folded, expected));
}

// From 2^32 on each step rounds. The values are those of the loop itself, which takes up to four
// and a half thousand million steps.
TEST(Basis, FoldsLargeAnglesAsTheLoopDoes)
{
    constexpr std::pair<double, double> folded[] = {
        {0x1p+32, 0x1.bdf3ap+1},
        {0x1.000000038p+32, 0x1.66d0dp-1},
        {0x1.018d3a4p+32, 0x1.04be18p+2},
        {0x1.2a05f2p+32, 0x1.416f7p+2},
        {0x1.836e21014p+32, 0x1.5fec2p+2},
        {0x1p+33, 0x1.760ee8p+0},
        {0x1.00000004p+33, 0x1.96c804p+1},
        {0x1.65a0bcp+33, 0x1.66752p+2},
        {0x1.000000018p+34, 0x1.b52f14p+1},
        {0x1.b022388p+34, 0x1.6b61fp+2},
        {-0x1.00000001cp+32, 0x1.0c9798p+0},
        {-0x1.26580b754p+33, 0x1.b7eab8p+1},
        {-0x1.74876e8p+34, 0x1.15443cp+2},
    };
    for (const auto &[angle, rest] : folded)
        EXPECT_EQ(WrapAngle(angle), rest) << angle;
    // As the kernels fold.
    BuilderCase model(1024);
    EXPECT_EQ(model.builder.SHBasisFunc(899, 1.49e8, 1.5), 0.5494632119331615);
    model.set.SetNumBands(30);
    model.set.coefficients[899] = 1.0f;
    for (const orvane::Kernels *kernels : SupportedKernels()) {
        model.builder.UseInstructionSet(kernels->instructionSet);
        EXPECT_EQ(model.builder.GetValueAt(model.set, 1.49e8, 1.5), 0.5494632119331615);
    }
}

// From 2^56 on a step changes nothing. An angle is then a whole number of 2^-21, of which a turn
// has 13176795: the remainder is one of integers.
TEST(Basis, FoldsAnglesWithoutEndExactly)
{
    constexpr std::uint64_t turn = 13176795;
    ASSERT_EQ(std::ldexp(turn, -21), TWO_PI_F);
    std::mt19937_64 random(2);
    for (int exponent = 56; exponent < 1024; exponent += 7) {
        const double mantissa = static_cast<double>((random() >> 12) | std::uint64_t{1} << 52);
        const double angle = std::ldexp(mantissa, exponent - 52);
        std::uint64_t units = static_cast<std::uint64_t>(std::ldexp(angle, 52 - exponent)) % turn;
        for (int bit = 0; bit < exponent - 52 + 21; ++bit)
            units = units * 2 % turn;
        EXPECT_EQ(WrapAngle(angle), std::ldexp(units ? units : turn, -21)) << angle;
        EXPECT_EQ(WrapAngle(-angle), units ? TWO_PI_F - std::ldexp(units, -21) : 0.0) << angle;
    }
}

TEST(Basis, TruncationSaturatesAndSquaresWrap)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const std::pair<double, std::int32_t> cases[] = {{1.99, 1},
                                                     {-1.99, -1},
                                                     {2147483647.5, INT32_MAX},
                                                     {3e9, INT32_MAX},
                                                     {-3e9, INT32_MIN},
                                                     {-2147483647.5, -2147483647},
                                                     {infinity, INT32_MAX},
                                                     {-infinity, INT32_MIN},
                                                     {NAN, 0}};
    for (const auto &[value, truncated] : cases)
        EXPECT_EQ(TruncateToInt32(value), truncated) << value;
    EXPECT_EQ(CoefficientCount(-3), 9);
    EXPECT_EQ(CoefficientCount(46340), 2147395600);
    EXPECT_EQ(CoefficientCount(65536), 0);
    EXPECT_LT(CoefficientCount(46341), 0);
}

} // namespace
