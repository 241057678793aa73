// No cell is ever made. A point's way down the full tree is 11 levels of two comparisons, phi and
// cos theta each against the midpoint of the cell it has reached, and those midpoints are fixed
// numbers:
//
//   path = phi bit, cos bit of level 1 | phi bit, cos bit of level 2 | ... | of level 11   (22
//   bits)
//
// Points that share a cell of depth d are those whose paths share the first 2 d bits. A point's
// leaf is the largest cell that it has for itself; so with all paths in order, it lies one level
// below the longest prefix that the path has in common with a neighbour's. Equal paths end in one
// leaf of the deepest level.

#include "orvane/builder/QuadTree.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <utility>

namespace orvane {
namespace {

constexpr int columns = 1 << quadTreeDepth; ///< cells of the deepest level along either axis
constexpr float rootPhiMax = 6.2831855f;

/// Entry k is where column k begins in phi; column 0 has no lower bound and the last no upper one,
/// since nothing compares with the root's own bounds.
constexpr std::array<double, columns + 1> columnBounds = [] {
    std::array<float, columns + 1> bounds{};
    bounds[columns] = rootPhiMax;
    for (int half = columns / 2; half > 0; half /= 2)
        for (int middle = half; middle < columns; middle += 2 * half)
            bounds[middle] = (bounds[middle - half] + bounds[middle + half]) * 0.5f;
    std::array<double, columns + 1> widened{};
    for (int k = 1; k < columns; ++k)
        widened[k] = bounds[k];
    widened[0] = -std::numeric_limits<double>::infinity();
    widened[columns] = std::numeric_limits<double>::infinity();
    return widened;
}();

/// Columns per radian if all were equally wide.
constexpr double columnScale = columns / static_cast<double>(rootPhiMax);

constexpr bool BoundsAreNearlyEven()
{
    for (int k = 1; k < columns; ++k) {
        const double off = columnBounds[k] * columnScale - k;
        if (off < -0.25 || off > 0.25)
            return false;
    }
    return true;
}
static_assert(BoundsAreNearlyEven(), "a column computed by division is off by one at most");

/// The column whose bounds satisfy lower < phi <= upper.
int PhiColumn(double phi)
{
    const auto rough = static_cast<std::uint32_t>(static_cast<std::int32_t>(phi * columnScale));
    const int guess = static_cast<int>(std::min<std::uint32_t>(rough, columns - 1));
    return guess + (phi > columnBounds[guess + 1]) - !(phi > columnBounds[guess]);
}

/// The same for cos theta, whose midpoints are the multiples of 2 / columns: the scaled value is
/// exact, and the column is that value rounded up, less one.
int CosColumn(double cosTheta)
{
    const double scaled = cosTheta * (columns / 2);
    const int truncated = static_cast<int>(scaled);
    return std::max(0, truncated + (scaled > truncated) + columns / 2 - 1);
}

/// Entry k is k with a zero bit put above each of its bits.
constexpr std::array<std::uint32_t, columns> spreadBits = [] {
    std::array<std::uint32_t, columns> spread{};
    for (int k = 1; k < columns; ++k)
        spread[k] = spread[k / 2] << 2 | (k & 1);
    return spread;
}();

std::uint32_t Path(const QuadPoint &point)
{
    return spreadBits[PhiColumn(point.phi)] << 1 | spreadBits[CosColumn(point.cosTheta)];
}

/// Number of levels that two different paths have in common.
int CommonLevels(std::uint32_t a, std::uint32_t b)
{
    return (__builtin_clz(a ^ b) - (32 - 2 * quadTreeDepth)) / 2;
}

struct Entry {
    std::uint32_t path;
    std::uint32_t point;

    std::uint32_t Low() const { return path % columns; }
    std::uint32_t High() const { return path / columns; }
};

/// Counts per digit become the position where each digit's run starts.
using Digits = std::array<std::uint32_t, columns>;
void StartRuns(Digits &digits)
{
    std::uint32_t start = 0;
    for (std::uint32_t &digit : digits)
        start += std::exchange(digit, start);
}

} // namespace

std::vector<QuadLeaf> FindQuadLeaves(const std::vector<QuadPoint> &points)
{
    const std::size_t count = points.size();
    std::vector<QuadLeaf> leaves(count);
    const auto entries = std::make_unique_for_overwrite<Entry[]>(count);
    const auto byLow = std::make_unique_for_overwrite<Entry[]>(count);

    // Radix sort by path: by its lower 11 bits, then, keeping that order, by its upper 11.
    Digits low{};
    Digits high{};
    for (std::size_t i = 0; i < count; ++i) {
        entries[i] = {Path(points[i]), static_cast<std::uint32_t>(i)};
        ++low[entries[i].Low()];
        ++high[entries[i].High()];
    }
    StartRuns(low);
    StartRuns(high);
    for (std::size_t i = 0; i < count; ++i)
        byLow[low[entries[i].Low()]++] = entries[i];
    for (std::size_t i = 0; i < count; ++i)
        entries[high[byLow[i].High()]++] = byLow[i];

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
