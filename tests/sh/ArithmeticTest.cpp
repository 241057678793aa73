#include "orvane/sh/SphericalHarmonic.h"

#include "model/LiteralArithmetic.h"
#include "tests/native/SameBits.h"
#include "tests/native/Sets.h"

#include <functional>

namespace {

struct Operation {
    const char *name;
    std::function<void(SphericalHarmonic &, SphericalHarmonic &, SphericalHarmonic &)> shipped;
    std::function<void(literal::Set &, literal::Set &, literal::Set &)> literal;
};

const float k = 0.3f;

/// On a target and two operands, of which most use one.
const Operation operations[] = {
    {"Add", [](auto &t, auto &a, auto &) { t.Add(a); },
     [](auto &t, auto &a, auto &) { literal::Add(t, a); }},
    {"AddScaled", [](auto &t, auto &a, auto &) { t.AddScaled(a, k); },
     [](auto &t, auto &a, auto &) { literal::AddScaled(t, a, k); }},
    {"Subtract", [](auto &t, auto &a, auto &) { t.Subtract(a); },
     [](auto &t, auto &a, auto &) { literal::Subtract(t, a); }},
    {"SubtractScaled", [](auto &t, auto &a, auto &) { t.SubtractScaled(a, k); },
     [](auto &t, auto &a, auto &) { literal::SubtractScaled(t, a, k); }},
    {"Scale", [](auto &t, auto &, auto &) { t.Scale(k); },
     [](auto &t, auto &, auto &) { literal::Scale(t, k); }},
    {"CopyScaleAndSubtract", [](auto &t, auto &a, auto &b) { t.CopyScaleAndSubtract(a, 0.7, b); },
     [](auto &t, auto &a, auto &b) { literal::CopyScaleAndSubtract(t, a, 0.7, b); }},
    {"Lerp", [](auto &t, auto &a, auto &b) { t.Lerp(a, b, 1.3); },
     [](auto &t, auto &a, auto &b) { literal::Lerp(t, a, b, 1.3); }},
    {"CopySH", [](auto &t, auto &a, auto &) { orvane::CopySH(a, t), a.Scale(k); },
     [](auto &t, auto &a, auto &) { t = a, literal::Scale(a, k); }},
};

TEST(Arithmetic, GivesTheLiteralBitsForEverySizeAndAlias)
{
    struct Sizes {
        int bands, count;
    };
    // Square sets, and sets whose band count was written on its own.
    const Sizes sizes[] = {{0, 0}, {1, 1}, {2, 4}, {3, 9}, {30, 900}, {5, 9}, {1, 9}, {-2, 9}};
    for (const Operation &operation : operations)
        for (const Sizes &t : sizes)
            for (const Sizes &a : sizes)
                for (const Sizes &b : sizes)
                    for (int alias = 0; alias < 5; ++alias) {
                        // Which of the three sets each operand is.
                        const int roles[5][2] = {{1, 2}, {0, 2}, {1, 0}, {0, 0}, {1, 1}};
                        std::vector<literal::Set> literals;
                        std::vector<std::shared_ptr<SphericalHarmonic>> sets;
                        for (const Sizes &sizes : {t, a, b}) {
                            literals.push_back(
                                {sizes.bands, RandomCoefficients(sizes.count, literals.size())});
                            sets.push_back(MakeSet(sizes.bands, literals.back().coefficients));
                        }
                        const auto [first, second] = roles[alias];
                        operation.shipped(*sets[0], *sets[first], *sets[second]);
                        operation.literal(literals[0], literals[first], literals[second]);
                        SCOPED_TRACE(operation.name);
                        for (int i = 0; i < 3; ++i) {
                            EXPECT_EQ(sets[i]->numBands, literals[i].numBands);
                            EXPECT_TRUE(SameBits(sets[i]->coefficients, literals[i].coefficients));
                        }
                    }
}

} // namespace
