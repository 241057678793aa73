#include "bench/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

std::uint64_t count = 0;

void *Take(std::size_t bytes, std::size_t alignment)
{
    ++count;
    void *memory = std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

std::uint64_t bench::AllocationCount()
{
    return count;
}

// The array and no-throw forms of the library call these two.

void *operator new(std::size_t bytes)
{
    return Take(bytes, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}

void *operator new(std::size_t bytes, std::align_val_t alignment)
{
    return Take(bytes, static_cast<std::size_t>(alignment));
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t, std::align_val_t) noexcept
{
    std::free(memory);
}
