#include "tests/builder/BuilderCase.h"

#include <functional>

namespace {

TEST(SphericalSamples, AreStratifiedInTheOrderOfTheirDraws)
{
    BuilderCase model;
    // 1/3 rounds up in single precision: draw 13, which makes the last row's first theta, reaches
    // beyond the pole where it is 32767.
    std::uint32_t poleSeed = 0;
    for (int draw = 0; draw != 32767;) {
        platform::srand(++poleSeed);
        for (int i = 0; i < 13; ++i)
            draw = platform::rand();
    }
    SHBuilder &builder = model.builder;
    for (const int n : {0, 1, 2, 5, 10, 64, -4, 3}) {
        const auto expected = LiteralSamples(poleSeed, n);
        const int nextDraw = platform::rand();
        builder.GenerateSphericalSamples(poleSeed, n);
        EXPECT_EQ(platform::rand(), nextDraw);
        EXPECT_TRUE(SamePoints(builder.sphericalSamples, expected)) << n;
    }
    EXPECT_EQ(builder.sphericalSamples[6].theta, pi);

    builder.GenerateSphericalSamples(1, 1);
    EXPECT_NEAR(builder.sphericalSamples[0].theta, 0.07076103786700517, 1e-15);
    EXPECT_NEAR(builder.sphericalSamples[0].phi, 3.541111065906503, 1e-15);
    platform::srand(5);
    EXPECT_THROW(builder.GenerateSphericalSamples(1, 16385), std::invalid_argument);
    EXPECT_EQ(builder.sphericalSamples.size(), 1u);
    EXPECT_EQ(platform::rand(), platform::RuntimeRandom{5}.Next());
}

TEST(Projection, OfLatitudeLongitudeAndBlobsHasTheBitsOfThePlainLoop)
{
    for (const int numSteps : tableSizes) {
        BuilderCase model(numSteps);
        SHBuilder &builder = model.builder;
        SphericalHarmonic &set = model.set;
        auto samples = LiteralSamples(11, 9);
        for (int step = 1; step < numSteps / 2; step = 3 * step + 1) {
            const double edge = model.EdgeOf(step);
            samples.push_back({edge, std::nextafter(edge, 0.0)});
            samples.push_back({std::nextafter(edge, 0.0), edge});
        }
        model.UseSamples(samples);
        for (const int bands : {0, 1, 2, 5, 17, 30}) {
            const auto project = [&](const literal::Function &function) {
                return literal::Project(model.tables, model.samples, bands, function);
            };
            EXPECT_TRUE(model.Gives(project(literal::Latitude(model.tables)),
                                    [&] { builder.CreateLatitudeSH(set, bands); }));
            EXPECT_TRUE(model.Gives(project(literal::Longitude(model.tables)),
                                    [&] { builder.CreateLongtitudeSH(set, bands); }));
            EXPECT_TRUE(model.Gives(project(literal::Gauss(0.3f, 1.2f, 4.5f)),
                                    [&] { builder.CreateGaussSH(set, bands, 0.3f, 1.2f, 4.5f); }));
            EXPECT_EQ(set.numBands, bands);
        }
    }
}

// The estimate that spares most samples the library calls must never drop one that counts: at the
// rim of the reach, and where the scalar product leaves [-1, 1] and the value is NaN.
TEST(Projection, OfABlobKeepsEverySampleThatCounts)
{
    BuilderCase model(256);
    int notNumbers = 0;
    const auto compare = [&](float stdDev, float latitude, float longitude) {
        const auto expected = literal::Project(model.tables, model.samples, 1,
                                               literal::Gauss(stdDev, latitude, longitude));
        notNumbers += std::isnan(expected[0]);
        EXPECT_TRUE(model.Gives(
            expected,
            [&] { model.builder.CreateGaussSH(model.set, 1, stdDev, latitude, longitude); }))
            << stdDev << " around " << latitude << ", " << longitude;
    };
    for (const float stdDev : {0.2f, 1e-4f, 0.62f, 0.6283185f, 40.0f, 0.0f, -0.3f, HUGE_VALF})
        for (const auto &[latitude, longitude] :
             {std::pair{0.0f, 0.0f}, {1.0f, 2.0f}, {3.1415927f, 1.0f}, {-700.0f, 1e8f}}) {
            auto samples = LiteralSamples(3, 16);
            for (const double rim : {latitude + 5.0 * stdDev, latitude - 5.0 * stdDev})
                for (int i = -5; i <= 5; ++i)
                    if (const double theta = rim + i * 3.7e-7; theta >= 0.0 && theta <= pi)
                        samples.push_back({theta, longitude});
            model.UseSamples(samples);
            compare(stdDev, latitude, longitude);
        }
    compare(0.2f, std::nanf(""), 1.0f);
    for (const bool antipode : {false, true}) {
        notNumbers = 0;
        for (int i = 1; i < 157; ++i) {
            const float latitude = 0.01f * static_cast<float>(i);
            const float longitude = 0.5f * latitude;
            if (antipode)
                model.UseSamples({{pi - latitude, pi + longitude}});
            else
                model.UseSamples({{latitude, longitude}});
            compare(0.2f, latitude, longitude);
        }
        EXPECT_GT(notNumbers, 0);
    }
}

/// Ordinary values with zeros and extremes among them; `last` beyond the full turn.
double Wild(double phi, double last)
{
    constexpr double special[] = {0.0, -0.0, 1e-310, -1e-46, 255.0, 1e30, -1e30};
    if (phi > literal::twoPi)
        return last;
    const auto kind = static_cast<std::size_t>(phi * 1e6) % 20;
    return kind < std::size(special) ? special[kind] : std::sin(1e3 * phi);
}

TEST(Projection, OfAnyFunctionHasTheBitsOfThePlainLoop)
{
    const ProjectionFunc wild = [](SHBuilder &, const double &phi, const double &,
                                   const void *last) {
        return Wild(phi, *static_cast<const double *>(last));
    };
    for (const int numSteps : tableSizes) {
        BuilderCase model(numSteps);
        for (const std::size_t count : {0, 1, 2, 5, 63, 64, 65, 131})
            for (const double last : {0.0, -0.0, 1.0, 1e300, infinity, std::nan("")}) {
                auto samples = LiteralSamples(1, 12);
                samples.resize(count);
                if (count > 0)
                    samples.back() = {pi, std::nextafter(literal::twoPi, 7.0)};
                model.UseSamples(samples);
                for (const int bands : {1, 2, 17, 30})
                    EXPECT_TRUE(model.Gives(
                        literal::Project(model.tables, samples, bands,
                                         [last](double phi, double) { return Wild(phi, last); }),
                        [&] { model.builder.ProjectFunction(model.set, bands, wild, &last); }))
                        << count << " samples, " << bands << " bands, last value " << last;
            }
    }
}

// Above 2^24 samples their number rounds in single precision.
TEST(Projection, WeighsSamplesInSinglePrecision)
{
    BuilderCase model(1);
    std::size_t count = 1 + (1 << 24);
    model.builder.sphericalSamples.resize(count);
    const ProjectionFunc lastIsOne = [](SHBuilder &, const double &, const double &,
                                        const void *left) {
        return --*static_cast<std::size_t *>(const_cast<void *>(left)) == 0 ? 1.0 : 0.0;
    };
    model.builder.ProjectFunction(model.set, 1, lastIsOne, &count);
    EXPECT_EQ(model.set.coefficients[0], 12.566371f / 16777216.0f * 0.28209479177387814f);
}

TEST(Projection, WithoutBandsOrSamplesReadsNoTable)
{
    using Create = std::function<void(SHBuilder &, SphericalHarmonic &, std::int32_t bands)>;
    const Create jobs[] = {
        [](auto &builder, auto &set, auto bands) { builder.CreateLatitudeSH(set, bands); },
        [](auto &builder, auto &set, auto bands) { builder.CreateLongtitudeSH(set, bands); },
        [](auto &builder, auto &set, auto bands) { builder.CreateGaussSH(set, bands, 1, 0, 0); }};
    BuilderCase fresh, sampled, tabled(16);
    sampled.builder.GenerateSphericalSamples(1, 2);
    SphericalHarmonic &set = fresh.set;
    for (const Create &create : jobs) {
        create(sampled.builder, set, 0);
        EXPECT_EQ(set.coefficients.size(), 0u);
        EXPECT_THROW(create(sampled.builder, set, 1), orvane::NotReady);
        EXPECT_THROW(create(tabled.builder, set, 65536), std::invalid_argument);
        EXPECT_EQ(set.coefficients.size(), 0u);
        create(fresh.builder, set, 2);
        EXPECT_EQ(set.numBands, 2);
        EXPECT_TRUE(SameBits(set.coefficients, std::vector<float>(4, std::nanf(""))));
    }
    fresh.builder.CreateConstantSH(set, 3.5f, 0);
    EXPECT_EQ(set.coefficients.size(), 0u);
    tabled.builder.CreateConstantSH(set, 3.5f, 2);
    EXPECT_EQ(Values(set), (std::vector<float>{0.28209479177387814f * 3.5f, 0, 0, 0}));
    tabled.UseSamples({{1.0, infinity}}); // as no script can place them
    EXPECT_THROW(tabled.builder.CreateLatitudeSH(set, 2), std::invalid_argument);
}

TEST(ProjectionFunctions, HaveTheirKnownValues)
{
    BuilderCase model(1000);
    const SHBuilder &builder = model.builder;
    int atTheRim = 0;
    for (double theta = 0.01; theta < pi; theta += 0.01) {
        const double stdDev = std::acos(std::cos(theta)) / 5.0;
        atTheRim += stdDev * 5.0 == std::acos(std::cos(theta));
        EXPECT_EQ(builder.GaussProjectionFunc(0.0, theta, stdDev),
                  literal::Gauss(stdDev, 0.0, 0.0)(0.0, theta));
    }
    EXPECT_GT(atTheRim, 0);
    const literal::Function longitude = literal::Longitude(model.tables);
    for (double theta = 0.0; theta < pi; theta += 0.01)
        EXPECT_EQ(builder.LongtitudeProjectionFunc(1.5, theta), longitude(1.5, theta));
    for (const double angle : {infinity, -infinity, std::nan("")}) {
        EXPECT_THROW(builder.LatitudeProjectionFunc(0.0, angle), std::invalid_argument);
        EXPECT_THROW(builder.LongtitudeProjectionFunc(angle, 0.0), std::invalid_argument);
        EXPECT_EQ(builder.LatitudeProjectionFunc(angle, 0.0), 0.0);
        EXPECT_TRUE(std::isnan(builder.GaussProjectionFunc(angle, 1.0, 0.5)));
    }
}

} // namespace
