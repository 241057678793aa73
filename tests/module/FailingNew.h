#pragma once

// The program's operator new, made to run out of memory on purpose.

#include <cstdint>

namespace failing_new {

/// Makes the n-th allocation from now fail, once; 0 cancels.
void Fail(std::int64_t n);
/// True until the allocation that is to fail is made.
bool IsPending();

} // namespace failing_new
