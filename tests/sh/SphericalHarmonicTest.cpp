#include "orvane/sh/CoefficientBuffer.h"
#include "tests/native/Sets.h"

#include <gtest/gtest.h>

namespace {

TEST(SphericalHarmonic, KeepsTheLowerCoefficientsWhenResized)
{
    const auto sh = MakeObject<SphericalHarmonic>();
    EXPECT_EQ(sh->numBands, 0);
    EXPECT_EQ(sh->GetNumCoefficients(), 0);
    sh->SetNumBands(3);
    EXPECT_EQ(Values(*sh), std::vector<float>(9));
    for (int k = 0; k < 9; ++k) {
        sh->SetCoefficient(k, k + 1.0f);
        EXPECT_EQ(sh->GetCoefficient(k), k + 1.0f);
    }
    sh->SetNumBands(2);
    EXPECT_EQ(Values(*sh), (std::vector<float>{1, 2, 3, 4}));
    sh->SetNumBands(3);
    EXPECT_EQ(Values(*sh), (std::vector<float>{1, 2, 3, 4, 0, 0, 0, 0, 0}));
    sh->numBands = 7; // the field alone
    sh->Clean();
    EXPECT_EQ(Values(*sh), std::vector<float>(9));
    EXPECT_EQ(sh->numBands, 7);
    sh->ResizeToBands(-2);
    EXPECT_EQ(sh->numBands, -2);
    EXPECT_EQ(sh->GetNumCoefficients(), 4);
}

// The source is bare memory of the set itself, which no view keeps.
TEST(SphericalHarmonic, IsExtendedFromItsOwnMemory)
{
    const auto sh = MakeSet(3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    orvane::ExtendFromBuffer(*sh, sh->coefficients.data(), 4, 5);
    EXPECT_EQ(Values(*sh), (std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0, 0, //
                                               0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

} // namespace
