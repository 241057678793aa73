#pragma once

// The benchmark program counts what it takes from the heap.

#include <cstdint>

namespace bench {

/// Calls of operator new so far, in all its forms.
std::uint64_t AllocationCount();

} // namespace bench
