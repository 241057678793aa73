#pragma once

// Builders beside the literal tables of the same size, with samples of the same values.

#include "model/LiteralProjection.h"
#include "orvane/base/Constants.h"
#include "orvane/base/Errors.h"
#include "orvane/builder/SHBuilder.h"
#include "platform/RuntimeRandom.h"
#include "tests/native/EachInstructionSet.h"
#include "tests/native/SameBits.h"
#include "tests/native/Sets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr int most = std::numeric_limits<int>::max();
inline constexpr int least = std::numeric_limits<int>::min();
using orvane::pi;

inline constexpr int tableSizes[] = {1, 5, 7, 256, 1000, 1024};

struct BuilderCase {
    /// Without tables where `numSteps` is 0.
    explicit BuilderCase(int numSteps = 0) : tables(numSteps)
    {
        if (numSteps > 0)
            builder.GenerateLookUpTables(numSteps);
    }

    void SetRandomly(int bands)
    {
        set.SetNumBands(bands);
        const auto values = RandomCoefficients(set.coefficients.size(), 1);
        std::copy(values.begin(), values.end(), set.coefficients.begin());
    }

    void UseSamples(const std::vector<literal::Sample> &points)
    {
        samples = points;
        builder.sphericalSamples.clear();
        for (const literal::Sample &point : points)
            builder.sphericalSamples.push_back({point.theta, point.phi});
    }

    /// The least angle that is read at this step, from 1 on: roundings show there.
    double EdgeOf(int step) const
    {
        double angle = step / tables.angleScale;
        while (tables.Index(angle) >= step)
            angle = std::nextafter(angle, 0.0);
        while (tables.Index(angle) < step)
            angle = std::nextafter(angle, 10.0);
        return angle;
    }

    /// Whether `create`, run at every instruction set, fills the set with these coefficients.
    template <typename Create>
    testing::AssertionResult Gives(const std::vector<float> &expected, const Create &create)
    {
        for (const orvane::Kernels *kernels : SupportedKernels()) {
            builder.UseInstructionSet(kernels->instructionSet);
            create();
            if (const auto same = SameBits(set.coefficients, expected); !same)
                return testing::AssertionFailure()
                       << same.message() << " with " << Name(kernels->instructionSet) << ", "
                       << tables.numSteps << " steps";
        }
        return testing::AssertionSuccess();
    }

    literal::Tables tables;
    std::vector<literal::Sample> samples;
    const std::shared_ptr<SHBuilder> builderOwner = MakeObject<SHBuilder>();
    const std::shared_ptr<SphericalHarmonic> setOwner = MakeObject<SphericalHarmonic>();
    SHBuilder &builder = *builderOwner;
    SphericalHarmonic &set = *setOwner;
};

inline std::vector<literal::Sample> LiteralSamples(std::uint32_t seed, int n)
{
    platform::srand(seed);
    return literal::StratifiedSamples(n);
}

/// Whether both sequences hold the same pairs of coordinates.
template <class Actual, class Expected>
bool SamePoints(const Actual &actual, const Expected &expected)
{
    return std::equal(actual.begin(), actual.end(), expected.begin(), expected.end(),
                      [](const auto &a, const auto &b) {
                          const auto &[a0, a1] = a;
                          const auto &[b0, b1] = b;
                          return a0 == b0 && a1 == b1;
                      });
}
