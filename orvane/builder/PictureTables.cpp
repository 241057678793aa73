#include "orvane/builder/PictureTables.h"

#include "orvane/base/Bands.h"
#include "orvane/base/Constants.h"

#include <algorithm>

namespace orvane {

namespace {

// Larger pictures are rendered block by block.
constexpr std::int32_t maxRows = 512;     ///< different polar rows: 1.9 MB
constexpr std::int32_t maxColumns = 4096; ///< 1.5 MB, less where rows are cut into segments

std::size_t Groups(std::int32_t rows)
{
    return static_cast<std::size_t>(rows + rowGroup - 1) / rowGroup;
}

} // namespace

template <typename T> void PictureTables::Memory<T>::Reserve(std::size_t count)
{
    if (count <= size)
        return;
    size = 0;
    values.reset(); // first, so that never both are held
    values = std::make_unique_for_overwrite<T[]>(count);
    size = count;
}

std::size_t PictureTables::Size() const
{
    const auto bytesOf = [](const auto &memory) { return memory.size * sizeof memory.values[0]; };
    return bytesOf(indices) + bytesOf(lone) + bytesOf(factors) + bytesOf(steps) +
           bytesOf(firstRows) + bytesOf(groupEntries) + bytesOf(values) + bytesOf(bytes);
}

/// Takes the memory for any block of the tile.
void PictureTables::RequireMemory(std::int32_t numSteps, int bands, const ImageTile &tile)
{
    const std::int32_t columnCount = std::min(tile.columns, maxColumns);
    const std::int32_t rowsAtMost = std::min({tile.rows, maxRows, numSteps / 2 + 1});
    const auto grow = [](auto &memory, std::size_t count, Key &key) {
        if (count > memory.size)
            key = {};
        memory.Reserve(count);
    };
    grow(indices, static_cast<std::size_t>(columnCount) * columnOrders, columnsKey);
    grow(lone, MostLoneColumns(columnCount), columnsKey);
    grow(factors, std::max<std::size_t>(FactorFloats(columnCount, bands) / 16, 1), columnsKey);
    grow(steps, rowsAtMost, rowsKey);
    grow(firstRows, rowsAtMost + 1, rowsKey);
    grow(groupEntries, Groups(rowsAtMost) * GroupEntries(bands) + spareEntries, rowsKey);
    const std::size_t length = RowLength(columnCount);
    values.Reserve(maxStripRows * length / 16);
    bytes.Reserve(length);
}

void PictureTables::RequireColumns(const Kernels &kernels, const AngleTables &angles, int bands,
                                   const ImageTile &block)
{
    const std::int32_t numSteps = angles.numSteps;
    const Key key = {&kernels, numSteps, bands, block.width, block.firstColumn, block.columns};
    if (key == columnsKey)
        return;
    columnsKey = key;
    kernels.layColumns(
        {.angles = angles,
         .tableStep = static_cast<float>(TWO_PI_F) / static_cast<float>(numSteps),
         .dPhi = static_cast<float>(TWO_PI_F) / static_cast<float>(block.width),
         .bands = bands,
         .imageWidth = block.width,
         .firstColumn = block.firstColumn,
         .columns = block.columns,
         .arrays = {indices.values.get(), factors.values[0].values, lone.values.get()}},
        columns);
}

/// Lays out image rows from `first` on: those up to the tile's end, or as many as are taken at a
/// time.
/// @return the image row after the last of them
std::int32_t PictureTables::RequireRows(const Kernels &kernels, const RenderRequest &request,
                                        int bands, const ImageTile &tile, std::int32_t first)
{
    const std::int32_t end = tile.firstRow + tile.rows;
    const Key key = {&kernels, request.angles.numSteps, bands, tile.height, first, end - first};
    if (key == rowsKey)
        return rowsEnd;
    rowsKey = key;
    const double dTheta = static_cast<float>(PI_F) / static_cast<float>(tile.height);
    rowCount = 0;
    std::int32_t y = first;
    for (; y < end; ++y) {
        const double theta = y * dTheta;
        const auto step = static_cast<std::int32_t>(request.angles.angleScale * theta);
        if (rowCount > 0 && step == steps.values[rowCount - 1])
            continue;
        if (rowCount == maxRows)
            break;
        steps.values[rowCount] = step;
        firstRows.values[rowCount] = y;
        ++rowCount;
    }
    firstRows.values[rowCount] = y;
    rowsEnd = y;
    kernels.layRows(
        {request.polarRows, bands, rowCount, steps.values.get(), groupEntries.values.get()});
    return rowsEnd;
}

RenderCounts PictureTables::Render(const Kernels &kernels, const RenderRequest &request,
                                   const ImageTile &tile, std::uint8_t *image)
{
    const int bands = BandsReached(request.count);
    RequireMemory(request.angles.numSteps, bands, tile);
    RenderCounts counts{};
    for (std::int32_t y = tile.firstRow; y < tile.firstRow + tile.rows;) {
        const std::int32_t blockEnd = RequireRows(kernels, request, bands, tile, y);
        for (std::int32_t x = 0; x < tile.columns; x += maxColumns) {
            ImageTile block = tile;
            block.firstColumn += x;
            block.columns = std::min(tile.columns - x, maxColumns);
            RequireColumns(kernels, request.angles, bands, block);
            const RenderCounts more = kernels.render(
                {.angles = request.angles,
                 .polarRows = request.polarRows,
                 .coefficients = request.coefficients,
                 .count = request.count,
                 .bands = bands,
                 .scale = request.scale,
                 .offset = request.offset,
                 .rows = {rowCount, steps.values.get(), firstRows.values.get(),
                          groupEntries.values.get()},
                 .columns = &columns,
                 .columnArrays = {indices.values.get(), factors.values[0].values,
                                  lone.values.get()},
                 .scratch = {values.values[0].values, RowLength(block.columns), bytes.values.get()},
                 .image = image + block.firstColumn,
                 .imageWidth = tile.width});
            counts.rechecked += more.rechecked;
            counts.exact += more.exact;
            if (tile.columns - x <= maxColumns)
                break;
        }
        y = blockEnd;
    }
    return counts;
}

} // namespace orvane
