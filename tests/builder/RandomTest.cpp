#include "orvane/builder/Random.h"

#include "model/LiteralProjection.h"
#include "orvane/builder/SHBuilder.h"
#include "tests/native/MakeObject.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace orvane;

TEST(Random, UnitReachesBothEnds)
{
    for (const auto &[draw, unit] : {std::pair{0, 0.0}, {32767, 1.0}, {1, 3.051850947599719e-05}}) {
        platform::RuntimeRandom random, next;
        while (next.Next() != draw)
            random = next;
        EXPECT_EQ(RandomUnit(random), unit);
    }
}

TEST(Random, GaussIsThePolarMethodOverTheThreadsDraws)
{
    const auto gauss = [] { return GaussDeviate(RandomDiskPoint(platform::ThreadRandom())); };
    MakeObject<SHBuilder>()->SetRandomSeed(1);
    EXPECT_NEAR(gauss(), 0.34842560244860066, 1e-15);
    EXPECT_EQ(platform::rand(), 19169); // one rejected pair, one accepted
    MakeObject<SHBuilder>()->SetRandomSeed(-1);
    EXPECT_EQ(platform::ThreadRandom().state, 0xFFFFFFFFu);
    for (std::uint32_t seed = 0; seed < 500; ++seed) {
        platform::srand(seed);
        const double expected = literal::RandomGauss();
        platform::srand(seed);
        ASSERT_EQ(gauss(), expected);
    }
}

TEST(Random, GaussDensity)
{
    EXPECT_EQ(GaussDensity(0.0, 0.0, 1.0), 0.3989422803558185);
    EXPECT_NEAR(GaussDensity(1.0, 0.0, 1.0), 0.24197072449147697, 1e-16);
    EXPECT_TRUE(std::isnan(GaussDensity(0.0, 0.0, 0.0)));
    EXPECT_EQ(GaussDensity(3.0, 2.5, -0.7), -GaussDensity(3.0, 2.5, 0.7));
    for (const double x : {-3.0, -0.37, 0.4, 1.1, 40.0})
        EXPECT_EQ(GaussDensity(x, 0.4, 0.7), literal::GaussDensity(x, 0.4, 0.7));
}

} // namespace
