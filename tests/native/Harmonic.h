#pragma once

#include "orvane/sh/Basis.h"

#include <cmath>
#include <cstdlib>

/// A basis function by the formulas, without tables.
inline double Harmonic(int l, int m, double phi, double cosTheta)
{
    const double angle = std::abs(m) * phi;
    // The standard library's Legendre functions leave out the sign (-1)^m.
    return orvane::NormalisationTable()[orvane::CoefficientIndex(l, m)] *
           std::assoc_legendre(l, std::abs(m), cosTheta) * (m % 2 ? -1 : 1) *
           (m < 0 ? std::sin(angle) : std::cos(angle));
}
