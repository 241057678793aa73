#include "model/LiteralRender.h"
#include "orvane/builder/PictureTables.h"
#include "tests/builder/BuilderCase.h"

#include <functional>
#include <mutex>
#include <random>
#include <thread>

namespace {

using orvane::Kernels;

struct Image : testing::Test, BuilderCase {
    std::vector<std::uint8_t> Pixels() const
    {
        const std::uint8_t *first = builder.imageBuffer.get();
        return {first, first + std::size_t(builder.imageWidth) * builder.imageHeight};
    }
};

TEST_F(Image, MayBeEmptyButHasNoIllegalSides)
{
    for (int call = 0; call < 2; ++call) {
        builder.SetImageBuffer(4, 1);
        EXPECT_EQ(Pixels(), std::vector<std::uint8_t>(4));
        builder.imageBuffer[3] = 7;
    }
    for (const auto &[width, height] : {std::pair{-4, -1}, {65536, 65536}, {46341, 46341}})
        EXPECT_THROW(builder.SetImageBuffer(width, height), std::invalid_argument);
    EXPECT_EQ(builder.imageWidth, 4);
    for (const auto &[width, height] : {std::pair{0, 0}, {0, most}, {most, 0}}) {
        builder.SetImageBuffer(width, height);
        builder.RenderSHToImageBuffer(set, 1, 0, 1, 0);
        EXPECT_TRUE(Pixels().empty());
    }
}

TEST_F(Image, RendersSliceBySlice)
{
    builder.GenerateLookUpTables(256);
    const struct {
        int width, height, slices, firstSlice, lastSlice;
        int columnsBegin, columnsEnd, rowsBegin, rowsEnd; // written
    } cases[] = {{10, 10, 1, 0, 0, 0, 10, 0, 10},   {10, 10, 3, 0, 8, 0, 9, 0, 9},
                 {64, 32, 2, 1, 1, 32, 64, 0, 16},  {64, 32, 2, 2, 2, 0, 32, 16, 32},
                 {300, 7, 2, 3, 3, 150, 300, 3, 6}, {2, 2, 3, 0, 8, 0, 0, 0, 0}};
    for (const auto &c : cases) {
        const int bands = c.slices == 1 ? 1 : 30; // so many that parts of rows are cut
        SetRandomly(bands);
        std::vector<std::uint8_t> expected(c.width * c.height);
        literal::Render(literal::Tables(256), set.coefficients.data(), bands, 20, 128, 1, 0,
                        c.width, c.height, expected.data());
        for (int y = 0; y < c.height; ++y)
            for (int x = 0; x < c.width; ++x)
                if (x < c.columnsBegin || x >= c.columnsEnd || y < c.rowsBegin || y >= c.rowsEnd)
                    expected[y * c.width + x] = 0;
        builder.SetImageBuffer(c.width, c.height);
        for (int slice = c.firstSlice; slice <= c.lastSlice; ++slice)
            builder.RenderSHToImageBuffer(set, 20, 128, c.slices, slice);
        EXPECT_EQ(Pixels(), expected) << c.width << " x " << c.height << ", " << c.slices;
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
    builder.SetImageBuffer(6, 6);
    const auto render = [&](int slices, int slice) {
        builder.RenderSHToImageBuffer(set, 1, 99, slices, slice);
    };
    render(7, 0); // an empty tile, which needs no tables
    EXPECT_THROW(render(1, 0), orvane::NotReady);
    builder.GenerateLookUpTables(16);
    for (const auto &[slices, slice] :
         {std::pair{-1, 0}, {least, 0}, {1, 1}, {2, -1}, {46340, most}})
        EXPECT_THROW(render(slices, slice), std::invalid_argument) << slices << ", " << slice;
    for (const auto &[slices, slice] : {std::pair{46341, most}, {65536, 0}, {most, most}})
        render(slices, slice); // of no pixels
    // There are 9 coefficients.
    for (const int bands : {4, 30, 31, -4, 46340}) {
        set.numBands = bands;
        EXPECT_THROW(render(1, 0), std::invalid_argument);
    }
    set.SetNumBands(31);
    EXPECT_THROW(render(1, 0), std::invalid_argument);
    EXPECT_EQ(Pixels(), std::vector<std::uint8_t>(36, 0));
    set.numBands = -3;
    EXPECT_NO_THROW(render(1, 0));
}

/// Objects come and go under the interpreter's lock, which a render gives up.
std::mutex hostLock;

/// Renders, with something else changed before each, and compares with a new builder.
void RenderInTurn(unsigned seed, int rounds)
{
    constexpr int sides[] = {1, 7, 16, 32, 33, 64, 100, 128, 200};
    constexpr int tables[] = {16, 100, 256, 360};
    std::unique_lock host(hostLock);
    std::mt19937 random(seed);
    const auto any = [&](const auto &choices) { return choices[random() % std::size(choices)]; };
    BuilderCase kept;
    int steps = 256, width = 64, height = 16, bands = 5, slices = 1, slice = 0;
    const Kernels *kernels = SupportedKernels()[0];
    const std::function<void()> changes[] = {[&] { width = any(sides); },
                                             [&] { height = any(sides); },
                                             [&] { steps = any(tables); },
                                             [&] { bands = static_cast<int>(random() % 30 + 1); },
                                             [&] { kernels = any(SupportedKernels()); },
                                             [&] {
                                                 slices = static_cast<int>(random() % 4 + 1);
                                                 slice =
                                                     static_cast<int>(random() % (slices * slices));
                                             }};
    for (int round = 0; round < rounds; ++round) {
        any(changes)();
        const auto set = MakeSet(bands, RandomCoefficients(bands * bands, round));
        std::vector<std::uint8_t> pictures[2];
        BuilderCase fresh;
        for (SHBuilder *builder : {&kept.builder, &fresh.builder}) {
            if (builder->tables.numSteps != steps)
                builder->GenerateLookUpTables(steps);
            builder->UseInstructionSet(kernels->instructionSet);
            builder->SetImageBuffer(width, height);
            host.unlock();
            builder->RenderSHToImageBuffer(*set, 20, 128, slices, slice);
            host.lock();
            const std::uint8_t *first = builder->imageBuffer.get();
            pictures[builder == &fresh.builder].assign(first, first + width * height);
        }
        ASSERT_EQ(pictures[0], pictures[1])
            << width << " x " << height << ", " << steps << " steps, " << bands << " bands, slice "
            << slice << " of " << slices << ", round " << round;
    }
}

TEST(PictureTables, AreMadeAnewForWhateverChanges)
{
    RenderInTurn(1, 150);
}

TEST(PictureTables, OfTwoThreadsDoNotMeet)
{
    std::thread other(RenderInTurn, 2, 20);
    RenderInTurn(3, 20);
    other.join();
}

TEST_F(Image, KeepsAtMostFourMegabytesForPictures)
{
    builder.GenerateLookUpTables(2048);
    SetRandomly(30);
    for (const auto &[width, height] : {std::pair{4097, 1}, {1, 3000}, {4095, 700}}) {
        builder.SetImageBuffer(width, height);
        builder.RenderSHToImageBuffer(set, 20, 128, 1, 0);
        EXPECT_LE(builder.pictureTables->Size(), 4'000'000);
    }
    EXPECT_GT(builder.pictureTables->Size(), 1'000'000);
}

} // namespace
