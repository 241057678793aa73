#include "model/LiteralRender.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Errors.h"
#include "tests/native/MakeObject.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr int most = std::numeric_limits<int>::max();
constexpr int least = std::numeric_limits<int>::min();
const double pi = std::acos(-1.0);

class Image : public testing::Test {
protected:
    std::vector<std::uint8_t> Pixels() const
    {
        const std::uint8_t *first = builder.imageBuffer.get();
        return {first, first + std::size_t(builder.imageWidth) * builder.imageHeight};
    }
    int Pixel(int x, int y) const { return builder.imageBuffer[y * builder.imageWidth + x]; }

    void SetCoefficients(int bands, const std::vector<float> &values)
    {
        set.SetNumBands(bands);
        std::copy(values.begin(), values.end(), set.coefficients.begin());
    }
    void SetRandomly(int bands)
    {
        std::mt19937 random(1);
        std::normal_distribution<float> normal;
        set.SetNumBands(bands);
        for (float &coefficient : set.coefficients)
            coefficient = normal(random);
    }

    const std::shared_ptr<SHBuilder> builderOwner = MakeObject<SHBuilder>();
    const std::shared_ptr<SphericalHarmonic> setOwner = MakeObject<SphericalHarmonic>();
    SHBuilder &builder = *builderOwner;
    SphericalHarmonic &set = *setOwner;
};

TEST_F(Image, IsBlackAtFirstAndOutlivesItsReplacementInViews)
{
    builder.SetImageBuffer(3, 2);
    EXPECT_EQ(Pixels(), std::vector<std::uint8_t>(6, 0));
    builder.imageBuffer[5] = 9;
    const auto view = builder.imageBuffer;
    builder.SetImageBuffer(3, 2);
    EXPECT_EQ(Pixels(), std::vector<std::uint8_t>(6, 0));
    EXPECT_EQ(view[5], 9);
    EXPECT_EQ(view.use_count(), 1);
    builder.ClearImageBuffer();
    builder.ClearImageBuffer();
    EXPECT_EQ(builder.imageBuffer, nullptr);
    EXPECT_EQ(builder.imageWidth, 3);
}

TEST_F(Image, RefusesSizesBeyondTheLimitsAndKeepsTheOldOne)
{
    builder.SetImageBuffer(4, 1);
    builder.imageBuffer[3] = 7;
    for (const auto &[width, height] :
         {std::pair{-1, 1}, {1, -1}, {-4, -1}, {65536, 65536}, {46341, 46341}, {most, 2}})
        EXPECT_THROW(builder.SetImageBuffer(width, height), std::invalid_argument);
    EXPECT_EQ(Pixels(), (std::vector<std::uint8_t>{0, 0, 0, 7}));
    for (const auto &[width, height] : {std::pair{0, 0}, {0, most}, {most, 0}}) {
        builder.SetImageBuffer(width, height);
        builder.RenderSHToImageBuffer(set, 1, 0, 1, 0);
        EXPECT_TRUE(Pixels().empty());
    }
}

TEST_F(Image, RendersSliceBySlice)
{
    builder.GenerateLookUpTables(256);
    SetRandomly(5);
    struct Case {
        int width, height, slices, firstSlice, lastSlice;
        int columnsBegin, columnsEnd, rowsBegin, rowsEnd; // written
    };
    for (const Case &c :
         {Case{10, 10, 1, 0, 0, 0, 10, 0, 10}, Case{10, 10, 3, 0, 8, 0, 9, 0, 9},
          Case{64, 32, 2, 1, 1, 32, 64, 0, 16}, Case{64, 32, 2, 2, 2, 0, 32, 16, 32},
          Case{300, 7, 2, 3, 3, 150, 300, 3, 6}, Case{2, 2, 3, 0, 8, 0, 0, 0, 0}}) {
        const literal::Tables tables(256);
        std::vector<std::uint8_t> whole(c.width * c.height);
        literal::Render(tables, set.coefficients.data(), 5, 20, 128, 1, 0, c.width, c.height,
                        whole.data());
        builder.SetImageBuffer(c.width, c.height);
        for (int slice = c.firstSlice; slice <= c.lastSlice; ++slice)
            builder.RenderSHToImageBuffer(set, 20, 128, c.slices, slice);
        for (int y = 0; y < c.height; ++y)
            for (int x = 0; x < c.width; ++x) {
                const bool written =
                    x >= c.columnsBegin && x < c.columnsEnd && y >= c.rowsBegin && y < c.rowsEnd;
                ASSERT_EQ(Pixel(x, y), written ? whole[y * c.width + x] : 0) << x << ", " << y;
            }
    }
}

