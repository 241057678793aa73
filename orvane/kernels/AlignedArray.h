#pragma once

// Arrays that start on a 64-byte boundary: a whole cache line, the widest vector.

#include <cstddef>
#include <cstdint>
#include <memory>

namespace orvane {

/// Memory for doubles, not cleared: the system gives a page when something is written there. It
/// comes from the plain operator new. The aligned one of the GNU library splits what it finds and
/// cannot use the rest for an equal request: equal arrays, taken and freed in turn, would spread
/// over more and more memory.
class AlignedArray {
public:
    AlignedArray() = default;
    /// @param count far below the range of size_t
    /// @throws std::bad_alloc
    explicit AlignedArray(std::size_t count)
        : memory(new double[count + alignment / sizeof(double)])
    {
    }

    /// The first double; null where there is no memory.
    double *Data() const
    {
        const auto address = reinterpret_cast<std::uintptr_t>(memory.get());
        return memory.get() + (-address % alignment) / sizeof(double);
    }

private:
    static constexpr std::size_t alignment = 64;

    std::unique_ptr<double[]> memory;
};

} // namespace orvane
