#include "orvane/builder/Projection.h"

#include "orvane/builder/LookUpTables.h"
#include "orvane/builder/Projector.h"
#include "orvane/builder/Random.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Basis.h"
#include "orvane/sh/Constants.h"
#include "orvane/sh/Errors.h"

#include <algorithm>
#include <cmath>

using namespace orvane;

namespace orvane {

void RequireSampleLimit(std::int32_t sqrtNumSamples)
{
    if (sqrtNumSamples > mostSamplesPerAxis)
        throw std::invalid_argument(IllegalValue("sqrtNumSamples", sqrtNumSamples,
                                                 "at most " + std::to_string(mostSamplesPerAxis)));
}

// R. Green, "Spherical Harmonic Lighting: The Gritty Details", GDC 2003, appendix A1: theta is
// 2 acos(sqrt(1 - x)) for x uniform in [0, 1].
void GenerateStratifiedSamples(std::int32_t n, std::vector<SphericalSample> &target)
{
    target.clear();
    if (n < 1)
        return;
    target.reserve(static_cast<std::size_t>(n) * static_cast<std::size_t>(n));
    const double inv = 1.0f / static_cast<float>(n);
    platform::ThreadDraws random;
    for (std::int32_t i = 0; i < n; ++i)
        for (std::int32_t j = 0; j < n; ++j) {
            // Where inv is above 1/n, the last row can reach beyond the pole by a hair.
            const double rest = std::max(1.0 - (RandomUnit(random) + i) * inv, 0.0);
            const double theta = std::acos(std::sqrt(rest)) * 2.0;
            const double phi = (RandomUnit(random) + j) * inv * TWO_PI_F;
            target.push_back({theta, phi});
        }
}

float SampleWeight(const SHBuilder &builder)
{
    return static_cast<float>(FOUR_PI_F) / static_cast<float>(builder.sphericalSamples.size());
}

GaussParams::GaussParams(double stdDev, double latitude, double longitude)
    : stdDev(stdDev), peakScale(1.0 / GaussDensity(0.0, 0.0, stdDev))
{
    const double sinLatitude = std::sin(latitude);
    mean.x = std::cos(longitude) * sinLatitude;
    mean.z = std::sin(longitude) * sinLatitude;
    mean.y = std::cos(latitude);
}

double GaussValue(const GaussParams &params, double phi, double theta)
{
    const double sinTheta = std::sin(theta);
    const double x = std::cos(phi) * sinTheta;
    const double z = std::sin(phi) * sinTheta;
    const double y = std::cos(theta);
    const double c = (y * params.mean.y + x * params.mean.x) + z * params.mean.z;
    const double angle = std::acos(c);
    if (angle > params.stdDev * 5.0)
        return 0.0;
    return GaussDensity(angle, 0.0, params.stdDev) * params.peakScale;
}

// GaussValue is 0.0 where the library's acos(c) is above limit = stdDev * 5.0, c being the scalar
// product as computed. An estimate e is within 1e-6 of the true cosine, and c within some 1e-15, so
// e < cos(limit + slack) - 2e-6 says that the true acos(c) is above limit + slack, far more than
// the library's acos is off. Past pi there is no such angle. For a limit below 0 the angle 0 will
// do.
//
// A c just outside [-1, 1] has no angle: the value is NaN, not 0. That is why the ends are left
// out.
GaussReach::GaussReach(double stdDev) : lowest(-1.0 + 2.0 * cosineEstimateError), highest(-1.0)
{
    constexpr double slack = 1e-6;
    const double angle = std::max(stdDev * 5.0, 0.0) + slack;
    if (angle < PI_F - slack)
        highest = std::cos(angle) - 2.0 * cosineEstimateError;
}

} // namespace orvane

namespace {

/// A sample's value meets the basis functions at the sample's table entries.
void AddSample(const SHBuilder &builder, const SphericalSample &sample, double value,
               Projector &projector)
{
    RequireFoldable(sample.phi, tableBands - 1);
    projector.Add(PolarStep(builder, sample.theta), sample.phi, value);
}

/// Projects onto `numBands` bands whatever `addSamples` puts into the projector it is given.
template <typename AddSamples>
SphericalHarmonic &Project(const SHBuilder &builder, std::int32_t numBands, SphericalHarmonic &sh,
                           const AddSamples &addSamples)
{
    if (numBands < 0 || numBands > tableBands)
        throw std::invalid_argument(
            IllegalValue("numBands", numBands, "0 to " + std::to_string(tableBands)));
    Projector projector(builder, CoefficientCount(numBands), Projector::Rounding::Weighted);
    if (numBands > 0 && !builder.sphericalSamples.empty()) {
        RequireLookUpTables(builder);
        addSamples(projector);
    }
    projector.Store(SampleWeight(builder), numBands, sh);
    return sh;
}

/// The sine table's entry for an angle in radians, folded; `name` is the angle's in a refusal.
double TableSine(const SHBuilder &builder, const char *name, double angle)
{
    RequireLookUpTables(builder);
    if (!std::isfinite(angle))
        throw std::invalid_argument(IllegalValue(name, angle, "a finite angle"));
    const std::int32_t index = TableIndex(builder.angleScale, WrapAngle(angle));
    return builder.sinLut[std::min(index, builder.numSteps - 1)];
}

} // namespace

