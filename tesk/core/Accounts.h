#pragma once

// The books of the host. They are ready before any static initialiser runs and are never torn down,
// so that objects may come and go at any time between load and exit. They take their own memory
// from malloc, unaccounted: a C++ allocator that fails does not reach them.

#include "tesk/TeskReport.h"

#include <cstddef>

namespace tesk {

/// The account of a class or tag, opened on its first use; null where there is no memory for it.
TeskAccount *ClassAccount(const char *name);
TeskAccount *TagAccount(const char *tag);

/// Raw memory, entered into `account`; null where there is none or the account is null.
void *Allocate(TeskAllocationKind kind, TeskAccount *account, std::size_t bytes);
/// Takes back what Allocate gave.
void Free(void *memory);

/// What is live over all accounts, and the most that was.
TeskTotals AccountTotals();
/// Takes what lives now as every peak.
void ResetPeaks();

/// Assertion hits, counted and forgotten by their own file.
std::int64_t AssertionHits();
void ForgetAssertions();

} // namespace tesk
