#pragma once

// Coefficient sets to test with.

#include "orvane/sh/SphericalHarmonic.h"
#include "tests/native/MakeObject.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <random>
#include <vector>

/// Coefficients, normally distributed; a seed always gives the same.
inline std::vector<float> RandomCoefficients(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<float> normal;
    std::vector<float> values(count);
    for (float &value : values)
        value = normal(random);
    return values;
}

/// A set of these coefficients, whatever its band count says.
inline std::shared_ptr<SphericalHarmonic> MakeSet(int numBands, const std::vector<float> &values)
{
    auto set = MakeObject<SphericalHarmonic>();
    set->numBands = numBands;
    set->coefficients.resize(values.size());
    std::copy(values.begin(), values.end(), set->coefficients.begin());
    return set;
}

inline std::vector<float> Values(const SphericalHarmonic &set)
{
    return {set.coefficients.begin(), set.coefficients.end()};
}
