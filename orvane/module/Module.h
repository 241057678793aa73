#pragma once

#include "teskexposure/include/TeskCollections"

namespace orvane::binding {

/// The classes of this library in the order of their registration, builder first. Filled while the
/// library is loaded.
Tx::ClassRegistrationList &ClassRegistrations();

} // namespace orvane::binding
