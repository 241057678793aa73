// No cell is ever made. A point's way down the full tree is 11 levels of two comparisons, phi and
// cos theta each against the midpoint of the cell it has reached, and those midpoints are fixed
// numbers. That makes 22 bits:
//
//   path = phi bit, cos bit of level 1 | phi bit, cos bit of level 2 | ... | of level 11
//
// Points that share a cell of depth d are those whose paths share the first 2 d bits. A point's
// leaf is the largest cell that it has for itself; so with all paths in order, it lies one level
// below the longest prefix that the path has in common with a neighbour's. Equal paths end in one
// leaf of the deepest level.

#include "orvane/builder/QuadTree.h"

#include "orvane/base/Constants.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace orvane {
namespace {

constexpr int columns = 1 << quadTreeDepth; ///< cells of the deepest level along either axis
constexpr int half = columns / 2;
constexpr auto rootPhiMax = static_cast<float>(TWO_PI_F);

/// Entry k is where column k begins in phi. Nothing compares with the root's own bounds: the last
/// column has no end.
constexpr std::array<double, columns + 1> columnBounds = [] {
    std::array<float, columns + 1> bounds{};
    bounds[columns] = rootPhiMax;
    for (int step = half; step > 0; step /= 2)
        for (int middle = step; middle < columns; middle += 2 * step)
            bounds[middle] = (bounds[middle - step] + bounds[middle + step]) * 0.5f;
    std::array<double, columns + 1> widened{};
    for (int k = 0; k < columns; ++k)
        widened[k] = bounds[k];
    widened[columns] = std::numeric_limits<double>::infinity();
    return widened;
}();

/// Columns per radian if all were equally wide, and how far, in columns, a bound may then be off.
constexpr double columnScale = columns / static_cast<double>(rootPhiMax);
constexpr double columnMargin = 1e-3;

constexpr bool BoundsAreNearlyEven()
{
    for (int k = 0; k < columns; ++k) {
        const double off = columnBounds[k] * columnScale - k;
        if (off < -columnMargin / 2 || off > columnMargin / 2)
            return false;
    }
    return true;
}
static_assert(BoundsAreNearlyEven(), "a column computed by division is right or one too low");

/// The column whose bounds satisfy lower < phi <= upper.
int PhiColumn(double phi)
{
    const int guess = static_cast<int>(phi * columnScale - columnMargin);
    return guess + (phi > columnBounds[guess + 1]);
}

/// The same for cos theta, whose bounds are the multiples of 1 / half: the scaled value is
/// exact, and the column is that value rounded up, less one. Only cos theta = -1 gives -1.
int CosColumn(double cosTheta)
{
    const double scaled = cosTheta * half;
    const int truncated = static_cast<int>(scaled);
    return truncated + (scaled > truncated) + half - 1;
}

/// Entry k + 1 is column k with a zero bit put above each of its bits; column -1 counts as 0.
constexpr std::array<std::uint32_t, columns + 1> spreadColumns = [] {
    std::array<std::uint32_t, columns + 1> spread{};
    for (int k = 1; k < columns; ++k)
        spread[k + 1] = spread[k / 2 + 1] << 2 | (k & 1);
    return spread;
}();

std::uint32_t Path(const QuadPoint &point)
{
    return spreadColumns[PhiColumn(point.phi) + 1] << 1 |
           spreadColumns[CosColumn(point.cosTheta) + 1];
}

/// Number of levels that two different paths have in common.
int CommonLevels(std::uint32_t a, std::uint32_t b)
{
    return (__builtin_clz(a ^ b) - (32 - 2 * quadTreeDepth)) / 2;
}

/// The digits that paths are sorted by.
std::uint32_t Low(std::uint32_t path)
{
    return path % columns;
}
std::uint32_t High(std::uint32_t path)
{
    return path / columns;
}

/// Counts per digit become the position where each digit's run starts.
using Digits = std::array<std::uint32_t, columns>;
void StartRuns(Digits &digits)
{
    std::uint32_t start = 0;
    for (std::uint32_t &digit : digits)
        start += std::exchange(digit, start);
}

} // namespace

const std::vector<QuadLeaf> &QuadTree::FindLeaves(const std::vector<QuadPoint> &points)
{
    const std::size_t count = points.size();
    entries.resize(count);
    byLow.resize(count);
    leaves.resize(count);

    // Radix sort by path: by its lower 11 bits, then, keeping that order, by its upper 11.
    Digits low{};
    Digits high{};
    for (std::size_t i = 0; i < count; ++i) {
        entries[i] = {Path(points[i]), static_cast<std::uint32_t>(i)};
        ++low[Low(entries[i].path)];
        ++high[High(entries[i].path)];
    }
    StartRuns(low);
    StartRuns(high);
    for (std::size_t i = 0; i < count; ++i)
        byLow[low[Low(entries[i].path)]++] = entries[i];
    for (std::size_t i = 0; i < count; ++i)
        entries[high[High(byLow[i].path)]++] = byLow[i];

    // One step per group of equal paths.
    int levelsBefore = -1; // shared with the group before
    for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
        const std::uint32_t path = entries[begin].path;
        while (end < count && entries[end].path == path)
            ++end;
        const int levelsAfter = end < count ? CommonLevels(path, entries[end].path) : -1;
        const bool isShared = end - begin > 1;
        const QuadLeaf leaf = {isShared ? quadTreeDepth : std::max(levelsBefore, levelsAfter) + 1,
                               static_cast<std::int32_t>(end - begin)};
        for (std::size_t i = begin; i < end; ++i)
            leaves[entries[i].point] = leaf;
        levelsBefore = levelsAfter;
    }
    return leaves;
}

} // namespace orvane
