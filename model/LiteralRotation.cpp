#include "model/LiteralRotation.h"

#include <cmath>
#include <cstdlib>

namespace literal {

std::vector<float> RotateZ(const std::vector<float> &in, int bands, double angle)
{
    double cosK[30] = {1.0, std::cos(angle)};
    double sinK[30] = {0.0, std::sin(angle)};
    for (int k = 2; k < 30; ++k) {
        cosK[k] = (cosK[k - 1] * 2.0) * cosK[1] - cosK[k - 2];
        sinK[k] = (sinK[k - 1] * 2.0) * cosK[1] - sinK[k - 2];
    }
    const auto input = [&in](int i) {
        return i < static_cast<int>(in.size()) ? static_cast<double>(in[i]) : 0.0;
    };
    std::vector<float> out(bands * bands);
    if (bands >= 1)
        out[0] = static_cast<float>(input(0));
    for (int l = 1; l < (bands < 30 ? bands : 30); ++l) {
        const int centre = l * (l + 1);
        out[centre] = static_cast<float>(input(centre));
        for (int m = 1; m <= l; ++m) {
            const double negative = input(centre - m);
            const double positive = input(centre + m);
            out[centre - m] = static_cast<float>(cosK[m] * negative - sinK[m] * positive);
            out[centre + m] = static_cast<float>(cosK[m] * positive + sinK[m] * negative);
        }
    }
    return out;
}

double &BandRotation::R(int l, int a, int b)
{
    return bands[l][(a + l) * (2 * l + 1) + b + l];
}

BandRotation::BandRotation(const double matrix[3][3])
{
    for (int l = 0; l < 30; ++l)
        bands[l].resize((2 * l + 1) * (2 * l + 1));
    R(0, 0, 0) = 1.0;
    const int axis[] = {1, 2, 0}; // of orders -1, 0, 1
    for (int a = -1; a <= 1; ++a)
        for (int b = -1; b <= 1; ++b)
            R(1, a, b) = matrix[axis[a + 1]][axis[b + 1]];
    for (int l = 2; l < 30; ++l)
        for (int n = -l; n <= l; ++n)
            for (int m = -l; m <= l; ++m)
                R(l, m, n) = Element(l, m, n);
}

double BandRotation::P(int i, int l, int a, int b)
{
    if (b == -l)
        return R(1, i, 1) * R(l - 1, a, -l + 1) + R(1, i, -1) * R(l - 1, a, l - 1);
    if (b == l)
        return R(1, i, 1) * R(l - 1, a, l - 1) - R(1, i, -1) * R(l - 1, a, -l + 1);
    return R(l - 1, a, b) * R(1, i, 0);
}

double BandRotation::U(int l, int m, int n)
{
    return P(0, l, m, n);
}

double BandRotation::V(int l, int m, int n)
{
    if (m == 0)
        return P(1, l, 1, n) + P(-1, l, -1, n);
    if (m > 0) {
        const double e = m == 1 ? 1.0 : 0.0;
        return P(1, l, m - 1, n) * std::sqrt(e + 1.0) - P(-1, l, -m + 1, n) * (1.0 - e);
    }
    const double e = m == -1 ? 1.0 : 0.0;
    return P(-1, l, -m - 1, n) * std::sqrt(e + 1.0) + P(1, l, m + 1, n) * (1.0 - e);
}

double BandRotation::W(int l, int m, int n)
{
    if (m == 0)
        return 0.0;
    if (m > 0)
        return P(-1, l, -m - 1, n) + P(1, l, m + 1, n);
    return P(1, l, m - 1, n) - P(-1, l, -m + 1, n);
}

double BandRotation::Element(int l, int m, int n)
{
    const int a = std::abs(m);
    const double d = m == 0 ? 1.0 : 0.0;
    const double denom = std::abs(n) == l ? (2 * l - 1) * (2 * l) : (l - n) * (l + n);
    double u = std::sqrt(static_cast<double>((l - m) * (l + m)) / denom);
    double v = std::sqrt((static_cast<double>(a + l - 1) * (d + 1.0)) * static_cast<double>(a + l) /
                         denom) *
               0.5 * (1.0 - d * 2.0);
    double w = std::sqrt(static_cast<double>((l - a - 1) * (l - a)) / denom) * -0.5 * (1.0 - d);
    if (u != 0.0)
        u = u * U(l, m, n);
    if (v != 0.0)
        v = v * V(l, m, n);
    if (w != 0.0)
        w = w * W(l, m, n);
    return (u + v) + w;
}

std::vector<float> RotateSH(const std::vector<float> &in, const double matrix[3][3])
{
    BandRotation rotation(matrix);
    std::vector<float> out(900);
    if (!in.empty())
        out[0] = in[0];
    for (int l = 1; l < 30 && static_cast<int>(in.size()) >= (l + 1) * (l + 1); ++l)
        for (int n = -l; n <= l; ++n) {
            double sum = 0.0;
            for (int m = -l; m <= l; ++m)
                sum = sum + rotation.R(l, m, n) * static_cast<double>(in[l * l + l + m]);
            out[l * l + l + n] = static_cast<float>(sum);
        }
    return out;
}

} // namespace literal
