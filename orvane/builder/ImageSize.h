#pragma once

// The sizes that an image may have.

#include "orvane/base/Errors.h"
#include "orvane/base/Limits.h"

#include <cstdint>

namespace orvane {

/// @throws std::invalid_argument unless both sizes are 0 or more and there are at most 2^31 - 1
/// pixels
inline void RequireImageSize(std::int32_t width, std::int32_t height)
{
    RequireAtLeast("width", width, 0);
    RequireAtLeast("height", height, 0);
    RequireAtMost("width * height", std::int64_t{width} * height, maxPixels);
}

} // namespace orvane
