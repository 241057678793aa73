#include "platform/RuntimeRandom.h"

#if !defined(_WIN32)

namespace platform {

RuntimeRandom &ThreadRandom()
{
    thread_local RuntimeRandom random;
    return random;
}

} // namespace platform

#endif
