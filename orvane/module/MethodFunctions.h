#pragma once

// The functions behind those methods that are more than one call of a member. What each method
// does, its arguments and errors are said in its row.

#include "orvane/builder/SHBuilder.h"
#include "orvane/module/Conversion.h"
#include "orvane/module/ReadBuffer.h"
#include "orvane/module/RotationMatrix.h"

#include <cstdint>

namespace orvane::binding {

// SphericalHarmonic

NewReference<ScriptType::View> GetAsBuffer(SphericalHarmonic &sh);

// SHBuilder

void CopyInto(SHBuilder &builder, SphericalHarmonic &copy, const SphericalHarmonic &sh);
void RotateInto(SHBuilder &builder, SphericalHarmonic &rotated, const SphericalHarmonic &sh,
                const RotationMatrix &matrix);
void RotateZInto(SHBuilder &builder, SphericalHarmonic &rotated, const SphericalHarmonic &sh,
                 float angle);
NewReference<ScriptType::View> GetImageBuffer(SHBuilder &builder);
NewReference<ScriptType::Set> CreateSHFromBuffer(SHBuilder &builder, const ReadBuffer &buffer,
                                                 std::int32_t numBands);
void ExtendSHFromBuffer(SHBuilder &builder, SphericalHarmonic &sh, const ReadBuffer &buffer,
                        std::int32_t oldBand, std::int32_t newBand);
NewReference<ScriptType::Set> CreateSHFromImageBuffer(SHBuilder &builder, std::int32_t width,
                                                      std::int32_t height, std::int32_t band,
                                                      const ReadBuffer &buffer);

} // namespace orvane::binding
