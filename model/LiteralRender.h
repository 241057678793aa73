#pragma once

#include "model/LiteralModel.h"

#include <cstdint>

namespace literal {

/// The saturating truncation, offset and clamp that make a byte of a scaled value.
std::uint8_t ToByte(double scaled, int offset);

/// Renders slice `slice` of `slices` by `slices` into an image of width * height bytes.
void Render(const Tables &tables, const float *coefficients, int bands, float scale, int offset,
            int slices, int slice, int width, int height, std::uint8_t *image);

} // namespace literal
