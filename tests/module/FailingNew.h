#pragma once

// The program's operator new, made to run out of memory on purpose.

#include <cstdint>

namespace failing_new {

/// Makes the n-th allocation from now fail, once; with 0 none fails.
void Fail(std::int64_t n);
/// Whether that allocation is still to be made.
bool IsPending();

} // namespace failing_new
