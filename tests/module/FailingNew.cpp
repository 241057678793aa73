#include "tests/module/FailingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constinit std::int64_t allocationsUntilFailure = 0;

void *Allocate(std::size_t size, std::size_t alignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__) noexcept
{
    if (allocationsUntilFailure > 0 && --allocationsUntilFailure == 0)
        return nullptr;
    // In whole units, as aligned_alloc wants it.
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
#if defined(_WIN32)
    return rounded < size ? nullptr : _aligned_malloc(rounded, alignment);
#else
    return rounded < size ? nullptr : std::aligned_alloc(alignment, rounded);
#endif
}

void Free(void *memory) noexcept
{
#if defined(_WIN32)
    _aligned_free(memory);
#else
    std::free(memory);
#endif
}

void *OrThrow(void *memory)
{
    return memory ? memory : throw std::bad_alloc();
}

std::size_t Bytes(std::align_val_t alignment)
{
    return static_cast<std::size_t>(alignment);
}

} // namespace

void failing_new::Fail(std::int64_t n)
{
    allocationsUntilFailure = n;
}

bool failing_new::IsPending()
{
    return allocationsUntilFailure > 0;
}

// Every form: a sanitizer has forms of its own, and would find a block released by the other kind.

// clang-format off
void *operator new(std::size_t size) { return OrThrow(Allocate(size)); }
void *operator new[](std::size_t size) { return OrThrow(Allocate(size)); }
void *operator new(std::size_t size, std::align_val_t to) { return OrThrow(Allocate(size, Bytes(to))); }
void *operator new[](std::size_t size, std::align_val_t to) { return OrThrow(Allocate(size, Bytes(to))); }
void *operator new(std::size_t size, const std::nothrow_t &) noexcept { return Allocate(size); }
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept { return Allocate(size); }
void *operator new(std::size_t size, std::align_val_t to, const std::nothrow_t &) noexcept { return Allocate(size, Bytes(to)); }
void *operator new[](std::size_t size, std::align_val_t to, const std::nothrow_t &) noexcept { return Allocate(size, Bytes(to)); }
void operator delete(void *memory) noexcept { Free(memory); }
void operator delete[](void *memory) noexcept { Free(memory); }
void operator delete(void *memory, std::size_t) noexcept { Free(memory); }
void operator delete[](void *memory, std::size_t) noexcept { Free(memory); }
void operator delete(void *memory, std::align_val_t) noexcept { Free(memory); }
void operator delete[](void *memory, std::align_val_t) noexcept { Free(memory); }
void operator delete(void *memory, std::size_t, std::align_val_t) noexcept { Free(memory); }
void operator delete[](void *memory, std::size_t, std::align_val_t) noexcept { Free(memory); }
// clang-format on
