#pragma once

// The objects that jobs work on.

#include "orvane/builder/SHBuilder.h"
#include "platform/RuntimeRandom.h"
#include "tests/native/MakeObject.h"

namespace bench {

/// A builder with tables for `numSteps` steps.
inline std::shared_ptr<SHBuilder> MakeBuilder(int numSteps)
{
    auto builder = MakeObject<SHBuilder>();
    builder->GenerateLookUpTables(numSteps);
    return builder;
}

/// A set that is rough at every scale: uniform draws from -1 to 1, falling off with the band.
inline std::shared_ptr<SphericalHarmonic> MakeSet(int numBands)
{
    auto set = MakeObject<SphericalHarmonic>();
    set->SetNumBands(numBands);
    platform::RuntimeRandom random;
    for (int l = 0; l < numBands; ++l)
        for (int i = l * l; i < (l + 1) * (l + 1); ++i)
            set->coefficients[i] = static_cast<float>((random.Next() / 16384.0 - 1.0) / (l + 1));
    return set;
}

} // namespace bench
