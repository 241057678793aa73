#include "tests/builder/BuilderCase.h"

namespace {

constexpr std::int32_t rootOf17 = 869476073; ///< its square as a wrapping 32-bit product is 17

TEST(ImageProjection, HasTheBitsOfThePlainLoop)
{
    constexpr struct {
        std::int32_t width, height, band;
        std::size_t coefficients;
    } cases[] = {{1, 1, 2, 4},     {4, 2, 3, 9},         {37, 9, 30, 900}, {256, 128, 30, 900},
                 {64, 32, -5, 25}, {8, 4, rootOf17, 17}, {8, 4, 65536, 0}, {8, 4, 0, 0}};
    for (const int numSteps : tableSizes) {
        BuilderCase model(numSteps);
        auto samples = LiteralSamples(6, 11);
        samples.push_back({pi, literal::twoPi}); // row = height and column = width
        samples.push_back({pi / 2, std::nextafter(literal::twoPi, 10.0)});
        // At pixel corners and a hair beside, where each rounding of the scales shows.
        for (int k = 1; k < 128; k += 9)
            for (const double factor : {1 - 4e-8, 1 - 2e-8, 1.0, 1 + 2e-8, 1 + 4e-8})
                samples.push_back(
                    {k * literal::twoPi / 256 * factor, k * literal::twoPi / 256 * factor});
        model.UseSamples(samples);
        for (const auto &image : cases) {
            std::vector<std::uint8_t> pixels(static_cast<std::size_t>(image.width) * image.height);
            std::generate(pixels.begin(), pixels.end(),
                          [] { return static_cast<std::uint8_t>(platform::rand()); });
            EXPECT_TRUE(model.Gives(
                literal::ProjectImage(model.tables, samples, image.width, image.height,
                                      image.coefficients, pixels.data()),
                [&] {
                    model.builder.CreateSHFromImageBuffer(model.set, image.width, image.height,
                                                          image.band, pixels.data());
                }))
                << image.width << " x " << image.height << ", band " << image.band;
            EXPECT_EQ(model.set.numBands, image.band);
        }
    }
}

TEST(ImageProjection, RefusesImagesAndBandsAndLeavesTheSetAlone)
{
    constexpr struct {
        std::int32_t width, height, band;
    } illegal[] = {{-1, -1, 1}, {-1, 0, 1},  {1, -1, 1},    {65536, 65536, 1}, {most, 3, 1},
                   {1, 1, 31},  {1, 1, -31}, {1, 1, 46341}, {0, 1, 1},         {1, 0, 2}};
    BuilderCase model(64), withoutTables;
    const std::uint8_t white = 255;
    const auto create = [&](BuilderCase &with, int width, int height, int band) {
        with.builder.CreateSHFromImageBuffer(model.set, width, height, band, &white);
    };
    // Where samples and coefficients do not meet, an image without pixels will do.
    create(model, 0, 5, 2);
    EXPECT_TRUE(std::isnan(model.set.coefficients[3]));
    // Nor do the tables bound the bands then.
    create(model, 1, 1, 31);
    EXPECT_EQ(model.set.numBands, 31);
    EXPECT_TRUE(SameBits(model.set.coefficients, std::vector<float>(961, std::nanf(""))));
    create(model, 1, 1, -31);
    EXPECT_EQ(model.set.numBands, -31);
    EXPECT_THROW(create(model, 1, 1, 46341), std::invalid_argument);
    model.builder.GenerateSphericalSamples(1, 2);
    withoutTables.builder.GenerateSphericalSamples(1, 1);
    create(withoutTables, 5, 0, 0);

    for (const auto &[width, height, band] : illegal)
        EXPECT_THROW(create(model, width, height, band), std::invalid_argument)
            << width << " x " << height << ", band " << band;
    EXPECT_THROW(create(withoutTables, 1, 1, 1), orvane::NotReady);
    EXPECT_EQ(model.set.numBands, 0);
}

} // namespace
