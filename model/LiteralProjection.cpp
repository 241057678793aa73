#include "model/LiteralProjection.h"

#include "platform/RuntimeRandom.h"

#include <algorithm>
#include <cmath>

namespace literal {

constexpr double halfPi = 1.5707963705062866;
constexpr double sqrtTwoPi = 2.5066282749176025;

double RandomUnit()
{
    return platform::rand() * 3.051850947599719e-05;
}

double RandomGauss()
{
    double b, s;
    do {
        const double a = platform::rand() * 3.051850947599719e-05 * 2.0 - 1.0;
        b = platform::rand() * 3.051850947599719e-05 * 2.0 - 1.0;
        s = b * b + a * a;
    } while (s >= 1.0);
    return std::sqrt(std::log10(s) * -2.0 / s) * b;
}

double GaussDensity(double x, double mean, double stdDev)
{
    const double d = x - mean;
    const double q = (d * d) / (stdDev * 2.0 * stdDev);
    const double e = std::exp(-q);
    return e * (1.0 / (stdDev * sqrtTwoPi));
}

std::vector<Sample> StratifiedSamples(int n)
{
    std::vector<Sample> samples;
    const float invF = 1.0f / static_cast<float>(n);
    const double inv = invF;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            const double u1 = RandomUnit();
            double rest = 1.0 - (u1 + i) * inv;
            if (rest < 0.0)
                rest = 0.0;
            const double theta = std::acos(std::sqrt(rest)) * 2.0;
            const double u2 = RandomUnit();
            const double phi = ((u2 + j) * inv) * twoPi;
            samples.push_back({theta, phi});
        }
    return samples;
}

Function Latitude(const Tables &tables)
{
    return [&tables](double, double theta) { return tables.sinLut[tables.PhiIndex(theta)]; };
}

Function Longitude(const Tables &tables)
{
    return [&tables](double phi, double theta) {
        const double w = std::pow((theta - halfPi) / halfPi, 4.0);
        return (1.0 - w) * tables.sinLut[tables.PhiIndex(phi)];
    };
}

Function Gauss(double stdDev, double latitude, double longitude)
{
    const double sl = std::sin(latitude);
    const double dirX = std::cos(longitude) * sl;
    const double dirZ = std::sin(longitude) * sl;
    const double dirY = std::cos(latitude);
    const double peakScale =
        1.0 / (std::exp(-((0.0 - 0.0) * (0.0 - 0.0) / (stdDev * 2.0 * stdDev))) *
               (1.0 / (stdDev * sqrtTwoPi)));
    return [=](double phi, double theta) {
        const double st = std::sin(theta);
        const double x = std::cos(phi) * st;
        const double z = std::sin(phi) * st;
        const double y = std::cos(theta);
        const double c = (y * dirY + x * dirX) + z * dirZ;
        const double a = std::acos(c);
        if (a > stdDev * 5.0)
            return 0.0;
        return std::exp(-((a - 0.0) * (a - 0.0) / (stdDev * 2.0 * stdDev))) *
               (1.0 / (stdDev * sqrtTwoPi)) * peakScale;
    };
}

void AddWeighted(const Tables &tables, double phi, double theta, double value,
                 std::vector<float> &coefficients)
{
    for (std::size_t k = 0; k < coefficients.size(); ++k) {
        const double b = tables.Basis(static_cast<int>(k), phi, theta);
        coefficients[k] = static_cast<float>(b * value) + coefficients[k];
    }
}

void AddPixel(const Tables &tables, double phi, double theta, float pixel,
              std::vector<float> &coefficients)
{
    for (std::size_t k = 0; k < coefficients.size(); ++k) {
        const double y = tables.Basis(static_cast<int>(k), phi, theta);
        coefficients[k] = coefficients[k] + static_cast<float>(y) * pixel;
    }
}

static void ScaleToArea(std::size_t numSamples, std::vector<float> &coefficients)
{
    const float weight = 12.566371f / static_cast<float>(numSamples);
    for (float &coefficient : coefficients)
        coefficient = weight * coefficient;
}

std::vector<float> Project(const Tables &tables, const std::vector<Sample> &samples, int bands,
                           const Function &function)
{
    std::vector<float> coefficients(static_cast<std::size_t>(bands * bands));
    for (const Sample &s : samples)
        AddWeighted(tables, s.phi, s.theta, function(s.phi, s.theta), coefficients);
    ScaleToArea(samples.size(), coefficients);
    return coefficients;
}

std::vector<float> ProjectImage(const Tables &tables, const std::vector<Sample> &samples, int width,
                                int height, std::size_t count, const std::uint8_t *pixels)
{
    std::vector<float> coefficients(count);
    const float rowScaleF = static_cast<float>(height) / 3.1415927f;
    const float colScaleF = static_cast<float>(width) / 6.2831855f;
    const double rowScale = rowScaleF;
    const double colScale = colScaleF;
    for (const Sample &s : samples) {
        const int row = std::min(static_cast<int>(s.theta * rowScale), height - 1);
        const int col = std::min(static_cast<int>(s.phi * colScale), width - 1);
        const float pixel = pixels[row * width + col];
        AddPixel(tables, s.phi, s.theta, pixel, coefficients);
    }
    ScaleToArea(samples.size(), coefficients);
    return coefficients;
}

} // namespace literal
