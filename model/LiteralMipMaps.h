#pragma once

// The parts of the integral mip-maps that are fixed to the bit.

#include "model/LiteralModel.h"

#include <vector>

namespace literal {

/// Antiderivative of the sum of the angle factors of the first 30 coefficient indices.
double PhiAntiderivative(const Tables &tables, double phi);

/// Replaces the first three integrals of the band by their own formulas and adds all up.
double SumBand(double x1, double x2, std::vector<double> &integrals);

} // namespace literal
