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
/// library is attached to the process, and always reports success. To be used in one source file of
/// the library, outside any namespace.
#if defined(_WIN32)
#define PLATFORM_LIBRARY_ENTRY(attach)                                                             \
    extern "C" int __stdcall DllMain(void *library, unsigned long reason, void *)                  \
    {                                                                                              \
        constexpr unsigned long processAttach = 1;                                                 \
        if (reason == processAttach)                                                               \
            attach(library);                                                                       \
        return 1;                                                                                  \
    }
#else
#define PLATFORM_LIBRARY_ENTRY(attach)                                                             \
    [[gnu::constructor]] static void LibraryEntry()                                                \
    {                                                                                              \
        static char inside;                                                                        \
        attach(&inside);                                                                           \
    }
#endif
