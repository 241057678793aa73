#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Errors.h"
#include "tests/native/MakeObject.h"

#include <gtest/gtest.h>

namespace {

/// The argument that `call` refuses as absent, or -1.
template <typename Call> int Refused(Call call)
{
    try {
        call();
    } catch (const orvane::MissingSet &missing) {
        return missing.argument;
    }
    return -1;
}

TEST(SetOperations, ReturnTheTargetAndRefuseAbsentSets)
{
    const auto builder = MakeObject<SHBuilder>();
    const auto set = MakeObject<SphericalHarmonic>();
    SHBuilder &b = *builder;
    SphericalHarmonic *s = set.get();
    set->SetNumBands(1);
    set->SetCoefficient(0, 1.0f);

    EXPECT_EQ(b.AddSH(s, s), s);                           // 2
    EXPECT_EQ(b.AddScaledSH(s, s, 2.0f), s);               // 6
    EXPECT_EQ(b.SubtractScaledSH(s, s, 0.5f), s);          // 3
    EXPECT_EQ(b.ScaleSH(s, 3.0f), s);                      // 9
    EXPECT_EQ(b.LerpSH(s, s, s, 0.5), s);                  // 9
    EXPECT_EQ(b.CopyScaleAndSubtractSH(s, s, 3.0f, s), s); // 18
    EXPECT_EQ(set->GetCoefficient(0), 18.0f);

    EXPECT_EQ(Refused([&] { b.AddSH(nullptr, s); }), 0);
    EXPECT_EQ(Refused([&] { b.AddSH(s, nullptr); }), 1);
    EXPECT_EQ(Refused([&] { b.AddScaledSH(s, nullptr, 1.0f); }), 1);
    EXPECT_EQ(Refused([&] { b.SubtractSH(nullptr, nullptr); }), 0);
    EXPECT_EQ(Refused([&] { b.SubtractScaledSH(s, nullptr, 1.0f); }), 1);
    EXPECT_EQ(Refused([&] { b.ScaleSH(nullptr, 1.0f); }), 0);
    EXPECT_EQ(Refused([&] { b.OffsetSH(nullptr, 1.0f); }), 0);
    EXPECT_EQ(Refused([&] { b.LerpSH(s, s, nullptr, 1.0); }), 2);
    EXPECT_EQ(Refused([&] { b.CopyScaleAndSubtractSH(s, nullptr, 1.0f, s); }), 1);
    EXPECT_EQ(Refused([&] { b.CopyScaleAndSubtractSH(s, s, 1.0f, nullptr); }), 3);
    EXPECT_EQ(set->GetCoefficient(0), 18.0f);

    EXPECT_EQ(b.SubtractSH(s, s), s);
    EXPECT_EQ(set->GetCoefficient(0), 0.0f);
}

TEST(SetOperations, OffsetsTheFirstCoefficientByValueTimesItsFunction)
{
    const auto builder = MakeObject<SHBuilder>();
    const auto set = MakeObject<SphericalHarmonic>();
    EXPECT_EQ(builder->OffsetSH(set.get(), 1.0f), set.get());
    EXPECT_EQ(set->GetNumCoefficients(), 0);
    set->SetNumBands(2);
    EXPECT_THROW(builder->OffsetSH(set.get(), 1.0f), orvane::NotReady);
    builder->GenerateLookUpTables(16);
    builder->OffsetSH(set.get(), 1.0f);
    EXPECT_EQ(set->GetCoefficient(0), 0.282094806432724f);
    builder->OffsetSH(set.get(), -3.0f);
    EXPECT_EQ(set->GetCoefficient(0), 0.2820948f * -3.0f + 0.2820948f);
    for (int i = 1; i < 4; ++i)
        EXPECT_EQ(set->GetCoefficient(i), 0.0f);
}

} // namespace
