#pragma once

// The largest sizes that are accepted.

#include <cstdint>
#include <limits>

namespace orvane {

/// Bands of a set: the last count whose square is a signed 32-bit integer.
inline constexpr std::int32_t maxSetBands = 46340;
/// Bands whose coefficients, 4 bytes each, have a size that is a signed 32-bit integer.
inline constexpr std::int32_t maxBufferBands = 23170;
/// Steps of the lookup tables: 1.0 GB of Legendre arrays, 1.2 GB of polar rows.
inline constexpr std::int32_t maxTableSteps = 262144;
/// Samples of the sphere along one axis: 4 GB of samples.
inline constexpr std::int32_t maxSamplesPerAxis = 16384;
/// Offsets of the importance samples: 3 GB of offsets and densities; a Gaussian made of them takes
/// 48 bytes a point more, 6.4 GB.
inline constexpr std::int32_t maxGaussOffsets = 1 << 27;
/// Pixels of an image.
inline constexpr std::int32_t maxPixels = std::numeric_limits<std::int32_t>::max();

} // namespace orvane
