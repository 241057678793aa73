#pragma once

// Builders beside the literal tables of the same size, with samples of the same values.

#include "model/LiteralProjection.h"
#include "orvane/builder/SHBuilder.h"
#include "tests/kernels/EachInstructionSet.h"
#include "tests/native/MakeObject.h"
#include "tests/native/SameBits.h"

#include <initializer_list>
#include <memory>
#include <vector>

inline constexpr int projectionTableSizes[] = {1, 5, 7, 256, 1000, 1024};

struct ProjectionCase {
    explicit ProjectionCase(int numSteps)
        : tables(numSteps), builder(MakeObject<SHBuilder>()), set(MakeObject<SphericalHarmonic>())
    {
        builder->GenerateLookUpTables(numSteps);
    }

    void UseSamples(const std::vector<literal::Sample> &points)
    {
        samples = points;
        builder->sphericalSamples.clear();
        for (const literal::Sample &point : points)
            builder->sphericalSamples.push_back({point.theta, point.phi});
    }

    /// Whether `project`, run at every instruction set, fills the set with these coefficients.
    template <typename Project>
    testing::AssertionResult Gives(const std::vector<float> &expected, const Project &project)
    {
        for (const orvane::Kernels *kernels : SupportedKernels()) {
            builder->UseInstructionSet(kernels->instructionSet);
            project();
            const auto &actual = set->coefficients;
            const auto same =
                SameBits(actual.data(), actual.size(), expected.data(), expected.size());
            if (!same)
                return testing::AssertionFailure()
                       << same.message() << " with " << Name(kernels->instructionSet) << ", "
                       << tables.numSteps << " steps";
        }
        return testing::AssertionSuccess();
    }

    literal::Tables tables;
    std::vector<literal::Sample> samples;
    std::shared_ptr<SHBuilder> builder;
    std::shared_ptr<SphericalHarmonic> set;
};
