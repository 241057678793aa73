#include "orvane/sh/CoefficientBuffer.h"

#include "orvane/base/Errors.h"
#include "orvane/base/Limits.h"

#include <cstring>
#include <limits>

namespace orvane {

namespace {

constexpr std::int64_t Square(std::int64_t value)
{
    return value * value;
}

// Floats whose size in bytes fits in a signed 32-bit integer.
constexpr std::int64_t minFloats = std::numeric_limits<std::int32_t>::min() / 4;
constexpr std::int64_t maxFloats = std::numeric_limits<std::int32_t>::max() / 4;

static_assert(Square(maxBufferBands) <= maxFloats && Square(maxBufferBands + 1) > maxFloats);

} // namespace

std::int32_t CoefficientBytes(std::int32_t numBands)
{
    RequireInRange("numBands", numBands, -maxBufferBands, maxBufferBands);
    return static_cast<std::int32_t>(Square(numBands) * sizeof(float));
}

std::int32_t ExtensionCoefficients(std::int32_t oldBand, std::int32_t newBand)
{
    const std::int64_t count = Square(newBand) - Square(oldBand);
    RequireInRange("newBand * newBand - oldBand * oldBand", count, minFloats, maxFloats);
    return static_cast<std::int32_t>(count);
}

void ExtendFromBuffer(SphericalHarmonic &sh, const void *floats, std::int32_t oldBand,
                      std::int32_t newBand)
{
    RequireInRange("newBand", newBand, -maxSetBands, maxSetBands);
    // Where the floats lie in the set's own block, the resize must not free it.
    const auto oldBlock = sh.coefficients.Share();
    sh.ResizeToBands(newBand);
    const char *source = static_cast<const char *>(floats);
    // In ascending order, one by one: source and target may overlap.
    for (std::int64_t k = Square(oldBand); k < Square(newBand); ++k) {
        std::memcpy(&sh.coefficients[static_cast<std::size_t>(k)], source, sizeof(float));
        source += sizeof(float);
    }
}

} // namespace orvane
