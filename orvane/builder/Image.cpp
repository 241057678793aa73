#include "orvane/builder/ImageSize.h"
#include "orvane/builder/LookUpTables.h"
#include "orvane/builder/PictureTables.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Basis.h"
#include "orvane/sh/Errors.h"

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
    if (n < 1)
        throw std::invalid_argument(IllegalValue("sqrtNumSlices", n, "1 or more"));
    const std::int64_t slices = std::int64_t{n} * n;
    if (index < 0 || index >= slices)
        throw std::invalid_argument(
            IllegalValue("sliceIndex", index, "0 to " + std::to_string(slices - 1)));
    const std::int32_t columns = width / n;
    const std::int32_t rows = height / n;
    return {width, height, index % n * columns, columns, index / n * rows, rows};
}

/// Fills the tile with the byte of a set without terms: its values are 0, and so are their products
/// with scale, whatever that is.
void FillWithOffset(std::uint8_t *image, const ImageTile &tile, std::int32_t offset)
{
    const int byte = std::clamp(offset, 0, 255);
    for (std::int32_t row = 0; row < tile.rows; ++row)
        std::memset(image + std::ptrdiff_t{tile.firstRow + row} * tile.width + tile.firstColumn,
                    byte, tile.columns);
}

} // namespace

/// Makes a black image, width * height bytes, row by row. Views of an earlier one keep it.
/// @param width 0 and up
/// @param height 0 and up; at most 2,147,483,647 pixels
/// @throws std::invalid_argument outside that range; std::bad_alloc. The earlier image then stays.
void SHBuilder::SetImageBuffer(std::int32_t width, std::int32_t height)
{
    RequireImageSize(width, height);
    const std::size_t pixels = static_cast<std::size_t>(width) * height;
    imageBuffer = std::make_shared<std::uint8_t[]>(pixels);
    imageWidth = width;
    imageHeight = height;
}

/// Lets go of the image; its size stays. Views of it keep it.
void SHBuilder::ClearImageBuffer()
{
    imageBuffer.reset();
}

/// Renders one tile of the image: pixel (x, y) stands for azimuth x * 2 pi / width and polar angle
/// y * pi / height, its low corner; its byte is the value there times `scale`, truncated, plus
/// `offset`, clamped to 0..255. Truncation saturates to 32 bits and gives 0 for NaN.
/// @param sqrtNumSlices tiles per row and per column, 1 and up
/// @param sliceIndex 0 to sqrtNumSlices squared - 1, row by row
/// @throws NotReady without an image, or without tables where a pixel needs them;
/// std::invalid_argument for an illegal slice or a band count beyond the set or 30; std::bad_alloc.
/// No pixel is written then.
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
    RequireLookUpTables(*this);

    // Every row has a polar row: with all roundings theta < 1.000001 pi, and angleScale * theta is
    // below numSteps * 0.500001.
    pictureTables->Render(*kernels,
                          {.angles = AngleTablesOf(*this),
                           .polarRows = polarTable.rows.data(),
                           .coefficients = sh.coefficients.data(),
                           .count = count,
                           .scale = scale,
                           .offset = offset},
                          tile, imageBuffer.get());
}
