#pragma once

#include "teskexposure/include/TeskRecords"

namespace tesk {

/// The registration of a class; null where no module has registered it.
const Tx::ClassRegistration *FindClass(const Tx::Clsid &clsid);

} // namespace tesk
