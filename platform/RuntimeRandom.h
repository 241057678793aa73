#pragma once

// The random generator of the Microsoft C runtime, on every platform: one state per thread, 1
// before any seeding.

#include <cstdint>

namespace platform {

struct RuntimeRandom {
    std::uint32_t state = 1;

    /// The next draw, 0 to 32767.
    int Next()
    {
        state = state * 214013u + 2531011u;
        return static_cast<int>((state >> 16) & 32767u);
    }
};

/// The generator of the calling thread. A loop that draws much works on a copy and stores it back.
RuntimeRandom &ThreadRandom();

/// Seeds the generator of the calling thread.
inline void srand(std::uint32_t seed)
{
    ThreadRandom().state = seed;
}

/// The next draw of the calling thread's generator, 0 to 32767.
inline int rand()
{
    return ThreadRandom().Next();
}

} // namespace platform
