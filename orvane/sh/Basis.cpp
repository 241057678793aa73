#include "orvane/sh/Basis.h"

#include "orvane/base/Constants.h"

#include <cmath>
#include <cstdlib>

namespace orvane {
namespace {

/// n! for n = 0..58, each rounded once: a product of rounded factors drifts from 28! on.
// clang-format off
constexpr double factorials[2 * tableBands - 1] = {
    0x1p+0, 0x1p+0, 0x1p+1, 0x1.8p+2, 0x1.8p+4, 0x1.ep+6, 0x1.68p+9, 0x1.3bp+12,
    0x1.3bp+15, 0x1.626p+18, 0x1.baf8p+21, 0x1.308a8p+25, 0x1.c8cfcp+28, 0x1.7328ccp+32,
    0x1.44c3b28p+36, 0x1.30777758p+40, 0x1.30777758p+44, 0x1.437eeecd8p+48, 0x1.6beecca73p+52,
    0x1.b02b930689p+56, 0x1.0e1b3be415ap+61, 0x1.6283be9b5c62p+65, 0x1.e77526159f06cp+69,
    0x1.5e5c335f8a4cep+74, 0x1.06c52687a7b9ap+79, 0x1.9a940c33f6121p+83, 0x1.4d9849ea37eebp+88,
    0x1.19787e5d9f316p+93, 0x1.ec92dd23d6967p+97, 0x1.be6518687a785p+102, 0x1.a27ec6e1f2d0dp+107,
    0x1.956ad0aae33a4p+112, 0x1.956ad0aae33a4p+117, 0x1.a21627303a541p+122, 0x1.bc3789a33df96p+127,
    0x1.e5dcbe8a8bc8cp+132, 0x1.114c2b2deea0fp+138, 0x1.3c0011ed1bea1p+143, 0x1.774015499125fp+148,
    0x1.c95619f1a8e64p+153, 0x1.1dd5d037098fep+159, 0x1.6e39f2c684406p+164, 0x1.e0ac0ea48d948p+169,
    0x1.42f399d68f1fcp+175, 0x1.bc0ef38704cbbp+180, 0x1.383a833aef5f3p+186, 0x1.c0d41ca4b818ep+191,
    0x1.499bc508f7324p+197, 0x1.ee69a78d72cb6p+202, 0x1.7a88e4484be3bp+208, 0x1.27baf2587b49ep+214,
    0x1.d751f23d047dcp+219, 0x1.7ef294d193a63p+225, 0x1.3d20e33d8e45ap+231, 0x1.0b93bfbbf00acp+237,
    0x1.cbe5f18b04928p+242, 0x1.92693359a4003p+248, 0x1.6665b1bbd6102p+254, 0x1.44cc291239feap+260,
};
// clang-format on

} // namespace

// [1] equation (5); for m != 0 with the sqrt(2) of equation (6).
const std::array<double, tableCoefficients> &NormalisationTable()
{
    static const std::array<double, tableCoefficients> table = [] {
        std::array<double, tableCoefficients> values{};
        for (int l = 0; l < tableBands; ++l)
            for (int m = -l; m <= l; ++m) {
                const int order = std::abs(m);
                const double k = std::sqrt(((2.0 * l + 1.0) * factorials[l - order]) /
                                           (4.0 * pi * factorials[l + order]));
                values[CoefficientIndex(l, m)] = m == 0 ? k : k * std::sqrt(2.0);
            }
        return values;
    }();
    return table;
}

// The recurrence over the bands of one order, [2] equations (6.8.7) to (6.8.9):
//
//   P(m, m)     = (-1)^m (2m - 1)!! (1 - x^2)^(m / 2)
//   P(m + 1, m) = (2m + 1) x P(m, m)
//   P(l, m)     = ((2l - 1) x P(l - 1, m) - (l + m - 1) P(l - 2, m)) / (l - m)
double LegendreP(int l, int m, double x)
{
    double pmm = 1.0;
    if (m > 0) {
        const double somx2 = std::sqrt((1.0 - x) * (x + 1.0));
        double fact = 1.0;
        for (int i = 0; i < m; ++i) {
            pmm *= -fact * somx2;
            fact += 2.0;
        }
    }
    if (l == m)
        return pmm;
    double pmmp1 = (m * 2.0 + 1.0) * x * pmm;
    if (l == m + 1)
        return pmmp1;
    double pll = 0.0;
    for (int ll = m + 2; ll <= l; ++ll) {
        pll = ((ll * 2.0 - 1.0) * x * pmmp1 - (ll + m - 1.0) * pmm) / (ll - m);
        pmm = pmmp1;
        pmmp1 = pll;
    }
    return pll;
}

namespace {

// Where a loop that takes TWO_PI_F off a magnitude again and again comes below 2^32, to the bit.
// From 2^32 on each step rounds to the unit of its binade [2^e, 2^(e+1)). All steps within one
// binade but the first take off the same multiple of that unit: TWO_PI_F is an odd multiple of
// 2^-21, so that for e = 32 the exact difference lies half-way, and goes to the even one from the
// second step on; for larger e nothing lies half-way. A binade is then one remainder by what a step
// takes off. From 2^56 on a step changes nothing and the loop never ends; the angle stays.
double BelowRounding(double magnitude)
{
    while (magnitude >= 0x1p32) {
        double next = magnitude - TWO_PI_F;
        if (next == magnitude)
            return magnitude;
        const double after = next - TWO_PI_F;
        const int exponent = std::ilogb(magnitude);
        if (std::ilogb(after) == exponent) {
            const double lowest = std::ldexp(1.0, exponent);
            next = lowest + std::fmod(next - lowest, next - after);
        }
        magnitude = next;
    }
    return magnitude;
}

} // namespace

// The same bits as subtracting or adding TWO_PI_F until the angle is in range: TWO_PI_F is a
// multiple of 2^-21, so below 2^32 each step of such a loop is exact except the last addition to a
// negative angle, and the loop ends at the exact remainder.
double WrapAngle(double angle)
{
    if (angle >= 0.0 && angle <= TWO_PI_F)
        return angle;
    angle = std::copysign(BelowRounding(std::fabs(angle)), angle);
    const double remainder = std::fmod(angle, TWO_PI_F);
    if (angle > 0.0)
        return remainder == 0.0 ? TWO_PI_F : remainder;
    return remainder == 0.0 ? 0.0 : remainder + TWO_PI_F;
}

} // namespace orvane
