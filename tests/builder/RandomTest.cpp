#include "orvane/builder/Random.h"

#include "model/LiteralProjection.h"
#include "orvane/builder/SHBuilder.h"
#include "tests/native/MakeObject.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

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
    const auto gauss = [] {
        platform::ThreadDraws draws;
        return GaussDeviate(RandomDiskPoint(draws));
    };
    MakeObject<SHBuilder>()->SetRandomSeed(1);
    EXPECT_NEAR(gauss(), 0.34842560244860066, 1e-15);
    EXPECT_EQ(platform::rand(), 19169); // one rejected pair, one accepted
    MakeObject<SHBuilder>()->SetRandomSeed(-1);
    EXPECT_EQ(platform::rand(), platform::RuntimeRandom{0xFFFFFFFFu}.Next());
    for (std::uint32_t seed = 0; seed < 500; ++seed) {
        platform::srand(seed);
        const double expected = literal::RandomGauss();
        platform::srand(seed);
        ASSERT_EQ(gauss(), expected);
    }
}

TEST(Random, IsOneGeneratorForEachThread)
{
    std::thread([] {
        for (const int draw : {41, 18467, 6334, 26500, 19169}) // before any seeding
            EXPECT_EQ(platform::rand(), draw);
    }).join();
    platform::srand(7);
    std::thread([] { platform::srand(8); }).join();
    EXPECT_EQ(platform::rand(), platform::RuntimeRandom{7}.Next());
}

#if defined(_WIN32)
TEST(Random, IsTheRuntimesOwn)
{
    const auto builder = MakeObject<SHBuilder>();
    platform::RuntimeRandom sequence{77};
    ::srand(77);
    EXPECT_EQ(platform::rand(), sequence.Next());
    EXPECT_EQ(::rand(), sequence.Next());
    builder->SetRandomSeed(78);
    EXPECT_EQ(::rand(), platform::RuntimeRandom{78}.Next());
    // Samples take two draws each, the next draw is anybody's.
    builder->GenerateSphericalSamples(79, 3);
    sequence.state = 79;
    for (int draw = 0; draw < 18; ++draw)
        sequence.Next();
    EXPECT_EQ(::rand(), sequence.Next());
}
#endif

TEST(Random, GaussDensity)
{
    EXPECT_EQ(GaussDensity(0.0, 0.0, 1.0), 0.3989422803558185);
    EXPECT_TRUE(std::isnan(GaussDensity(0.0, 0.0, 0.0)));
    for (const double x : {-3.0, -0.37, 0.4, 1.1, 40.0})
        for (const double stdDev : {0.7, -0.7})
            EXPECT_EQ(GaussDensity(x, 0.4, stdDev), literal::GaussDensity(x, 0.4, stdDev));
}

} // namespace
