#pragma once

#include "orvane/module/MethodTable.h"

namespace orvane::binding {

/// The Python surface of SHBuilder.
extern const ClassTable shBuilderTable;

} // namespace orvane::binding
