#pragma once

#include "orvane/module/MethodTable.h"

namespace orvane::binding {

/// The Python surface of SphericalHarmonic.
extern const ClassTable sphericalHarmonicTable;

} // namespace orvane::binding
