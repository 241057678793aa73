#include "orvane/sh/LegendreIntegrals.h"
#include "model/LiteralModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using orvane::LegendrePair;

/// Nodes and weights of Gauss's rule on [-1, 1], by Newton's method from Legendre's polynomial.
struct GaussRule {
    static constexpr int size = 32;
    long double node[size], weight[size];

    GaussRule()
    {
        for (int i = 0; i < size; ++i) {
            long double x = std::cos(3.14159265358979L * (i + 0.75L) / (size + 0.5L));
            long double slope = 0;
            for (int iteration = 0; iteration < 8; ++iteration) {
                long double before = 1, value = x;
                for (int n = 2; n <= size; ++n)
                    before = std::exchange(value, ((2 * n - 1) * x * value - (n - 1) * before) / n);
                slope = size * (x * value - before) / (x * x - 1);
                x -= value / slope;
            }
            node[i] = x;
            weight[i] = 2 / ((1 - x * x) * slope * slope);
        }
    }
};

/// The integrals over theta of P(l, m, cos theta) sin theta, and the largest |P| met.
struct Quadrature {
    long double integral[orvane::legendrePairs] = {};
    double largest[orvane::legendrePairs] = {};

    Quadrature(double lower, double upper)
    {
        static const GaussRule rule;
        const long double first = std::acos(static_cast<long double>(upper));
        const long double width = std::acos(static_cast<long double>(lower)) - first;
        const int pieces = 1 + static_cast<int>(width * 3);
        for (int piece = 0; piece < pieces; ++piece)
            for (int i = 0; i < rule.size; ++i) {
                const long double theta = first + width / pieces * (piece + (1 + rule.node[i]) / 2);
                const double x = static_cast<double>(std::cos(theta));
                for (int l = 0; l < 30; ++l)
                    for (int m = 0; m <= l; ++m) {
                        const double p = literal::LegendreP(l, m, x);
                        integral[LegendrePair(l, m)] +=
                            p * std::sin(theta) * rule.weight[i] * width / (2 * pieces);
                        largest[LegendrePair(l, m)] =
                            std::max(largest[LegendrePair(l, m)], std::abs(p));
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