/// Seeds the thread's generator and replaces the samples of every projection.
/// @param sqrtNumSamples samples per axis, at most 16,384; none below 1
/// @throws std::invalid_argument, std::bad_alloc; samples and generator are then as they were
void SHBuilder::GenerateSphericalSamples(std::uint32_t seed, std::int32_t sqrtNumSamples)
{
    RequireSampleLimit(sqrtNumSamples);
    std::vector<SphericalSample> samples;
    const std::size_t perAxis = std::max(sqrtNumSamples, 0);
    samples.reserve(perAxis * perAxis);
    platform::srand(seed);
    GenerateStratifiedSamples(sqrtNumSamples, samples);
    sphericalSamples.swap(samples);
}

/// Projects a function over the builder's samples; an empty sample set gives NaN.
/// @param numBands 0 to 30
/// @param func called once per sample, in order (not at all for 0 bands); it leaves the builder's
/// tables and samples alone
/// @throws std::invalid_argument, NotReady without tables where a sample needs them, what func
/// throws, std::bad_alloc. The set is unchanged then.
SphericalHarmonic &SHBuilder::ProjectFunction(SphericalHarmonic &sh, std::int32_t numBands,
                                              ProjectionFunc func, const void *userData)
{
    return Project(*this, numBands, sh, [&](Projector &projector) {
        for (const SphericalSample &sample : sphericalSamples)
            AddSample(*this, sample, func(*this, sample.phi, sample.theta, userData), projector);
    });
}

/// sin(theta) from the table: 1 on the equator, 0 at the poles.
/// @param theta polar angle in radians, finite; it is folded
/// @throws std::invalid_argument, NotReady
double SHBuilder::LatitudeProjectionFunc(double, double theta) const
{
    return TableSine(*this, "theta", theta);
}

/// sin(phi) from the table, faded out towards both poles.
/// @param phi azimuth in radians, finite; it is folded
/// @param theta polar angle in radians
/// @throws std::invalid_argument, NotReady
double SHBuilder::LongtitudeProjectionFunc(double phi, double theta) const
{
    const double sine = TableSine(*this, "phi", phi);
    const double w = std::pow((theta - HALF_PI_F) / HALF_PI_F, 4.0);
    return (1.0 - w) * sine;
}

/// The value at (longitude, latitude) of a blob at the pole, 1 there; all angles in radians.
double SHBuilder::GaussProjectionFunc(double longitude, double latitude, double stdDev) const
{
    return GaussValue(GaussParams(stdDev, 0.0, 0.0), longitude, latitude);
}

SphericalHarmonic &SHBuilder::CreateLatitudeSH(SphericalHarmonic &sh, std::int32_t numBands)
{
    const ProjectionFunc latitude = [](SHBuilder &builder, const double &phi, const double &theta,
                                       const void *) {
        return builder.LatitudeProjectionFunc(phi, theta);
    };
    return ProjectFunction(sh, numBands, latitude, nullptr);
}

SphericalHarmonic &SHBuilder::CreateLongtitudeSH(SphericalHarmonic &sh, std::int32_t numBands)
{
    const ProjectionFunc longitude = [](SHBuilder &builder, const double &phi, const double &theta,
                                        const void *) {
        return builder.LongtitudeProjectionFunc(phi, theta);
    };
    return ProjectFunction(sh, numBands, longitude, nullptr);
}

/// A set of the same value everywhere: only its first coefficient is not 0.
/// @param numBands 0 to 46,340
/// @throws std::invalid_argument, NotReady without tables unless numBands is 0, std::bad_alloc. The
/// set is unchanged then.
SphericalHarmonic &SHBuilder::CreateConstantSH(SphericalHarmonic &sh, float value,
                                               std::int32_t numBands)
{
    if (numBands < 0 || numBands > mostSetBands)
        throw std::invalid_argument(
            IllegalValue("numBands", numBands, "0 to " + std::to_string(mostSetBands)));
    const float y0 = numBands > 0 ? static_cast<float>(SHBasisFunc(0, 0.0, 0.0)) : 0.0f;
    sh.coefficients.assign_zeros(static_cast<std::size_t>(CoefficientCount(numBands)));
    sh.numBands = numBands;
    if (numBands > 0)
        sh.coefficients[0] = y0 * value;
    return sh;
}

/// Projects a blob of height 1 with its mean at polar angle `latitude`, azimuth `longitude`; all
/// angles in radians. Throws as ProjectFunction.
///
/// Most samples lie beyond a narrow blob's reach: an estimate of their distance, far cheaper than
/// the library calls of the value, tells them apart. A value of 0 adds nothing.
SphericalHarmonic &SHBuilder::CreateGaussSH(SphericalHarmonic &sh, std::int32_t numBands,
                                            float stdDev, float latitude, float longitude)
{
    const GaussParams params(stdDev, latitude, longitude);
    const GaussReach reach(stdDev);
    return Project(*this, numBands, sh, [&](Projector &projector) {
        CosineBlock block{};
        for (std::size_t start = 0; start < sphericalSamples.size(); start += cosineBlock) {
            const SphericalSample *samples = sphericalSamples.data() + start;
            const std::size_t count =
                std::min<std::size_t>(cosineBlock, sphericalSamples.size() - start);
            for (std::size_t i = 0; i < count; ++i) {
                block.theta[i] = samples[i].theta;
                block.phi[i] = samples[i].phi;
            }
            kernels->cosineEstimate(params.mean, block);
            for (std::size_t i = 0; i < count; ++i)
                if (!reach.IsBeyond(block.cosine[i]))
                    AddSample(*this, samples[i],
                              GaussValue(params, samples[i].phi, samples[i].theta), projector);
        }
    });
}
