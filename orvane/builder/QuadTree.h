#pragma once

// An equal-area quadtree over the sphere: where points crowd, leaves are small and shared.
//
// A cell is a rectangle in azimuth and cosine of the polar angle, the coordinates in which equal
// rectangles are equal areas. The root covers phi 0 to 2 pi and cos theta -1 to 1; a cell that
// holds more than one point is quartered at its single-precision midpoints, down to 11 levels below
// the root. A point on a midline belongs to the lower side.

#include <cstdint>
#include <vector>

namespace orvane {

struct QuadPoint {
    double phi;      ///< azimuth in radians, 0 to 2 pi and 1e-7 of it more
    double cosTheta; ///< -1 to 1
};

/// The leaf that holds a point.
struct QuadLeaf {
    std::int32_t depth; ///< 0 (the root) to quadTreeDepth
    std::int32_t count; ///< points in it, at least 1; more than 1 at quadTreeDepth only
};

/// Depth of the smallest cells.
inline constexpr int quadTreeDepth = 11;

/// Finds leaves, keeping its memory, 24 bytes a point, from one call to the next.
class QuadTree {
public:
    /// One leaf per point, in point order, of the tree that holds them all. The reference is valid
    /// until the next call.
    /// @param points at most 2^31 - 1
    /// @throws std::bad_alloc
    const std::vector<QuadLeaf> &FindLeaves(const std::vector<QuadPoint> &points);

private:
    struct Entry {
        std::uint32_t path;
        std::uint32_t point;
    };

    std::vector<Entry> entries;
    std::vector<Entry> byLow;
    std::vector<QuadLeaf> leaves;
};

} // namespace orvane
