#include "model/LiteralArithmetic.h"

namespace literal {

static bool Applies(const Set &t, const Set &s)
{
    return !s.coefficients.empty() && s.coefficients.size() <= t.coefficients.size();
}

void Add(Set &t, Set s)
{
    for (std::size_t i = 0; Applies(t, s) && i < s.coefficients.size(); ++i)
        t.coefficients[i] = s.coefficients[i] + t.coefficients[i];
}

void AddScaled(Set &t, Set s, float k)
{
    for (std::size_t i = 0; Applies(t, s) && i < s.coefficients.size(); ++i) {
        const float product = k * s.coefficients[i];
        t.coefficients[i] = product + t.coefficients[i];
    }
}

void Subtract(Set &t, Set s)
{
    for (std::size_t i = 0; Applies(t, s) && i < s.coefficients.size(); ++i)
        t.coefficients[i] = t.coefficients[i] - s.coefficients[i];
}

void SubtractScaled(Set &t, Set s, float k)
{
    for (std::size_t i = 0; Applies(t, s) && i < s.coefficients.size(); ++i) {
        const float product = k * s.coefficients[i];
        t.coefficients[i] = t.coefficients[i] - product;
    }
}

void Scale(Set &t, float k)
{
    for (float &c : t.coefficients)
        c = k * c;
}

void CopyScaleAndSubtract(Set &t, Set toCopy, double scale, Set toSubtract)
{
    if (toCopy.coefficients.size() != toSubtract.coefficients.size())
        return;
    t.numBands = toCopy.numBands;
    t.coefficients.resize(t.numBands * t.numBands);
    for (std::size_t i = 0; i < toCopy.coefficients.size() && i < t.coefficients.size(); ++i)
        t.coefficients[i] = static_cast<float>(static_cast<double>(toCopy.coefficients[i]) * scale -
                                               static_cast<double>(toSubtract.coefficients[i]));
}

void Lerp(Set &t, Set from, Set to, double alpha)
{
    if (from.coefficients.size() != to.coefficients.size())
        return;
    t.numBands = from.numBands;
    t.coefficients.resize(t.numBands * t.numBands);
    const double w = 1.0 - alpha;
    for (std::size_t i = 0; i < from.coefficients.size() && i < t.coefficients.size(); ++i)
        t.coefficients[i] = static_cast<float>(static_cast<double>(to.coefficients[i]) * alpha +
                                               static_cast<double>(from.coefficients[i]) * w);
}

} // namespace literal
