// Gaussians from points that lie where the Gaussian is. A fixed cloud of normal offsets is placed
// around the mean; the leaves of a quadtree over all points tell how crowded each point's place is.

#include "orvane/builder/ImportanceSampling.h"

#include "orvane/builder/LookUpTables.h"
#include "orvane/builder/Projection.h"
#include "orvane/builder/Projector.h"
#include "orvane/builder/Random.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Basis.h"
#include "orvane/sh/Constants.h"
#include "orvane/sh/Errors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

using namespace orvane;

namespace {

/// The largest cloud: 3 GB of offsets and densities.
constexpr std::int32_t mostOffsets = 1 << 27;

/// Of the standard normal distribution.
constexpr double densityAtMean = 0.3989422803558185;

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
/// finite, std::bad_alloc
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
/// deviate, then one of the angle. All draws come before the first library call, so that a rejected
/// pair, which no processor foresees, does not hold up the next offset's functions.
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
        densities.push_back(std::exp(g * g * -0.5) * densityAtMean);
    }
}

} // namespace

/// Draws the cloud of offsets, the first of them none at all, and a stratified cover of the sphere
/// of density 0; they replace the earlier ones.
/// @param sqrtNumSamples of the cover, per axis, at most 16,384; none below 1
/// @param numGaussSamples offsets, at most 2^27; 1 where it is below
/// @throws std::invalid_argument, std::bad_alloc; samples and generator are then as they were
void SHBuilder::GeneratePDFSamples(std::int32_t seed, std::int32_t sqrtNumSamples,
                                   std::int32_t numGaussSamples)
{
    RequireSampleLimit(sqrtNumSamples);
    if (numGaussSamples > mostOffsets)
        throw std::invalid_argument(IllegalValue("numGaussSamples", numGaussSamples,
                                                 "at most " + std::to_string(mostOffsets)));
    const std::size_t numOffsets = std::max(numGaussSamples, 1);
    const std::size_t perAxis = std::max(sqrtNumSamples, 0);
    // All memory first: nothing fails from the seeding on.
    pdfGaussOffsets.reserve(numOffsets);
    pdfDensities.reserve(numOffsets + perAxis * perAxis);
    pdfSphericalSamples.reserve(perAxis * perAxis);

    platform::srand(static_cast<std::uint32_t>(seed));
    pdfGaussOffsets.assign(1, {0.0, 0.0});
    pdfDensities.assign(1, 1.0); // not the density at the mean
    while (pdfGaussOffsets.size() < numOffsets)
        AppendOffsets(std::min(numOffsets - pdfGaussOffsets.size(), drawBlock), pdfGaussOffsets,
                      pdfDensities);
    GenerateStratifiedSamples(sqrtNumSamples, pdfSphericalSamples);
    pdfDensities.resize(numOffsets + pdfSphericalSamples.size(), 0.0);
}

/// Makes a set of the 30 bands of a Gaussian made of the samples; NaN where there are none. What
/// coefficients the set has already are the start of the sums.
/// @param latitude polar angle of the mean in radians, @param longitude its azimuth
/// @param stdDev how far the offsets reach, in radians; their densities do not depend on it
/// @throws std::invalid_argument where there are samples and an argument or a point's place is not
/// finite, NotReady without tables where there are samples, std::bad_alloc. The set is unchanged
/// then.
SphericalHarmonic &SHBuilder::CreateImportanceSampledGaussSH(SphericalHarmonic &sh, double latitude,
                                                             double longitude, double stdDev)
{
    PlacedPoints &points = placedPoints;
    PlacePoints(pdfGaussOffsets, pdfSphericalSamples, latitude, longitude, stdDev, points);
    const std::vector<QuadLeaf> &leaves = points.tree.FindLeaves(points.onSphere);
    if (!leaves.empty())
        RequireLookUpTables(*this);

    Projector projector(*this, tableCoefficients, Projector::Rounding::Weighted);
    projector.StartAt(sh);
    double total = 0.0;
    for (std::size_t i = 0; i < leaves.size(); ++i) {
        const double area = cellAreas[leaves[i].depth];
        total = total + area;
        double weight = area * pdfDensities[i];
        if (leaves[i].count > 1)
            weight = weight / static_cast<double>(leaves[i].count);
        // A polar angle may lie beyond the tables' one turn; it is folded as an azimuth is.
        const std::int32_t thetaStep =
            std::min(TableIndex(angleScale, WrapAngle(points.theta[i])), numSteps - 1);
        projector.Add(thetaStep, points.onSphere[i].phi, weight);
    }
    projector.Store(static_cast<float>(FOUR_PI_F / total), tableBands, sh);
    return sh;
}
