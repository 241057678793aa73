#pragma once

// Sums weighted points of the sphere into a coefficient set: what every projection does with its
// samples.

#include "orvane/builder/LookUpTables.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/kernels/Projection.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvane {

/// Takes points one by one and stores the finished set at the end; until then the set is untouched.
/// Nothing is allocated before that. The builder's tables must stay as they are meanwhile.
class Projector {
public:
    /// How a basis value b meets the value of a point.
    enum class Rounding {
        Weighted, ///< (float)(b * value): projected functions and weighted points
        Pixels    ///< (float)b * (float)value: projected images
    };

    /// @param numCoefficients 0 to 900; tables are needed as soon as a point is added to at least 1
    Projector(const SHBuilder &builder, std::int32_t numCoefficients, Rounding rounding);

    /// Lets the sums of the coefficients that the set has start there instead of at 0. A -0 counts
    /// as +0.
    void StartAt(const SphericalHarmonic &sh);

    /// Adds one point.
    /// @param thetaStep the point's polar step (PolarStep)
    /// @param phi azimuth in radians, 29 * phi finite
    void Add(std::size_t thetaStep, double phi, double value)
    {
        // A point of value 0 changes no bit. Its products are +0 or -0, for basis values are
        // finite, and adding either leaves every sum as it is but -0. No sum is -0: they begin at
        // +0, and rounding to nearest gives -0 only as the sum of two -0. NaN is not 0.
        if (value == 0.0)
            return;
        RequirePolarRow(builder, thetaStep);
        points[numPoints++] = {phi, value, static_cast<std::int32_t>(thetaStep)};
        if (numPoints == points.size())
            Flush();
    }

    /// Replaces the set by the sums, each multiplied by `weight` in single precision.
    /// @param numBands stored as the set's band count
    /// @throws std::bad_alloc; the set is then unchanged
    void Store(float weight, std::int32_t numBands, SphericalHarmonic &sh);

private:
    void Flush();
    /// Calls `visit` with the index and the sum of each of the first `count` coefficients.
    template <typename Visit> void ForEachSum(std::int32_t count, const Visit &visit)
    {
        for (std::int32_t index = 0, l = 0; index < count; ++l)
            for (int m = -l; m <= l && index < count; ++m, ++index)
                visit(index, m < 0 ? sums.sine[PolarIndex(l, -m)] : sums.cosine[PolarIndex(l, m)]);
    }

    const SHBuilder &builder;
    const std::int32_t numCoefficients;
    const int bands; ///< bands that cover the coefficients
    const ProjectionKernel addPoints;
    std::size_t numPoints = 0;
    std::array<ProjectionPoint, 64> points;
    ProjectionSums sums{};
};

} // namespace orvane
