#pragma once

// The random generator of the C runtime that hosts on Windows use: 32767 is its largest draw, and
// each thread has a state of its own. There, the draws and seeds are the runtime's, shared with all
// code on the thread; elsewhere a twin with the same sequence stands in for it.

#include <cstdint>

#if defined(_WIN32)
#include <cstdlib>
#endif

namespace platform {

/// The generator's sequence.
struct RuntimeRandom {
    std::uint32_t state = 1; ///< the seed; 1 before any seeding

    /// The next draw, 0 to 32767.
    int Next()
    {
        state = state * 214013u + 2531011u;
        return static_cast<int>((state >> 16) & 32767u);
    }
};

#if defined(_WIN32)

static_assert(RAND_MAX == 32767);

/// Seeds the generator of the calling thread.
inline void srand(std::uint32_t seed)
{
    ::srand(seed);
}

/// Draws from the generator of the calling thread; nobody else may do so while it lives.
class ThreadDraws {
public:
    /// The next draw, 0 to 32767.
    int Next() { return ::rand(); }
};

#else

/// The twin of the calling thread.
RuntimeRandom &ThreadRandom();

/// Seeds the generator of the calling thread.
inline void srand(std::uint32_t seed)
{
    ThreadRandom().state = seed;
}

/// Draws from the generator of the calling thread; nobody else may do so while it lives.
class ThreadDraws {
public:
    ThreadDraws() : random(ThreadRandom()) {}
    ~ThreadDraws() { ThreadRandom() = random; }
    ThreadDraws(const ThreadDraws &) = delete;
    ThreadDraws &operator=(const ThreadDraws &) = delete;

    /// The next draw, 0 to 32767.
    int Next() { return random.Next(); }

private:
    RuntimeRandom random; // a copy, which a loop can keep in registers
};

#endif

/// The next draw of the calling thread's generator, 0 to 32767.
inline int rand()
{
    return ThreadDraws().Next();
}

} // namespace platform
