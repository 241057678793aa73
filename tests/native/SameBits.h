#pragma once

// Comparison to the bit, but for which NaN a NaN is.

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

/// Of two sequences of floating-point numbers.
template <class Actual, class Expected>
testing::AssertionResult SameBits(const Actual &actual, const Expected &expected)
{
    if (actual.size() != expected.size())
        return testing::AssertionFailure() << actual.size() << " values, not " << expected.size();
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const bool bothNaN = std::isnan(actual[i]) && std::isnan(expected[i]);
        const bool equal =
            actual[i] == expected[i] && std::signbit(actual[i]) == std::signbit(expected[i]);
        if (!bothNaN && !equal)
            return testing::AssertionFailure()
                   << "value " << i << " is " << actual[i] << ", not " << expected[i];
    }
    return testing::AssertionSuccess();
}
