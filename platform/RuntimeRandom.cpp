#include "platform/RuntimeRandom.h"

namespace platform {

RuntimeRandom &ThreadRandom()
{
    thread_local RuntimeRandom random;
    return random;
}

} // namespace platform
