#include "orvane/sh/LegendreIntegrals.h"
#include "model/LiteralModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using orvane::LegendrePair;

/// The integrals over theta of P(l, m, cos theta) sin theta, and the largest |P| met. By the tanh-sinh
/// rule: theta = middle + half the width * tanh(pi / 2 sinh t) at equal steps of t.
struct Quadrature {
    long double integral[orvane::legendrePairs] = {};
    double largest[orvane::legendrePairs] = {};

    Quadrature(double lower, double upper)
    {
        const long double first = std::acos(static_cast<long double>(upper));
        const long double half = (std::acos(static_cast<long double>(lower)) - first) / 2;
        constexpr long double step = 1 / 24.0L;
        constexpr long double quarterTurn = 1.57079632679489661923L;
        for (int i = -96; i <= 96; ++i) {
            const long double at = quarterTurn * std::sinh(i * step);
            const long double theta = first + half * (1 + std::tanh(at));
            const long double weight =
                half * step * quarterTurn * std::cosh(i * step) / (std::cosh(at) * std::cosh(at));
            const double x = static_cast<double>(std::cos(theta));
            for (int l = 0; l < 30; ++l)
                for (int m = 0; m <= l; ++m) {
                    const double p = literal::LegendreP(l, m, x);
                    double &most = largest[LegendrePair(l, m)];
                    integral[LegendrePair(l, m)] += p * std::sin(theta) * weight;
                    most = std::max(most, std::abs(p));
                }
        }
    }
};

TEST(LegendreIntegrals, AgreeWithQuadratureInTheta)
{
    const double narrow = 1.0 / 2048;
    std::vector<std::pair<double, double>> zones = {
        {-1, 1},      {-1, 0},          {0, 1},        {0.5, 1},
        {-1, -0.75},  {-0.5, 0.5},      {-0.1, 0.9},   {0.3, 0.31},
        {-0.7, 0.6},  {1 - narrow, 1},  {0, narrow},   {-narrow, 0},
        {-1, narrow}, {-1, narrow - 1}, {-1, -0.9999}, {0.49951171875, 0.5}};
    for (int cell = -2048; cell < 2048; cell += 185)
        zones.push_back({cell * narrow, (cell + 1) * narrow});
    for (const auto &[lower, upper] : zones) {
        const auto integrals = orvane::IntegrateLegendre(lower, upper);
        const Quadrature expected(lower, upper);
        for (int l = 0; l < 30; ++l)
            for (int m = 0; m <= l; ++m) {
                const int i = LegendrePair(l, m);
                const double scale = std::max(1.0, expected.largest[i] * (upper - lower));
                EXPECT_NEAR(integrals[i], static_cast<double>(expected.integral[i]), 4e-13 * scale)
                    << "l " << l << " m " << m << " on " << lower << " to " << upper;
            }
    }
}

} // namespace
