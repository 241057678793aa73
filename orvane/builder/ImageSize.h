#pragma once

// The sizes that an image may have.

#include "orvane/sh/Errors.h"

#include <cstdint>
#include <limits>
#include <string>

namespace orvane {

/// @throws std::invalid_argument unless both sizes are 0 or more and there are at most 2^31 - 1
/// pixels
inline void RequireImageSize(std::int32_t width, std::int32_t height)
{
    constexpr std::int32_t mostPixels = std::numeric_limits<std::int32_t>::max();
    if (width < 0)
        throw std::invalid_argument(IllegalValue("width", width, "0 or more"));
    if (height < 0)
        throw std::invalid_argument(IllegalValue("height", height, "0 or more"));
    const long long pixels = static_cast<long long>(width) * height;
    if (pixels > mostPixels)
        throw std::invalid_argument(
            IllegalValue("width * height", pixels, "at most " + std::to_string(mostPixels)));
}

} // namespace orvane
