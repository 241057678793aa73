#include "platform/LibraryFolder.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace platform {

std::string LibraryFolder([[maybe_unused]] const char *fileName,
                          [[maybe_unused]] const void *inside)
{
#if defined(_WIN32)
    char path[MAX_PATH] = "";
    const DWORD length = GetModuleFileNameA(GetModuleHandleA(fileName), path, sizeof path);
    const std::string file(path, length < sizeof path ? length : 0);
    const std::size_t separator = file.find_last_of("\\/");
#else
    Dl_info library = {};
    const std::string file = dladdr(inside, &library) && library.dli_fname ? library.dli_fname : "";
    const std::size_t separator = file.rfind('/');
#endif
    return separator == std::string::npos ? "." : file.substr(0, separator);
}

} // namespace platform
