#pragma once

#include <Python.h>

#include "teskexposure/include/TeskRecords"

namespace tesk {

/// Python's descriptions of the attributes in `records`, for a type of wrappers; they live as long
/// as the process, like the type. Null where `records` is null or empty.
/// @throws std::bad_alloc
PyGetSetDef *MakeAttributes(const AttributeRecord *records);

} // namespace tesk
