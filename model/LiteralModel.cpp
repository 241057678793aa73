#include "model/LiteralModel.h"

#include <cmath>

namespace literal {

const std::vector<double> &NormalisationTable()
{
    static const std::vector<double> table = [] {
        // Factorials rounded once: what rounding takes off the product is carried along.
        double factorial[59] = {1.0};
        double rest = 0.0;
        for (int n = 1; n < 59; ++n) {
            const double product = factorial[n - 1] * n;
            rest = rest * n + std::fma(factorial[n - 1], n, -product);
            factorial[n] = product + rest;
            rest = rest - (factorial[n] - product);
        }
        const double pi = 3.14159265358979323846;
        std::vector<double> values;
        for (int l = 0; l < 30; ++l)
            for (int m = -l; m <= l; ++m) {
                const int a = std::abs(m);
                const double k =
                    std::sqrt(((2.0 * l + 1.0) * factorial[l - a]) / (4.0 * pi * factorial[l + a]));
                values.push_back(m ? k * std::sqrt(2.0) : k);
            }
        return values;
    }();
    return table;
}

double LegendreP(int l, int m, double x)
{
    double pmm = 1.0;
    if (m > 0) {
        const double somx2 = std::sqrt((1.0 - x) * (x + 1.0));
        double fact = 1.0;
        for (int i = 0; i < m; ++i) {
            pmm = pmm * ((-fact) * somx2);
            fact = fact + 2.0;
        }
    }
    if (l == m)
        return pmm;
    double pmmp1 = (static_cast<double>(m) * 2.0 + 1.0) * x * pmm;
    if (l == m + 1)
        return pmmp1;
    double pll = 0.0;
    for (int ll = m + 2; ll <= l; ++ll) {
        pll = ((static_cast<double>(ll) * 2.0 - 1.0) * x * pmmp1 -
               (static_cast<double>(ll + m) - 1.0) * pmm) /
              static_cast<double>(ll - m);
        pmm = pmmp1;
        pmmp1 = pll;
    }
    return pll;
}

double WrapAngle(double angle)
{
    while (0.0 > angle)
        angle = angle + twoPi;
    while (angle > twoPi)
        angle = angle - twoPi;
    return angle;
}

Tables::Tables(int numSteps) : numSteps(numSteps)
{
    const float stepF = 6.2831855f / static_cast<float>(numSteps);
    const double step = stepF;
    for (int k = 0; k < numSteps; ++k) {
        const double a = static_cast<double>(k) * step;
        sinLut.push_back(std::sin(a));
        cosLut.push_back(std::cos(a));
    }
    const float scaleF = static_cast<float>(numSteps) * 0.15915494f;
    angleScale = scaleF;
    for (int l = 0; l < 30; ++l)
        for (int m = -l; m <= l; ++m) {
            orderLut.push_back(m);
            if (m <= 0) {
                std::vector<double> values;
                for (const double c : cosLut)
                    values.push_back(LegendreP(l, -m, c));
                legendreLut.push_back(values);
            } else {
                legendreLut.push_back(legendreLut[l * (l + 1) - m]);
            }
        }
}

int Tables::Index(double angle) const
{
    return static_cast<int>(angleScale * angle);
}

int Tables::PhiIndex(double angle) const
{
    const int index = Index(WrapAngle(angle));
    return index < numSteps ? index : numSteps - 1;
}

double Tables::Basis(int index, double phi, double theta) const
{
    return BasisAtStep(index, phi, Index(theta));
}

double Tables::BasisAtStep(int index, double phi, int thetaStep) const
{
    const int m = orderLut[index];
    double y = legendreLut[index][thetaStep] * NormalisationTable()[index];
    if (m > 0)
        y = y * cosLut[PhiIndex(static_cast<double>(m) * phi)];
    if (m < 0)
        y = y * sinLut[PhiIndex(static_cast<double>(-m) * phi)];
    return y;
}

double Tables::Evaluate(const float *coefficients, int bands, double phi, double theta) const
{
    const int n = bands * bands;
    if (n < 1)
        return 0.0;
    const int t = Index(theta);
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
        double term = NormalisationTable()[i] * legendreLut[i][t];
        const int m = orderLut[i];
        if (m > 0)
            term = term * cosLut[PhiIndex(static_cast<double>(m) * phi)];
        if (m < 0)
            term = term * sinLut[PhiIndex(static_cast<double>(-m) * phi)];
        sum = sum + static_cast<double>(coefficients[i]) * term;
    }
    return sum;
}

} // namespace literal
