// Gaussians from points that lie where the Gaussian is. A fixed cloud of normal offsets is placed
// around the mean; the leaves of a quadtree over all points tell how crowded each point's place is.

#include "orvane/base/Constants.h"
#include "orvane/base/Errors.h"
#include "orvane/base/Limits.h"
#include "orvane/builder/Projector.h"
#include "orvane/builder/Random.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Basis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

using namespace orvane;

namespace {

/// 1 / sqrt(2 pi), the peak density of the standard normal distribution.
constexpr double peakDensity = 0.3989422803558185;

/// Area of a cell of each depth on the unit sphere: a quarter of the one above, exactly.
constexpr std::array<double, quadTreeDepth + 1> cellAreas = [] {
    std::array<double, quadTreeDepth + 1> areas{FOUR_PI_F};
    for (int depth = 1; depth <= quadTreeDepth; ++depth)
        areas[depth] = areas[depth - 1] / 4.0;
    return areas;
}();

void RequireFinite(std::initializer_list<double> values)
{
    for (const double value : values)
        if (!std::isfinite(value))
            throw std::invalid_argument("the Gaussian's points are not finite; expected finite "
                                        "latitude, longitude, stdDev");
}

/// Replaces the points.
/// @throws std::invalid_argument where there are points and an argument or an offset's place is not
/// finite
/// @throws std::bad_alloc
void PlacePoints(const std::vector<GaussOffset> &offsets, const std::vector<SphericalSample> &cover,
                 double latitude, double longitude, double stdDev, PlacedPoints &points)
{
    if (!offsets.empty() || !cover.empty())
        RequireFinite({latitude, longitude, stdDev});
    points.theta.resize(offsets.size() + cover.size());
    points.onSphere.resize(points.theta.size());
    std::size_t next = 0;
    const auto append = [&](double theta, double phi) {
        points.theta[next] = theta;
        points.onSphere[next] = {phi, std::cos(theta)};
        ++next;
    };
    for (const GaussOffset &offset : offsets) {
        const double theta = stdDev * offset.x + latitude;
        const double phi = stdDev * offset.y + longitude;
        RequireFinite({theta, phi});
        // Beyond the pole a point comes down on the other side.
        if (theta < 0)
            append(-theta, WrapAngle(phi + PI_F));
        else
            append(theta, WrapAngle(phi));
    }
    for (const SphericalSample &sample : cover)
        append(sample.theta, sample.phi);
}

constexpr std::size_t drawBlock = 128;

/// Draws `count` offsets, at most drawBlock, with their densities. Each takes its draws of the
/// deviate, then one of the angle. All draws come before the first library call: whether a pair of
/// draws is rejected is unforeseeable, and the processor, which guesses wrong, would throw away the
/// logarithm or sine that it has begun.
void AppendOffsets(std::size_t count, std::vector<GaussOffset> &offsets,
                   std::vector<double> &densities)
{
    std::array<DiskPoint, drawBlock> points;
    std::array<double, drawBlock> angles;
    platform::ThreadDraws random;
    for (std::size_t i = 0; i < count; ++i) {
        points[i] = RandomDiskPoint(random);
        angles[i] = RandomUnit(random) * TWO_PI_F;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const double g = GaussDeviate(points[i]);
        offsets.push_back({std::sin(angles[i]) * g, std::cos(angles[i]) * g});
        densities.push_back(std::exp(g * g * -0.5) * peakDensity);
    }
}

} // namespace

void SHBuilder::GeneratePDFSamples(std::int32_t seed, std::int32_t sqrtNumSamples,
                                   std::int32_t numGaussSamples)
{
    RequireAtMost("sqrtNumSamples", sqrtNumSamples, maxSamplesPerAxis);
    RequireAtMost("numGaussSamples", numGaussSamples, maxGaussOffsets);
    const std::size_t numOffsets = std::max(numGaussSamples, 1);
    const std::size_t perAxis = std::max(sqrtNumSamples, 0);
    // All memory first: nothing fails from the seeding on.
    pdfGaussOffsets.reserve(numOffsets);
    pdfDensities.reserve(numOffsets + perAxis * perAxis);
    pdfSphericalSamples.reserve(perAxis * perAxis);

    platform::srand(static_cast<std::uint32_t>(seed));
    pdfGaussOffsets.assign(1, {0.0, 0.0});
    // The point at the mean weighs 1, not the peak density: that is how these Gaussians are made.
    pdfDensities.assign(1, 1.0);
    while (pdfGaussOffsets.size() < numOffsets)
        AppendOffsets(std::min(numOffsets - pdfGaussOffsets.size(), drawBlock), pdfGaussOffsets,
                      pdfDensities);
    GenerateStratifiedSamples(sqrtNumSamples, pdfSphericalSamples);
    pdfDensities.resize(numOffsets + pdfSphericalSamples.size(), 0.0);
}

// Point i weighs area * density / count, with the area of its leaf and the count of points that
// share the leaf: where points crowd, each counts for less.
SphericalHarmonic &SHBuilder::CreateImportanceSampledGaussSH(SphericalHarmonic &sh, double latitude,
                                                             double longitude, double stdDev)
{
    PlacedPoints &points = placedPoints;
    PlacePoints(pdfGaussOffsets, pdfSphericalSamples, latitude, longitude, stdDev, points);
    const std::vector<QuadLeaf> &leaves = points.tree.FindLeaves(points.onSphere);

    double totalArea = 0.0;
    const auto pointAt = [&](std::size_t i) -> ProjectionPoint {
        const double area = cellAreas[leaves[i].depth];
        totalArea = totalArea + area;
        double weight = area * pdfDensities[i];
        if (leaves[i].count > 1)
            weight = weight / static_cast<double>(leaves[i].count);
        // A polar angle may lie beyond the tables' one turn; it is folded as an azimuth is.
        return {points.onSphere[i].phi, weight, tables.FoldedStep(points.theta[i])};
    };
    const auto weight = [&] { return static_cast<float>(FOUR_PI_F / totalArea); };

    Projector projector(tables, *kernels, tableCoefficients, Projector::Rounding::Weighted);
    projector.StartAt(sh);
    return projector.Project(leaves.size(), pointAt, weight, tableBands, sh);
}
