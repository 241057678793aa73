#pragma once

// A host that tries the module's patience: tesk-run with a layer between module and stand-in, which
// notes every call and fails, throws or answers oddly where it is told to.

#include <cstdint>

extern "C" {

/// What an operation does instead of its work.
enum HostOrder : int {
    HostObeys = 0,
    HostRefuses = 1,          ///< gives the answer that means failure, without a Python error
    HostSaysWhy = 2,          ///< the same, with a Python error of its own
    HostThrows = 3,           ///< throws a C++ exception
    HostGivesNothing = 4,     ///< claims success, with a null object
    HostShowsWeakRoot = 5,    ///< gives the IRoot inside the object's IWeakObject
    HostSaysWhyAndThrows = 6, ///< sets a Python error, then throws
    HostLeavesPointer = 7,    ///< refuses, with a pointer in place that owns no reference
};

/// From the next call on, `operation` does what `order` says; all others obey.
void HostExpect(const char *operation, int order);
/// All operations obey.
void HostObey(void);

/// The calls since the last forgetting, one a line.
const char *HostLog(void);
void HostForgetLog(void);

/// operator new of the whole process: its n-th call from now fails, once; 0 for none.
void HostFailNew(std::int64_t n);
bool HostFailureIsPending(void);
}
