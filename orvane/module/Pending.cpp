// What is still to come, so that the module can be loaded; goes when the sources are there.

#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Errors.h"

#if !__has_include("orvane/sh/Rotation.h")
namespace orvane {
void RotateZ(const SphericalHarmonic &, double, SphericalHarmonic &);
void RotateZ(const SphericalHarmonic &, double, SphericalHarmonic &)
{
    throw NotReady("RotateZ is not there yet");
}
void RotateSH(const SphericalHarmonic &, const double[3][3], SphericalHarmonic &);
void RotateSH(const SphericalHarmonic &, const double[3][3], SphericalHarmonic &)
{
    throw NotReady("RotateSH is not there yet");
}
} // namespace orvane
#endif

#if !__has_include("orvane/builder/ImportanceSampling.cpp")
void SHBuilder::GeneratePDFSamples(std::int32_t, std::int32_t, std::int32_t)
{
    throw orvane::NotReady("importance sampling is not there yet");
}
SphericalHarmonic &SHBuilder::CreateImportanceSampledGaussSH(SphericalHarmonic &, double, double,
                                                             double)
{
    throw orvane::NotReady("importance sampling is not there yet");
}
#endif
