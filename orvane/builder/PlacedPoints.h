#pragma once

// What one importance-sampled Gaussian is made from. A builder keeps it for the memory: to make the
// same Gaussian at another mean takes no new one.

#include "orvane/builder/QuadTree.h"

#include <vector>

namespace orvane {

/// All points of one Gaussian: the placed offsets, then the stratified cover of the sphere.
struct PlacedPoints {
    std::vector<double> theta;       ///< polar angle in radians; offsets may lie beyond pi
    std::vector<QuadPoint> onSphere; ///< the same points
    QuadTree tree;
};

} // namespace orvane
