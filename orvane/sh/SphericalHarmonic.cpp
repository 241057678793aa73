#include "orvane/sh/SphericalHarmonic.h"

#include "orvane/base/Bands.h"
#include "orvane/base/Errors.h"
#include "orvane/base/Limits.h"

#include <algorithm>

using namespace orvane;

namespace {

void CheckIndex(const SphericalHarmonic &sh, std::int32_t index)
{
    const std::int32_t count = sh.GetNumCoefficients();
    if (count == 0)
        throw std::out_of_range(IllegalValue("index", index, "none: the set is empty"));
    RequireInRange<std::out_of_range>("index", index, 0, count - 1);
}

} // namespace

void SphericalHarmonic::SetNumBands(std::int32_t bands)
{
    RequireInRange("numBands", bands, 0, maxSetBands);
    ResizeToBands(bands);
}

void SphericalHarmonic::ResizeToBands(std::int32_t bands)
{
    const std::int32_t count = CoefficientCount(bands);
    if (count < 0)
        throw std::invalid_argument(
            IllegalValue("numBands", bands, "a square within 32 signed bits"));
    coefficients.resize(static_cast<std::size_t>(count));
    numBands = bands;
}

void SphericalHarmonic::SetCoefficient(std::int32_t index, const float &value)
{
    CheckIndex(*this, index);
    coefficients[index] = value;
}

float SphericalHarmonic::GetCoefficient(std::int32_t index) const
{
    CheckIndex(*this, index);
    return coefficients[index];
}

std::int32_t SphericalHarmonic::GetNumCoefficients() const
{
    return static_cast<std::int32_t>(coefficients.size());
}

void SphericalHarmonic::Clean()
{
    std::fill(coefficients.begin(), coefficients.end(), 0.0f);
}
