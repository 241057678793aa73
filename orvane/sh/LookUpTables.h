#pragma once

// The tables that every evaluation reads: sines and cosines of the steps of a full circle, and the
// Legendre functions of 30 bands at each step. Nothing calls a trigonometric or Legendre function
// once they are there.
//
// The Legendre functions are kept in two forms:
//
//   legendreLut: an array over the steps for each band and order; (l, m) and (l, -m) share one
//
//     (0, 0)  step 0 1 2 ...    | unused | (1, 0)  step 0 1 2 ...    | unused | (1, 1)  ...
//
//   polarRows: a row over orders and bands for each step, times K(l, m), padded to whole vectors
//
//     step 0  m = 0: l = 0 1 ... 29, m = 1: l = 1 ... 29, ... m = 29: l = 29 | step 1  m = 0: ...
//
// Points of the sphere have a theta up to pi and read the first half of the steps. Only importance
// samples that lie beyond a pole, and a caller's larger theta, read more: the other half is made
// when one is asked for, in memory that is taken with the first and otherwise never touched.

#include "orvane/base/Bands.h"
#include "orvane/kernels/AlignedArray.h"
#include "orvane/kernels/AngleTables.h"
#include "orvane/kernels/Legendre.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class SphericalHarmonic;

namespace orvane {

struct Kernels;

/// @param order 0 to 29
/// @throws std::invalid_argument where `phi` or one of its multiples up to `order` is not finite,
/// so that it cannot be folded
void RequireFoldable(double phi, int order);

/// @param name what the caller's band count is called in a message
/// @throws std::invalid_argument where CoefficientCount(bands) is beyond the set or the tables
void RequireTerms(const SphericalHarmonic &sh, const char *name, std::int32_t bands);

/// The fields are there to be read; Generate fills them. Before it, all are 0 or empty.
class LookUpTables {
public:
    /// Fills the tables.
    /// @param numSteps steps of a full circle, 1 to 262,144
    /// @throws std::invalid_argument outside that range
    /// @throws std::bad_alloc
    /// If it throws, the old tables remain.
    void Generate(std::int32_t numSteps, const Kernels &kernels);

    /// @throws NotReady naming GenerateLookUpTables before there are tables
    void Require() const;

    /// The step that an angle in radians falls into, without regard to what the tables hold: angle
    /// times angleScale, truncated; saturated to 32 bits, 0 for NaN.
    std::int32_t Step(double angle) const;

    /// The step of an angle that is folded into a full circle first; the last one where rounding
    /// puts it beyond the tables. Needs tables.
    /// @param angle radians, finite
    std::int32_t FoldedStep(double angle) const;

    /// The step of a polar angle, which is never folded. Needs tables.
    /// @param theta radians
    /// @throws std::invalid_argument where theta is below 0, beyond the tables or not finite
    std::int32_t PolarStep(double theta) const;

    /// The basis function of a coefficient index at a point. May make the steps beyond pi.
    /// @param index 0 to 899
    /// @param phi azimuth in radians; |m| * phi is finite and folded
    /// @param theta polar angle in radians, within the tables
    /// @throws NotReady
    /// @throws std::out_of_range for the index
    /// @throws std::invalid_argument for an angle
    double BasisValue(std::int32_t index, double phi, double theta);

    /// The value at a point of the set's first CoefficientCount(bands) terms; 0 where that is below
    /// 1, before anything else is looked at. May make the steps beyond pi.
    /// @param bands at most 30, and no more than the set has
    /// @param name what the caller's band count is called in a message
    /// @param phi azimuth in radians; each m * phi is finite and folded
    /// @param theta polar angle in radians, within the tables
    /// @throws NotReady
    /// @throws std::invalid_argument
    double Evaluate(const SphericalHarmonic &sh, std::int32_t bands, const char *name, double phi,
                    double theta, const Kernels &kernels);

    /// Makes the Legendre values beyond pi where `step`, 0 to numSteps - 1, is one of those steps
    /// and they are not there yet. Needs tables. Nothing fails; the arrays of legendreLut move.
    void EnsurePolarStep(std::int32_t step)
    {
        if (step >= polarSteps)
            FillPolarSteps(numSteps);
    }

    /// The angle tables as the kernels take them.
    AngleTables Angles() const { return {cosLut.data(), sinLut.data(), angleScale, numSteps}; }

    double angleScale = 0.0;          ///< steps per radian
    std::int32_t numSteps = 0;        ///< of a full circle
    std::int32_t maxBands = 0;        ///< 30 with tables
    std::int32_t maxCoefficients = 0; ///< 900 with tables
    std::vector<double> cosLut;       ///< cosine of each step's angle
    std::vector<double> sinLut;       ///< sine of each step's angle
    /// [coefficient index][step]: P(l, |m|, cos theta), theta being the step's angle. The first
    /// polarSteps steps.
    std::vector<std::span<const double>> legendreLut;
    std::vector<std::int32_t> orderLut; ///< [coefficient index]: the order m
    /// polarSteps rows of polarRowLength values K(l, m) P(l, m), as PolarRow.h lays them out.
    std::span<const double> polarRows;
    std::int32_t polarSteps = 0; ///< steps from 0 on that have Legendre values: up to pi, or all

private:
    void FillPolarSteps(std::int32_t count);

    AlignedArray legendreMemory;
    AlignedArray rowMemory;
    LegendreKernel fillLegendre = nullptr; ///< the one that Generate was given
};

} // namespace orvane
