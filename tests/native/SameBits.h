#pragma once

// Comparison to the bit, but for which NaN a NaN is.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

inline testing::AssertionResult SameBits(const float *actual, std::size_t actualCount,
                                         const float *expected, std::size_t expectedCount)
{
    if (actualCount != expectedCount)
        return testing::AssertionFailure() << actualCount << " values, not " << expectedCount;
    for (std::size_t i = 0; i < actualCount; ++i) {
        const bool bothNaN = std::isnan(actual[i]) && std::isnan(expected[i]);
        if (!bothNaN &&
            std::bit_cast<std::uint32_t>(actual[i]) != std::bit_cast<std::uint32_t>(expected[i]))
            return testing::AssertionFailure()
                   << "value " << i << " is " << actual[i] << ", not " << expected[i];
    }
    return testing::AssertionSuccess();
}
