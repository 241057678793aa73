#pragma once

#include "orvane/module/Conversion.h"

#include <memory>

namespace orvane::binding {

/// A read-only Python buffer of `length` bytes over native memory, without a copy. It stands on a
/// small object that keeps `block` alive: whatever remembers the buffer's address, the memory is
/// there as long as the buffer is.
/// @param block the memory; null gives an empty buffer
NewReference<ScriptType::View> SharedView(std::shared_ptr<const void> block, Py_ssize_t length);

} // namespace orvane::binding
