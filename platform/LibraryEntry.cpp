#include "platform/LibraryEntry.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif

namespace platform {

bool DisableThreadLibraryCalls([[maybe_unused]] LibraryHandle library)
{
#if defined(_WIN32)
    return ::DisableThreadLibraryCalls(static_cast<HMODULE>(library)) != 0;
#else
    return true;
#endif
}

} // namespace platform
