#pragma once

// What every operation that reads the lookup tables asks first.

#include "orvane/kernels/AngleFactors.h"

#include <cstddef>
#include <cstdint>

class SHBuilder;
class SphericalHarmonic;

namespace orvane {

/// @throws NotReady naming GenerateLookUpTables while the builder has no tables
void RequireLookUpTables(const SHBuilder &builder);

/// @param name what the caller's band count is called in a refusal
/// @throws std::invalid_argument where CoefficientCount(bands) is beyond the set or the tables
void RequireTerms(const SphericalHarmonic &sh, const char *name, std::int32_t bands);

/// The table step of polar angle `theta`, in radians, which is never folded; needs the tables.
/// @throws std::invalid_argument where theta is below 0, beyond the tables or not finite
std::size_t PolarStep(const SHBuilder &builder, double theta);

/// Sees to it that a table step, 0 to numSteps - 1, has its polar row.
void RequirePolarRow(const SHBuilder &builder, std::size_t step);

/// Refuses an azimuth whose multiples up to `order` cannot all be folded.
/// @throws std::invalid_argument where one of them is not finite
void RequireFoldable(double phi, int order);

/// The angle tables as the kernels take them.
AngleTables AngleTablesOf(const SHBuilder &builder);

} // namespace orvane
