#include "orvane/sh/SphericalHarmonic.h"

#include <algorithm>

namespace {

/// Makes each of the target's lower coefficients `combine(target's, source's)`; nothing where the
/// source is empty or larger than the target.
template <typename Combine>
void CombineLower(SphericalHarmonic &target, const SphericalHarmonic &source, Combine combine)
{
    const std::size_t count = source.coefficients.size();
    if (count > target.coefficients.size())
        return;
    const float *s = source.coefficients.data();
    float *t = target.coefficients.data();
    for (std::size_t i = 0; i < count; ++i)
        t[i] = combine(t[i], s[i]);
}

/// Makes each coefficient `combine(first, second)` of the operands' coefficients, in the size that
/// the band count of `first` asks for; nothing where the operands' counts differ. The target may be
/// an operand, so the arrays are looked up after it is resized.
template <typename Combine>
void CombineInto(SphericalHarmonic &target, const SphericalHarmonic &first,
                 const SphericalHarmonic &second, Combine combine)
{
    const std::size_t operands = first.coefficients.size();
    if (operands != second.coefficients.size())
        return;
    target.ResizeToBands(first.numBands);
    const std::size_t count = std::min(operands, target.coefficients.size());
    const float *a = first.coefficients.data();
    const float *b = second.coefficients.data();
    float *t = target.coefficients.data();
    for (std::size_t i = 0; i < count; ++i)
        t[i] = static_cast<float>(combine(double{a[i]}, double{b[i]}));
}

} // namespace

void SphericalHarmonic::Add(const SphericalHarmonic &source)
{
    CombineLower(*this, source, [](float t, float s) { return s + t; });
}

void SphericalHarmonic::AddScaled(const SphericalHarmonic &source, float scale)
{
    CombineLower(*this, source, [scale](float t, float s) { return scale * s + t; });
}

void SphericalHarmonic::Subtract(const SphericalHarmonic &source)
{
    CombineLower(*this, source, [](float t, float s) { return t - s; });
}

void SphericalHarmonic::SubtractScaled(const SphericalHarmonic &source, float scale)
{
    CombineLower(*this, source, [scale](float t, float s) { return t - scale * s; });
}

void SphericalHarmonic::Scale(float scale)
{
    for (float &coefficient : coefficients)
        coefficient = scale * coefficient;
}

void SphericalHarmonic::CopyScaleAndSubtract(const SphericalHarmonic &toCopy, double scale,
                                             const SphericalHarmonic &toSubtract)
{
    CombineInto(*this, toCopy, toSubtract,
                [scale](double copied, double subtracted) { return copied * scale - subtracted; });
}

void SphericalHarmonic::Lerp(const SphericalHarmonic &from, const SphericalHarmonic &to,
                             double alpha)
{
    const double rest = 1.0 - alpha;
    CombineInto(*this, from, to,
                [alpha, rest](double start, double end) { return end * alpha + start * rest; });
}

namespace orvane {

void CopySH(const SphericalHarmonic &in, SphericalHarmonic &out)
{
    out.coefficients.resize(in.coefficients.size());
    std::copy(in.coefficients.begin(), in.coefficients.end(), out.coefficients.begin());
    out.numBands = in.numBands;
}

} // namespace orvane
