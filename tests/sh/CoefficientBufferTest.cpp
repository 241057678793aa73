#include "orvane/sh/CoefficientBuffer.h"

#include "tests/native/MakeObject.h"

#include <gtest/gtest.h>

namespace {

// Sizes, refusals and views are tested from scripts. Only here is the source bare memory of the set
// itself, which nobody else keeps.
TEST(CoefficientBuffer, ExtendsASetFromItsOwnMemory)
{
    const auto sh = MakeObject<SphericalHarmonic>();
    sh->SetNumBands(3);
    for (int k = 0; k < 9; ++k)
        sh->SetCoefficient(k, k + 1.0f);
    orvane::ExtendFromBuffer(*sh, sh->coefficients.data(), 4, 5);
    EXPECT_EQ(std::vector<float>(sh->coefficients.begin(), sh->coefficients.end()),
              (std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0, 0, //
                                  0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

} // namespace
