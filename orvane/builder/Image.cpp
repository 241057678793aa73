#include "orvane/base/Errors.h"
#include "orvane/builder/ImageSize.h"
#include "orvane/builder/PictureTables.h"
#include "orvane/builder/SHBuilder.h"

#include <algorithm>
#include <cstring>
#include <string>

using namespace orvane;

namespace {

/// Slice `index` of an image cut into `n` by `n` equal tiles, numbered row by row. What n does not
/// divide is left over on the right and below.
/// @throws std::invalid_argument unless n is at least 1 and index is in 0..n * n - 1
ImageTile Slice(std::int32_t width, std::int32_t height, std::int32_t n, std::int32_t index)
{
    RequireAtLeast("sqrtNumSlices", n, 1);
    RequireInRange("sliceIndex", index, 0, std::int64_t{n} * n - 1);
    const std::int32_t columns = width / n;
    const std::int32_t rows = height / n;
    return {width, height, index % n * columns, columns, index / n * rows, rows};
}

/// Fills the tile with the byte of the offset alone, which is the byte of a set without terms: its
/// values are 0, and so are their products with scale, whatever that is.
void FillWithOffset(std::uint8_t *image, const ImageTile &tile, std::int32_t offset)
{
    const int byte = std::clamp(offset, 0, 255);
    for (std::int32_t row = 0; row < tile.rows; ++row)
        std::memset(image + std::ptrdiff_t{tile.firstRow + row} * tile.width + tile.firstColumn,
                    byte, tile.columns);
}

} // namespace

void SHBuilder::SetImageBuffer(std::int32_t width, std::int32_t height)
{
    RequireImageSize(width, height);
    const std::size_t pixels = static_cast<std::size_t>(width) * height;
    imageBuffer = std::make_shared<std::uint8_t[]>(pixels);
    imageWidth = width;
    imageHeight = height;
}

void SHBuilder::ClearImageBuffer()
{
    imageBuffer.reset();
}

void SHBuilder::RenderSHToImageBuffer(const SphericalHarmonic &sh, float scale, std::int32_t offset,
                                      std::int32_t sqrtNumSlices, std::int32_t sliceIndex)
{
    if (!imageBuffer)
        throw NotReady("there is no image; call SetImageBuffer first");
    const ImageTile tile = Slice(imageWidth, imageHeight, sqrtNumSlices, sliceIndex);
    RequireTerms(sh, "numBands", sh.numBands);
    if (tile.columns == 0 || tile.rows == 0)
        return;
    const std::int32_t count = CoefficientCount(sh.numBands);
    if (count < 1)
        return FillWithOffset(imageBuffer.get(), tile, offset);
    tables.Require();

    // Every row has a polar row: with all roundings theta < 1.000001 pi, and angleScale * theta is
    // below numSteps * 0.500001.
    pictureTables->Render(*kernels,
                          {.angles = tables.Angles(),
                           .polarRows = tables.polarRows.data(),
                           .coefficients = sh.coefficients.data(),
                           .count = count,
                           .scale = scale,
                           .offset = offset},
                          tile, imageBuffer.get());
}
