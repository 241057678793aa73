#pragma once

// The Python surface: one table for each class.

#include "orvane/module/MethodTable.h"

namespace orvane::binding {

extern const ClassTable sphericalHarmonicTable;
extern const ClassTable shBuilderTable;

/// All of them, in the order in which the manual has them.
inline constexpr const ClassTable *classTables[] = {&sphericalHarmonicTable, &shBuilderTable};

} // namespace orvane::binding
