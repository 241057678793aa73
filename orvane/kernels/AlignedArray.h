#pragma once

// A vector whose elements start on a 64-byte boundary: a whole cache line, the widest vector.

#include <cstddef>
#include <new>
#include <vector>

namespace orvane {

template <typename T> struct AlignedAllocator {
    using value_type = T;
    static constexpr std::align_val_t alignment{64};

    AlignedAllocator() = default;
    template <typename U> AlignedAllocator(const AlignedAllocator<U> &) {}

    T *allocate(std::size_t count)
    {
        if (count > static_cast<std::size_t>(-1) / sizeof(T))
            throw std::bad_array_new_length();
        return static_cast<T *>(::operator new(count * sizeof(T), alignment));
    }
    void deallocate(T *memory, std::size_t) { ::operator delete(memory, alignment); }

    template <typename U> bool operator==(const AlignedAllocator<U> &) const { return true; }
    template <typename U> bool operator!=(const AlignedAllocator<U> &) const { return false; }
};

template <typename T> using AlignedArray = std::vector<T, AlignedAllocator<T>>;

} // namespace orvane
