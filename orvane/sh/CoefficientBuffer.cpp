#include "orvane/sh/CoefficientBuffer.h"

#include "orvane/sh/Errors.h"

#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace orvane {

namespace {

constexpr std::int64_t Square(std::int64_t value)
{
    return value * value;
}

// Floats whose size in bytes fits in a signed 32-bit integer.
constexpr std::int64_t minFloats = std::numeric_limits<std::int32_t>::min() / 4;
constexpr std::int64_t maxFloats = std::numeric_limits<std::int32_t>::max() / 4;

constexpr std::int32_t maxBufferBands = 23170; ///< whose square is at most maxFloats
static_assert(Square(maxBufferBands) <= maxFloats && Square(maxBufferBands + 1) > maxFloats);

constexpr std::int32_t maxSetBands = 46340; ///< whose square is a signed 32-bit integer

std::string UpTo(std::int32_t bands)
{
    return std::to_string(-bands) + " to " + std::to_string(bands);
}

} // namespace

std::int32_t CoefficientBytes(std::int32_t numBands)
{
    if (Square(numBands) > maxFloats)
        throw std::invalid_argument(IllegalValue("numBands", numBands, UpTo(maxBufferBands)));
    return static_cast<std::int32_t>(Square(numBands) * sizeof(float));
}

std::int32_t ExtensionCoefficients(std::int32_t oldBand, std::int32_t newBand)
{
    const std::int64_t count = Square(newBand) - Square(oldBand);
    if (count < minFloats || count > maxFloats)
        throw std::invalid_argument(
            IllegalValue("newBand * newBand - oldBand * oldBand", static_cast<long long>(count),
                         std::to_string(minFloats) + " to " + std::to_string(maxFloats)));
    return static_cast<std::int32_t>(count);
}

void ExtendFromBuffer(SphericalHarmonic &sh, const void *floats, std::int32_t oldBand,
                      std::int32_t newBand)
{
    if (newBand < -maxSetBands || newBand > maxSetBands)
        throw std::invalid_argument(IllegalValue("newBand", newBand, UpTo(maxSetBands)));
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
