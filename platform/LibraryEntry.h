#pragma once

// What happens when the loader attaches a shared library to the process.

namespace platform {

/// What the loader knows a loaded library by; elsewhere than on Windows an address inside it.
using LibraryHandle = void *;

/// Asks the loader not to report the threads that start and end. Only Windows reports them.
/// @return false where the loader refuses
bool DisableThreadLibraryCalls(LibraryHandle library);

} // namespace platform

/// Defines the library's entry point: it calls `attach(platform::LibraryHandle)` once, when the
/// library is attached to the process, and always reports success. `release()` is called when the
/// library is unloaded, to give back memory; off Windows also when the process ends, after its exit
/// functions and static destructors. Others may still look at the library's data then. To be used
/// in one source file of the library, outside any namespace.
#if defined(_WIN32)
#define PLATFORM_LIBRARY_ENTRY(attach, release)                                                    \
    extern "C" int __stdcall DllMain(void *library, unsigned long reason, void *processEnds)       \
    {                                                                                              \
        constexpr unsigned long processAttach = 1;                                                 \
        constexpr unsigned long processDetach = 0;                                                 \
        if (reason == processAttach)                                                               \
            attach(library);                                                                       \
        else if (reason == processDetach && !processEnds)                                          \
            release();                                                                             \
        return 1;                                                                                  \
    }
#else
#define PLATFORM_LIBRARY_ENTRY(attach, release)                                                    \
    [[gnu::destructor]] static void LibraryExit()                                                  \
    {                                                                                              \
        release();                                                                                 \
    }                                                                                              \
    [[gnu::constructor]] static void LibraryEntry()                                                \
    {                                                                                              \
        static char inside;                                                                        \
        attach(&inside);                                                                           \
    }
#endif
