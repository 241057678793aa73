#pragma once

// Integrals of the sum of the basis functions' factors at twelve resolutions: over zones of
// cos theta of the polar factors, over wedges of phi of the angle factors.

#include <vector>

namespace orvane {

class LookUpTables;

/// Level L = 0..11 of either mip-map has 2^L cells of equal width: zones from cos theta = -1 to 1,
/// wedges from phi = 0 to 2 pi.
struct IntegralMipMaps {
    /// Replaces all fields.
    /// @throws NotReady without tables
    /// @throws std::bad_alloc
    /// The fields are unchanged then.
    void Generate(const LookUpTables &tables);

    /// [level][zone]: the integral of P(l, m, x) dx, x = cos theta, summed over all 30 bands and
    /// m = 0..l.
    std::vector<std::vector<double>> thetaIntegralMipMap;
    /// [level][wedge]: the integral over phi of the angle factors of the first 30 coefficient
    /// indices, summed. Those of order 0 are left out.
    std::vector<std::vector<double>> phiIntegralMipMap;
    /// The terms of the last zone of level 11, at LegendrePair(l, m).
    std::vector<double> integralScratch;
    /// The sum, over the four pairs of a zone and a wedge of level 1, of the two integrals'
    /// product.
    double totalIntegral = 0.0;
};

} // namespace orvane