TEST_F(Image, ShowsTheBandOneFunctionsWhereTheyBelong)
{
    constexpr int width = 48;
    constexpr int height = 24;
    builder.GenerateLookUpTables(16384);
    builder.SetImageBuffer(width, height);
    using Function = double (*)(double phi, double theta);
    const Function functions[] = {
        [](double, double) { return std::sqrt(1 / (4 * pi)); },
        [](double phi, double theta) {
            return -std::sqrt(3 / (4 * pi)) * std::sin(theta) * std::sin(phi);
        },
        [](double, double theta) { return std::sqrt(3 / (4 * pi)) * std::cos(theta); },
        [](double phi, double theta) {
            return -std::sqrt(3 / (4 * pi)) * std::sin(theta) * std::cos(phi);
        }};
    for (int index = 0; index < 4; ++index) {
        SetCoefficients(2, {0, 0, 0, 0});
        set.coefficients[index] = 1;
        builder.RenderSHToImageBuffer(set, 200, 128, 1, 0);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const double value = functions[index](x * 2 * pi / width, y * pi / height);
                // A table step is 0.0004; one grey level is 0.005.
                ASSERT_NEAR(Pixel(x, y), 128 + std::trunc(200 * value), 1) << index;
                const bool betweenBytes = std::fabs(200 * value - std::round(200 * value)) > 0.1;
                ASSERT_TRUE(!betweenBytes || Pixel(x, y) == 128 + std::trunc(200 * value)) << index;
            }
    }
}

TEST_F(Image, AddsTheOffsetAfterTruncating)
{
    builder.GenerateLookUpTables(256);
    builder.SetImageBuffer(1, 1);
    const float one = std::nextafter(static_cast<float>(std::sqrt(4 * pi)), 10.0f); // value 1 up
    struct Case {
        float coefficient, scale;
        int offset, expected;
    };
    for (const Case &c : {Case{-one, 127, 128, 1}, Case{0, 127, 128, 128}, Case{one, 127, 128, 255},
                          Case{-one, 0.5f, 0, 0}, Case{-one, 0.5f, 3, 3}, Case{-one, 2, 1, 0},
                          Case{one, 300, 0, 255}, Case{one, 1e38f, least, 0},
                          Case{-one, 1e38f, most, 0}, Case{NAN, 1, 77, 77}}) {
        SetCoefficients(1, {c.coefficient});
        builder.RenderSHToImageBuffer(set, c.scale, c.offset, 1, 0);
        EXPECT_EQ(Pixel(0, 0), c.expected) << c.coefficient << " * " << c.scale;
    }
}

TEST_F(Image, ASetWithoutTermsShowsTheOffsetAndNeedsNoTables)
{
    builder.SetImageBuffer(5, 3);
    for (const int bands : {0, 65536, 46341}) { // the squares of the last two wrap to 0 and below
        set.numBands = bands;
        for (const auto &[offset, byte] : {std::pair{90, 90}, {-5, 0}, {300, 255}, {least, 0}}) {
            builder.RenderSHToImageBuffer(set, NAN, offset, 1, 0);
            EXPECT_EQ(Pixels(), std::vector<std::uint8_t>(15, byte));
        }
    }
}

TEST_F(Image, RefusesARenderBeforeAnyPixelIsWritten)
{
    SetRandomly(3);
    EXPECT_THROW(builder.RenderSHToImageBuffer(set, 1, 0, 1, 0), orvane::NotReady); // no image
    builder.SetImageBuffer(6, 6);
    EXPECT_THROW(builder.RenderSHToImageBuffer(set, 1, 99, 1, 0), orvane::NotReady); // no tables
    EXPECT_NO_THROW(builder.RenderSHToImageBuffer(set, 1, 99, 7, 0));                // empty tile
    builder.GenerateLookUpTables(16);
    struct Slice {
        int count, index;
        bool legal;
    };
    for (const Slice &slice :
         {Slice{0, 0, false}, Slice{-1, 0, false}, Slice{least, 0, false}, Slice{1, 1, false},
          Slice{2, 4, false}, Slice{2, -1, false}, Slice{46340, most, false},
          Slice{46341, most, true}, Slice{65536, 0, true}, Slice{most, most, true}}) {
        if (slice.legal)
            builder.RenderSHToImageBuffer(set, 1, 99, slice.count, slice.index);
        else
            EXPECT_THROW(builder.RenderSHToImageBuffer(set, 1, 99, slice.count, slice.index),
                         std::invalid_argument)
                << slice.count << ", " << slice.index;
    }
    for (const int bands : {4, 30, 31, -4, 46340}) { // there are 9 coefficients
        set.numBands = bands;
        EXPECT_THROW(builder.RenderSHToImageBuffer(set, 1, 99, 1, 0), std::invalid_argument);
    }
    set.SetNumBands(31);
    EXPECT_THROW(builder.RenderSHToImageBuffer(set, 1, 99, 1, 0), std::invalid_argument);
    EXPECT_EQ(Pixels(), std::vector<std::uint8_t>(36, 0));

    set.numBands = -3;
    builder.RenderSHToImageBuffer(set, 0, 99, 1, 0);
    EXPECT_EQ(Pixels(), std::vector<std::uint8_t>(36, 99));
    builder.ClearImageBuffer();
    EXPECT_THROW(builder.RenderSHToImageBuffer(set, 1, 0, 1, 0), orvane::NotReady);
}

} // namespace
