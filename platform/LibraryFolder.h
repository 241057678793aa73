#pragma once

#include <string>

namespace platform {

/// The folder of a shared library that is loaded, without a separator at its end; "." where the
/// loader does not know it.
/// @param fileName the library's, by which Windows finds it
/// @param inside the address of one of its functions, by which others do
std::string LibraryFolder(const char *fileName, const void *inside);

} // namespace platform
