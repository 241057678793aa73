#pragma once

// The program's operator new, made to run out of memory on purpose.

#include <cstdint>

namespace failing_new {

/// Makes the n-th allocation from now fail, once; 0 takes the order back.
void Fail(std::int64_t n);
/// True while the allocation that was to fail has not come yet.
bool IsPending();

} // namespace failing_new
