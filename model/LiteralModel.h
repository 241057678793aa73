#pragma once

// The numerics as plain loops straight from the formulas: the oracle that every fast path is
// compared with bit for bit, and the baseline of the benchmarks. It shares no code with the library
// but the generator's sequence, and is meant to be read, not to be fast.

#include <cstdint>
#include <vector>

namespace literal {

constexpr double twoPi = 6.2831854820251465; ///< 2 pi rounded to single precision

/// K(l, m) for index l*l + l + m, 900 values.
const std::vector<double> &NormalisationTable();

/// Associated Legendre function, m >= 0.
double LegendreP(int l, int m, double x);

/// Folds an angle into [0, twoPi] by whole turns, one turn at a time.
double WrapAngle(double angle);

struct Tables {
    explicit Tables(int numSteps);

    int Index(double angle) const;    ///< truncated, not folded
    int PhiIndex(double angle) const; ///< folded, at most the last entry
    double Basis(int index, double phi, double theta) const;
    /// The same where the table step of theta is known.
    double BasisAtStep(int index, double phi, int thetaStep) const;
    /// The sum over the first bands * bands coefficients.
    double Evaluate(const float *coefficients, int bands, double phi, double theta) const;

    int numSteps;
    double angleScale;
    std::vector<double> cosLut;
    std::vector<double> sinLut;
    std::vector<std::vector<double>> legendreLut;
    std::vector<int> orderLut;
};

} // namespace literal
