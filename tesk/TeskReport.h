#pragma once

// What the host has counted: live objects, memory by name, assertion hits; and a way to make it run
// out of memory on purpose. For tests and for programs that embed the host; all but the printable
// report has C linkage, so that a test script can call it too.

#include "vexcore/include/VEXExport"

#include <cstdint>
#include <string>

/// What is accounted under one name: a class, or a tag of the tracking allocator. It lives as long
/// as the process and is always up to date.
struct TeskAccount {
    TeskAccount *next = nullptr;
    const char *name = nullptr;
    std::int64_t liveObjects = 0;     ///< constructed and not yet destroyed; 0 for a tag
    std::int64_t allocations = 0;     ///< not yet freed
    std::int64_t bytes = 0;           ///< not yet freed
    std::int64_t peakAllocations = 0; ///< the most at any time since the last reset
    std::int64_t peakBytes = 0;       ///< the most at any time since the last reset
    const char *file = nullptr; ///< where the latest allocation was asked for; null for a class
    std::int32_t line = 0;      ///< in that file
};

/// How often one assertion did not hold.
struct TeskAssertionCount {
    TeskAssertionCount *next;
    const char *expression;
    const char *file;
    std::int32_t line;
    std::int64_t hits;
};

/// Sums over all classes and tags.
struct TeskTotals {
    std::int64_t liveObjects;
    std::int64_t allocations;
    std::int64_t bytes;
    std::int64_t peakBytes; ///< the most at any time since the last reset
    std::int64_t assertionHits;
};

/// What TeskFailAllocation can make fail; the bits may be combined.
enum TeskAllocationKind {
    TeskObjectAllocation = 1,    ///< memory of host objects
    TeskContainerAllocation = 2, ///< the tracking allocator
};

extern "C" {

/// The first account of the classes, in no particular order; null where there is none.
TESK_API const TeskAccount *TeskClassAccounts(void);
/// The first account of the tags.
TESK_API const TeskAccount *TeskTagAccounts(void);
/// The first assertion that did not hold since the last reset.
TESK_API const TeskAssertionCount *TeskAssertionCounts(void);
TESK_API TeskTotals TeskReportTotals(void);

/// Forgets assertion hits and an outstanding failure, and takes what lives now as every peak.
TESK_API void TeskResetReport(void);

/// Makes the n-th allocation of the given kinds from now fail, once; 0 cancels.
TESK_API void TeskFailAllocation(int kinds, std::int64_t n);
/// True until the allocation that is to fail is made.
TESK_API bool TeskFailureIsPending(void);
}

/// All of the above in plain words, one line for each class, tag and assertion and one of sums.
TESK_API std::string TeskReportText();
