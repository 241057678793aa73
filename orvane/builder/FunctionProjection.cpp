// Functions on the sphere, projected over the builder's samples.

#include "orvane/base/Constants.h"
#include "orvane/base/Errors.h"
#include "orvane/base/Limits.h"
#include "orvane/builder/GaussBlob.h"
#include "orvane/builder/Projector.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/kernels/Kernels.h"
#include "platform/RuntimeRandom.h"

#include <algorithm>
#include <cmath>

using namespace orvane;

namespace {

/// A projector of functions.
/// @throws std::invalid_argument unless numBands is 0 to 30
Projector ProjectorOfBands(LookUpTables &tables, const Kernels &kernels, std::int32_t numBands)
{
    RequireInRange("numBands", numBands, 0, tableBands);
    return {tables, kernels, CoefficientCount(numBands), Projector::Rounding::Weighted};
}

/// The sine table's entry for an angle in radians, folded; `name` is the angle's in a message.
double TableSine(const LookUpTables &tables, const char *name, double angle)
{
    tables.Require();
    if (!std::isfinite(angle))
        throw std::invalid_argument(IllegalValue(name, angle, "a finite angle"));
    return tables.sinLut[tables.FoldedStep(angle)];
}

/// A blob's values at samples that are asked for in their order. Most samples lie beyond a narrow
/// blob's reach: an estimate of their distance, far cheaper than the library calls of the value,
/// tells them apart.
class BlobValues {
public:
    BlobValues(const GaussBlob &blob, const std::vector<SphericalSample> &samples,
               CosineEstimateKernel estimate)
        : blob(blob), samples(samples), estimate(estimate), reach(blob.stdDev)
    {
    }

    double operator()(std::size_t i)
    {
        if (i % cosineBlock == 0)
            EstimateFrom(i);
        if (reach.IsSurelyZero(block.cosine[i % cosineBlock]))
            return 0.0;
        return blob.Value(samples[i].phi, samples[i].theta);
    }

private:
    void EstimateFrom(std::size_t start)
    {
        const std::size_t count = std::min<std::size_t>(cosineBlock, samples.size() - start);
        for (std::size_t i = 0; i < count; ++i) {
            block.theta[i] = samples[start + i].theta;
            block.phi[i] = samples[start + i].phi;
        }
        estimate(blob.mean, block);
    }

    const GaussBlob &blob;
    const std::vector<SphericalSample> &samples;
    const CosineEstimateKernel estimate;
    const GaussReach reach;
    CosineBlock block{};
};

} // namespace

void SHBuilder::GenerateSphericalSamples(std::uint32_t seed, std::int32_t sqrtNumSamples)
{
    RequireAtMost("sqrtNumSamples", sqrtNumSamples, maxSamplesPerAxis);
    std::vector<SphericalSample> samples;
    const std::size_t perAxis = std::max(sqrtNumSamples, 0);
    samples.reserve(perAxis * perAxis);
    platform::srand(seed);
    GenerateStratifiedSamples(sqrtNumSamples, samples);
    sphericalSamples.swap(samples);
}

SphericalHarmonic &SHBuilder::ProjectFunction(SphericalHarmonic &sh, std::int32_t numBands,
                                              ProjectionFunc func, const void *userData)
{
    const auto valueAt = [&](std::size_t i) {
        return func(*this, sphericalSamples[i].phi, sphericalSamples[i].theta, userData);
    };
    return ProjectorOfBands(tables, *kernels, numBands)
        .ProjectSamples(sphericalSamples, valueAt, numBands, sh);
}

double SHBuilder::LatitudeProjectionFunc(double, double theta) const
{
    return TableSine(tables, "theta", theta);
}

double SHBuilder::LongtitudeProjectionFunc(double phi, double theta) const
{
    const double sine = TableSine(tables, "phi", phi);
    const double w = std::pow((theta - HALF_PI_F) / HALF_PI_F, 4.0);
    return (1.0 - w) * sine;
}

double SHBuilder::GaussProjectionFunc(double longitude, double latitude, double stdDev) const
{
    return GaussBlob(stdDev, 0.0, 0.0).Value(longitude, latitude);
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

SphericalHarmonic &SHBuilder::CreateConstantSH(SphericalHarmonic &sh, float value,
                                               std::int32_t numBands)
{
    RequireInRange("numBands", numBands, 0, maxSetBands);
    const float y0 = numBands > 0 ? static_cast<float>(tables.BasisValue(0, 0.0, 0.0)) : 0.0f;
    sh.coefficients.assign_zeros(static_cast<std::size_t>(CoefficientCount(numBands)));
    sh.numBands = numBands;
    if (numBands > 0)
        sh.coefficients[0] = y0 * value;
    return sh;
}

SphericalHarmonic &SHBuilder::CreateGaussSH(SphericalHarmonic &sh, std::int32_t numBands,
                                            float stdDev, float latitude, float longitude)
{
    Projector projector = ProjectorOfBands(tables, *kernels, numBands);
    const GaussBlob blob(stdDev, latitude, longitude);
    BlobValues valueAt(blob, sphericalSamples, kernels->cosineEstimate);
    return projector.ProjectSamples(sphericalSamples, valueAt, numBands, sh);
}
