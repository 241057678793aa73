#include "orvane/builder/IntegralMipMaps.h"

#include "orvane/base/Constants.h"
#include "orvane/sh/LegendreIntegrals.h"
#include "orvane/sh/LookUpTables.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvane {
namespace {

/// Levels of a mip-map; level L has 2^L cells.
constexpr int mipLevels = 12;

/// Coefficient indices whose angle factors are integrated: bands 0 to 4 and part of band 5.
constexpr int phiTerms = 30;
/// The largest |m| among them.
constexpr int phiOrders = 5;

/// An antiderivative of the sum of the angle factors of the first 30 indices. Those of order 0 are
/// left out. The angle's sine and cosine are table entries, those of its multiples follow by
/// Chebyshev's recurrence, cos(j a) = 2 cos a cos((j - 1) a) - cos((j - 2) a) and the same for sin.
double PhiAntiderivative(const LookUpTables &tables, double phi)
{
    const std::int32_t step = tables.FoldedStep(phi);
    std::array<double, phiOrders + 1> cosine = {1.0, tables.cosLut[step]};
    std::array<double, phiOrders + 1> sine = {0.0, tables.sinLut[step]};
    for (int j = 2; j <= phiOrders; ++j) {
        sine[j] = sine[j - 1] * 2.0 * cosine[1] - sine[j - 2];
        cosine[j] = cosine[j - 1] * 2.0 * cosine[1] - cosine[j - 2];
    }
    double sum = 0.0;
    for (int index = 0; index < phiTerms; ++index) {
        const int m = tables.orderLut[index];
        if (m > 0)
            sum = sum + sine[m] / static_cast<double>(m);
        if (m < 0)
            sum = sum + cosine[-m] / static_cast<double>(m);
    }
    return sum;
}

/// Fills `scratch` with the integrals of one zone of cos theta at LegendrePair(l, m) and returns
/// their sum. The first three have formulas of their own, and that of l = m = 1 is the integral of
/// sin theta, the negative of P(1, 1).
double SumZone(double x1, double x2, std::array<double, legendrePairs> &scratch)
{
    scratch = IntegrateLegendre(x1, x2);
    scratch[LegendrePair(0, 0)] = x2 - x1;
    scratch[LegendrePair(1, 0)] = (x2 * x2 - x1 * x1) * 0.5;
    scratch[LegendrePair(1, 1)] = ((x2 * std::sqrt(1.0 - x2 * x2) + std::asin(x2)) -
                                   (x1 * std::sqrt(1.0 - x1 * x1) + std::asin(x1))) *
                                  0.5;
    double sum = 0.0;
    for (const double integral : scratch)
        sum = sum + integral;
    return sum;
}

} // namespace

void IntegralMipMaps::Generate(const LookUpTables &tables)
{
    tables.Require();
    std::vector<std::vector<double>> thetaLevels(mipLevels);
    std::vector<std::vector<double>> phiLevels(mipLevels);
    std::vector<double> lastZone(legendrePairs);
    std::array<double, legendrePairs> scratch;
    for (int level = 0; level < mipLevels; ++level) {
        const int cells = 1 << level;
        const double width = 2.0 / cells;
        const double wedge = static_cast<float>(TWO_PI_F) / static_cast<float>(cells);
        thetaLevels[level].resize(cells);
        phiLevels[level].resize(cells);
        double before = PhiAntiderivative(tables, 0.0);
        for (int k = 0; k < cells; ++k) {
            thetaLevels[level][k] = SumZone(k * width - 1.0, (k + 1) * width - 1.0, scratch);
            const double after = PhiAntiderivative(tables, (k + 1) * wedge);
            phiLevels[level][k] = after - before;
            before = after;
        }
    }
    std::copy(scratch.begin(), scratch.end(), lastZone.begin());

    thetaIntegralMipMap.swap(thetaLevels);
    phiIntegralMipMap.swap(phiLevels);
    integralScratch.swap(lastZone);
    const std::vector<double> &theta = thetaIntegralMipMap[1];
    const std::vector<double> &phi = phiIntegralMipMap[1];
    totalIntegral =
        ((phi[0] * theta[0] + phi[1] * theta[0]) + theta[1] * phi[0]) + phi[1] * theta[1];
}

} // namespace orvane
