#pragma once

// Coefficient sets as raw arrays of floats: 4 bytes each in the machine's byte order, in index
// order, without a header. Values are copied bit for bit, NaN payloads included.

#include "orvane/sh/SphericalHarmonic.h"

#include <cstdint>

namespace orvane {

/// Bytes of the coefficients of all `numBands` bands; a negative band count counts like its
/// positive one.
/// @throws std::invalid_argument where the count does not fit in a signed 32-bit integer
std::int32_t CoefficientBytes(std::int32_t numBands);

/// Coefficients of bands oldBand to newBand - 1 alone, newBand^2 - oldBand^2; negative where there
/// are fewer new bands than old ones.
/// @throws std::invalid_argument where their bytes do not fit in a signed 32-bit integer
std::int32_t ExtensionCoefficients(std::int32_t oldBand, std::int32_t newBand);

/// Resizes `sh` to newBand bands, keeping its first coefficients, and copies those of bands oldBand
/// to newBand - 1 from `floats`. What `sh` held before is not compared with oldBand.
/// @param floats ExtensionCoefficients(oldBand, newBand) floats of any alignment; may lie in the
///        set's own memory
/// @throws std::invalid_argument unless newBand is -46,340 to 46,340
/// @throws std::bad_alloc
/// The set is then unchanged.
void ExtendFromBuffer(SphericalHarmonic &sh, const void *floats, std::int32_t oldBand,
                      std::int32_t newBand);

} // namespace orvane
