#include "tests/builder/BuilderCase.h"

namespace {

// What the others do is that of SphericalHarmonic's operations, which scripts call through them.
TEST(SetOperations, OffsetsTheFirstCoefficientByValueTimesItsFunction)
{
    BuilderCase model;
    const auto offset = [&](float value) { model.builder.OffsetSH(&model.set, value); };
    offset(1.0f);
    EXPECT_EQ(model.set.GetNumCoefficients(), 0);
    model.set.SetNumBands(2);
    EXPECT_THROW(offset(1.0f), orvane::NotReady);
    model.builder.GenerateLookUpTables(16);
    offset(1.0f);
    EXPECT_EQ(Values(model.set), (std::vector<float>{0.282094806432724f, 0, 0, 0}));
    offset(-3.0f);
    EXPECT_EQ(Values(model.set), (std::vector<float>{0.2820948f * -3.0f + 0.2820948f, 0, 0, 0}));
}

} // namespace
