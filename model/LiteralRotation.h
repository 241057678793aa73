#pragma once

// Rotation of a coefficient set, straight from the formulas.

#include <array>
#include <vector>

namespace literal {

/// About the polar axis. `bands` may disagree with the number of coefficients: those missing are 0.
std::vector<float> RotateZ(const std::vector<float> &in, int bands, double angle);

/// The matrices R^l, l = 0..29, of a 3 x 3 matrix that acts on row vectors (x, y, z).
class BandRotation {
public:
    explicit BandRotation(const double matrix[3][3]);

    /// R^l(a, b), a and b in -l..l.
    double &R(int l, int a, int b);

private:
    double P(int i, int l, int a, int b);
    double U(int l, int m, int n);
    double V(int l, int m, int n);
    double W(int l, int m, int n);
    double Element(int l, int m, int n);

    std::array<std::vector<double>, 30> bands;
};

/// All 900 coefficients of the rotated set; bands that `in` does not hold completely are 0.
std::vector<float> RotateSH(const std::vector<float> &in, const double matrix[3][3]);

} // namespace literal
