#pragma once

// Operations on coefficient sets that make a new one. The in-place operations are members of
// SphericalHarmonic.

class SphericalHarmonic;

namespace orvane {

/// Makes `out` an exact copy of `in`: band count and every coefficient, whatever their number.
/// @throws std::bad_alloc with `out` unchanged
void CopySH(const SphericalHarmonic &in, SphericalHarmonic &out);

} // namespace orvane
