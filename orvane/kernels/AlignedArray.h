#pragma once

// Arrays whose elements start on a 64-byte boundary: a whole cache line, the widest vector.

#include <cstddef>
#include <memory>
#include <new>

namespace orvane {

inline constexpr std::align_val_t arrayAlignment{64};

struct AlignedDelete {
    void operator()(double *memory) const { ::operator delete(memory, arrayAlignment); }
};
using AlignedArray = std::unique_ptr<double[], AlignedDelete>;

/// Takes memory and does not touch it: the system gives a page when something is written there.
/// @param count far below the range of size_t
/// @throws std::bad_alloc
inline AlignedArray MakeAlignedArray(std::size_t count)
{
    return AlignedArray(
        static_cast<double *>(::operator new(count * sizeof(double), arrayAlignment)));
}

} // namespace orvane
