#include "model/LiteralMipMaps.h"

#include <cmath>

namespace literal {

double PhiAntiderivative(const Tables &tables, double phi)
{
    const int i = tables.PhiIndex(phi);
    const double c = tables.cosLut[i];
    const double s = tables.sinLut[i];
    double C[30] = {1.0, c};
    double S[30] = {0.0, s};
    for (int j = 2; j < 30; ++j) {
        S[j] = S[j - 1] * 2.0 * c - S[j - 2];
        C[j] = C[j - 1] * 2.0 * c - C[j - 2];
    }
    double sum = 0.0;
    for (int index = 0; index < 30; ++index) {
        const int m = tables.orderLut[index];
        if (m > 0)
            sum += S[m] / static_cast<double>(m);
        if (m < 0)
            sum += C[-m] / static_cast<double>(m);
    }
    return sum;
}

double SumBand(double x1, double x2, std::vector<double> &integrals)
{
    integrals[0] = x2 - x1;
    integrals[1] = (x2 * x2 - x1 * x1) * 0.5;
    integrals[2] = ((x2 * std::sqrt(1 - x2 * x2) + std::asin(x2)) -
                    (x1 * std::sqrt(1 - x1 * x1) + std::asin(x1))) *
                   0.5;
    double sum = 0.0;
    for (const double integral : integrals)
        sum += integral;
    return sum;
}

} // namespace literal
