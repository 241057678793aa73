#pragma once

// Kernel: renders a coefficient set into rows of an 8-bit image.
//
// The pixel of column x, row y stands for the point phi = x * dPhi, theta = y * dTheta. With v the
// set's value there, summed in double in index order over the lookup tables, its byte is
//
//   clamp(trunc(v * scale) + offset, 0, 255)
//
// where trunc saturates to 32 bits and gives 0 for NaN.
//
// What depends on the size of the picture and on the tables, but not on the set, is laid out first
// (LayRows, LayColumns) and serves any number of renders.

#include "orvane/base/PolarRow.h"
#include "orvane/kernels/AngleTables.h"

#include <cstddef>
#include <cstdint>

namespace orvane {

/// Rows of a picture are taken in groups of so many, side by side.
inline constexpr int rowGroup = 8;
/// Rows of a group whose pixels are computed at a time, at the most.
inline constexpr int maxStripRows = 8;
/// Rows that a vector of narrow segments holds at the most.
inline constexpr int maxVectorRows = 4;
/// Segments that a row is cut into at the most.
inline constexpr int maxSegments = 16;
/// Table indices kept of a column: of the orders 0..29, and two that nobody reads.
inline constexpr int columnOrders = 32;

/// An entry (l, m) of a group's polar rows, one value for each row. Entries stand in the order of
/// the summation, two orders m taking turns; RowSums.inl draws it.
struct alignas(64) GroupEntry {
    double row[rowGroup];
};

/// How many entries a group has.
constexpr int GroupEntries(int bands)
{
    return bands * (bands + 1) / 2;
}
/// Entries that LayRows may write behind the last group.
inline constexpr int spareEntries = 16;

/// The different polar rows that rows of a picture have, laid side by side.
struct PictureRows {
    std::int32_t count;             ///< different polar rows
    const std::int32_t *steps;      ///< their table steps
    const std::int32_t *firstRows;  ///< first image row of each; entry `count` is one past the last
    const GroupEntry *groupEntries; ///< group after group; the last one is filled up
};

struct RowLayoutJob {
    const double *polarRows; ///< rows of polarRowLength values, by table step
    std::int32_t bands;      ///< 1 to 30
    std::int32_t count;      ///< of steps
    const std::int32_t *steps;
    GroupEntry *groupEntries; ///< room for all groups and spareEntries
};
using RowLayoutKernel = void (*)(const RowLayoutJob &job);

/// An order's place among the factors: orders of one class are neighbours (Segments.inl).
struct OrderSlot {
    std::int32_t order;
    float sign; ///< of its sine: -1 where the order is folded into its class
};

/// The angle factors of columns of a picture. A row of the image is `segments` equal segments; the
/// factors are those of its first one. A part of the image may have some of the segments only.
struct PictureColumns {
    std::int32_t columns;
    std::int32_t segments;       ///< 1, 2, 4, 8 or 16
    std::int32_t segmentColumns; ///< of each; divides `columns`
    std::int32_t firstSegment;
    std::int32_t vectorRows;     ///< rows of the picture in a vector: 1, 2 or 4 (Segments.inl)
    OrderSlot slots[tableBands]; ///< of the orders 1..bands - 1
    /// One past the last slot of class 0, 1, .. segments / 2.
    std::int32_t classEnds[maxSegments / 2 + 1];
    double turnError; ///< on a factor of another segment, from turning by exact parts of a turn
    std::int32_t loneColumns; ///< columns that do not fit the first segment
};

/// Lone columns are few, or the row is cut into fewer segments.
constexpr std::int32_t MostLoneColumns(std::int32_t columns)
{
    return columns / 32 + 1;
}
/// Floats of the factors of so many columns: vectors of at most 16, each with two for each order.
constexpr std::size_t FactorFloats(std::int32_t columns, int bands)
{
    return static_cast<std::size_t>((columns + 15) / 16) * 16 * 2 * (bands - 1);
}

/// The arrays that belong to PictureColumns.
struct ColumnArrays {
    std::int32_t *indices; ///< of the angle tables: columnOrders for each column
    float *factors;        ///< FactorFloats of all columns, on a 64-byte boundary
    std::int32_t *lone;    ///< MostLoneColumns
};

struct ColumnLayoutJob {
    AngleTables angles;
    double tableStep;        ///< radians between table entries
    double dPhi;             ///< radians per column
    std::int32_t bands;      ///< 1 to 30
    std::int32_t imageWidth; ///< columns of a full circle
    std::int32_t firstColumn, columns;
    ColumnArrays arrays;
};
using ColumnLayoutKernel = void (*)(const ColumnLayoutJob &job, PictureColumns &columns);

/// Working memory of one render; its contents mean nothing before or after.
struct RenderScratch {
    /// Values of one strip of rows, `valueStride` apart.
    float *values;
    std::ptrdiff_t valueStride; ///< RowLength of the columns
    std::uint8_t *bytes;        ///< as many, of one row
};

/// Columns and room behind them: what the last vector of the last segment writes too much.
constexpr std::ptrdiff_t RowLength(std::int32_t columns)
{
    return (static_cast<std::ptrdiff_t>(columns) + 16 + 63) / 64 * 64;
}

struct RenderJob {
    AngleTables angles;
    const double *polarRows; ///< rows of polarRowLength values, by table step

    const float *coefficients; ///< in index order
    std::int32_t count;        ///< of coefficients that make the value, 1 to 900
    std::int32_t bands;        ///< that they reach into, as laid out
    float scale;
    std::int32_t offset;

    PictureRows rows;
    const PictureColumns *columns;
    ColumnArrays columnArrays;
    RenderScratch scratch;

    std::uint8_t *image; ///< row 0, at the first of the columns
    std::ptrdiff_t imageWidth;
};

/// How many pixels the first, single-precision bound could not decide. Rows that share their polar
/// row share their pixels, which count once.
struct RenderCounts {
    std::int64_t rechecked; ///< decided by the bound of the double-precision value
    std::int64_t exact;     ///< computed term by term
};

using RenderKernel = RenderCounts (*)(const RenderJob &job);

} // namespace orvane
