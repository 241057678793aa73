#pragma once

// The way of every projection: points of the sphere, each with a value, are summed into the
// coefficients of a set.
//
// Over N samples x_j of equal area, coefficient i of a function f is the quadrature
//
//   c_i = (4 pi / N) sum over j of f(x_j) y_i(x_j)
//
// with y_i the basis function of index i. Points of unequal area bring their share of it in the
// value. Sums are in single precision, point by point.
//
// Source: R. Green, "Spherical Harmonic Lighting: The Gritty Details", GDC 2003.

#include "orvane/base/Constants.h"
#include "orvane/base/PolarRow.h"
#include "orvane/builder/SphereSamples.h"
#include "orvane/kernels/PointSums.h"
#include "orvane/sh/LookUpTables.h"
#include "orvane/sh/SphericalHarmonic.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvane {

struct Kernels;

/// Projects once. Nothing is allocated before all points are summed, and the set is untouched until
/// then. The tables must stay as they are meanwhile, but for polar rows that are added to them.
class Projector {
public:
    /// How a basis value b meets the value of a point.
    enum class Rounding {
        Weighted, ///< (float)(b * value): projected functions and weighted points
        Pixels    ///< (float)b * (float)value: projected images
    };

    /// @param numCoefficients of the set; at most 900 where there are points
    Projector(LookUpTables &tables, const Kernels &kernels, std::int32_t numCoefficients,
              Rounding rounding);

    /// Starts the sums at the set's coefficients instead of at 0. A -0 counts as +0.
    void StartAt(const SphericalHarmonic &sh);

    /// Replaces the set by the sums over all points, each multiplied by a weight in single
    /// precision. Points are not asked for where there are no coefficients.
    /// @param pointAt gives point i = 0, 1, ... as a ProjectionPoint
    /// @param weight called once all points are summed
    /// @param numBands stored as the set's band count
    /// @throws NotReady without tables where there are points and coefficients
    /// @throws std::bad_alloc
    /// What pointAt throws. The set is unchanged then.
    template <typename PointAt, typename Weight>
    SphericalHarmonic &Project(std::size_t numPoints, const PointAt &pointAt, const Weight &weight,
                               std::int32_t numBands, SphericalHarmonic &sh)
    {
        if (numPoints > 0 && numCoefficients > 0) {
            tables.Require();
            for (std::size_t i = 0; i < numPoints; ++i)
                Add(pointAt(i));
        }
        Store(weight(), numBands, sh);
        return sh;
    }

    /// The same over samples of equal area. No samples give NaN: 0 times an infinite weight.
    /// @param valueAt gives the function's value at sample i; asked in the samples' order
    template <typename ValueAt>
    SphericalHarmonic &ProjectSamples(const std::vector<SphericalSample> &samples,
                                      ValueAt &&valueAt, std::int32_t numBands,
                                      SphericalHarmonic &sh)
    {
        const auto pointAt = [&](std::size_t i) -> ProjectionPoint {
            const SphericalSample &sample = samples[i];
            const double value = valueAt(i);
            if (value == 0.0) // has no part in any sum
                return {};
            RequireFoldable(sample.phi, tableBands - 1);
            return {sample.phi, value, tables.PolarStep(sample.theta)};
        };
        const auto weight = [&] {
            return static_cast<float>(FOUR_PI_F) / static_cast<float>(samples.size());
        };
        return Project(samples.size(), pointAt, weight, numBands, sh);
    }

private:
    void Add(const ProjectionPoint &point)
    {
        // A point of value 0 changes no bit. Its products are +0 or -0, for basis values are
        // finite, and adding either leaves every sum as it is but -0. No sum is -0: they begin at
        // +0, and rounding to nearest gives -0 only as the sum of two -0. NaN is not 0.
        if (point.value == 0.0)
            return;
        tables.EnsurePolarRow(point.thetaStep);
        points[numPoints++] = point;
        if (numPoints == points.size())
            Flush();
    }
    void Flush();
    void Store(float weight, std::int32_t numBands, SphericalHarmonic &sh);
    /// Calls `visit` with the index and the sum of each of the first `count` coefficients, 900 at
    /// most.
    template <typename Visit> void ForEachSum(std::int32_t count, const Visit &visit)
    {
        for (std::int32_t index = 0, l = 0; index < count; ++l)
            for (int m = -l; m <= l && index < count; ++m, ++index)
                visit(index, m < 0 ? sums.sine[PolarIndex(l, -m)] : sums.cosine[PolarIndex(l, m)]);
    }

    LookUpTables &tables;
    const std::int32_t numCoefficients;
    const std::int32_t numSums; ///< coefficients that points add to: as many as the tables cover
    const int bands;            ///< bands that cover them
    const PointSumsKernel addPoints;
    std::size_t numPoints = 0;
    std::array<ProjectionPoint, 64> points;
    ProjectionSums sums{};
};

} // namespace orvane
