#pragma once

// The object that owns lookup tables, sample sets and an image, and performs every operation on
// coefficient sets.

#include "orvane/builder/ImportanceSampling.h"
#include "orvane/kernels/PolarTable.h"
#include "orvane/sh/SphericalHarmonic.h"
#include "teskexposure/include/TeskInterfaces"

#include <cstdint>
#include <memory>
#include <vector>

namespace orvane {
class PictureTables;
struct Kernels;
enum class InstructionSet;
} // namespace orvane

/// One point of the sphere: polar angle 0 to pi, azimuth 0 to 2 pi, in radians.
struct SphericalSample {
    double theta;
    double phi;
};

/// A two-dimensional offset in standard deviations.
struct GaussOffset {
    double x;
    double y;
};

class SHBuilder;

/// A function on the sphere that can be projected: its value at azimuth `phi`, polar angle `theta`.
using ProjectionFunc = double (*)(SHBuilder &builder, const double &phi, const double &theta,
                                  const void *userData);

class SHBuilder : public IRoot {
public:
    /// The class's description; built on the first call. Defined by whoever exposes the class.
    static ClassDescriptor *StaticClassDescriptor();
    ClassDescriptor *GetClassDescriptor() override { return StaticClassDescriptor(); }

    SHBuilder();
    ~SHBuilder();
    SHBuilder(const SHBuilder &) = delete;
    SHBuilder &operator=(const SHBuilder &) = delete;

    /// Makes the builder compute with other kernels than the processor's best; all give the same
    /// bits.
    void UseInstructionSet(orvane::InstructionSet instructionSet);

    // Lookup tables and evaluation: LookUpTables.cpp

    void GenerateLookUpTables(std::int32_t numSteps);
    double GetValueAt(const SphericalHarmonic &sh, double phi, double theta) const;
    double GetValueAtBand(const SphericalHarmonic &sh, double phi, double theta,
                          std::int32_t band) const;
    double SHBasisFunc(std::int32_t index, double phi, double theta) const;

    // Arithmetic on sets, each changing and returning its target: SetOperations.cpp

    SphericalHarmonic *AddSH(SphericalHarmonic *target, SphericalHarmonic *source);
    SphericalHarmonic *AddScaledSH(SphericalHarmonic *target, SphericalHarmonic *source,
                                   float scale);
    SphericalHarmonic *SubtractSH(SphericalHarmonic *target, SphericalHarmonic *source);
    SphericalHarmonic *SubtractScaledSH(SphericalHarmonic *target, SphericalHarmonic *source,
                                        float scale);
    SphericalHarmonic *ScaleSH(SphericalHarmonic *target, float scale);
    SphericalHarmonic *OffsetSH(SphericalHarmonic *target, float value);
    SphericalHarmonic *LerpSH(SphericalHarmonic *target, SphericalHarmonic *from,
                              SphericalHarmonic *to, double alpha);
    SphericalHarmonic *CopyScaleAndSubtractSH(SphericalHarmonic *target, SphericalHarmonic *toCopy,
                                              float scale, SphericalHarmonic *toSubtract);

    // Random numbers: Random.cpp

    void SetRandomSeed(std::int32_t seed);
    double GetGaussDensity(const double &x, const double &mean, const double &stdDev);

    // Samples and projection: Projection.cpp

    void GenerateSphericalSamples(std::uint32_t seed, std::int32_t sqrtNumSamples);
    SphericalHarmonic &ProjectFunction(SphericalHarmonic &sh, std::int32_t numBands,
                                       ProjectionFunc func, const void *userData);
    double LatitudeProjectionFunc(double phi, double theta) const;
    double LongtitudeProjectionFunc(double phi, double theta) const;
    double GaussProjectionFunc(double longitude, double latitude, double stdDev) const;
    SphericalHarmonic &CreateLatitudeSH(SphericalHarmonic &sh, std::int32_t numBands);
    SphericalHarmonic &CreateLongtitudeSH(SphericalHarmonic &sh, std::int32_t numBands);
    SphericalHarmonic &CreateConstantSH(SphericalHarmonic &sh, float value, std::int32_t numBands);
    SphericalHarmonic &CreateGaussSH(SphericalHarmonic &sh, std::int32_t numBands, float stdDev,
                                     float latitude, float longitude);

    // Importance sampling: ImportanceSampling.cpp

    void GeneratePDFSamples(std::int32_t seed, std::int32_t sqrtNumSamples,
                            std::int32_t numGaussSamples);
    SphericalHarmonic &CreateImportanceSampledGaussSH(SphericalHarmonic &sh, double latitude,
                                                      double longitude, double stdDev);

    // Image: Image.cpp, ImageProjection.cpp

    void SetImageBuffer(std::int32_t width, std::int32_t height);
    void ClearImageBuffer();
    void RenderSHToImageBuffer(const SphericalHarmonic &sh, float scale, std::int32_t offset,
                               std::int32_t sqrtNumSlices, std::int32_t sliceIndex);
    /// `pixels` holds `length` bytes; the caller has compared `length` with the wrapped product of
    /// width and height.
    SphericalHarmonic &CreateSHFromImageBuffer(SphericalHarmonic &sh, std::int32_t width,
                                               std::int32_t height, std::int32_t band,
                                               const std::uint8_t *pixels);

    // Integrals over cos theta and phi: IntegralMipMaps.cpp

    void GenerateImporanceIntegralMipMaps();

    double angleScale = 0.0; ///< table index = trunc(angle * angleScale)
    std::int32_t numSteps = 0;
    std::int32_t maxBands = 0;
    std::int32_t maxCoefficients = 0;
    std::vector<double> cosLut;
    std::vector<double> sinLut;
    std::vector<std::vector<double>> legendreLut;
    std::vector<std::int32_t> orderLut;
    std::shared_ptr<std::uint8_t[]> imageBuffer; ///< null when there is none
    std::int32_t imageWidth = 0;
    std::int32_t imageHeight = 0;
    std::vector<GaussOffset> pdfGaussOffsets;
    std::vector<SphericalSample> pdfSphericalSamples;
    std::vector<SphericalSample> sphericalSamples;
    std::vector<double> pdfDensities;
    std::vector<std::vector<double>> thetaIntegralMipMap;
    std::vector<std::vector<double>> phiIntegralMipMap;
    std::vector<double> integralScratch;
    double totalIntegral = 0.0;

    // Derived from the tables above.

    /// Normalised Legendre values, a row for each theta step up to pi and memory for the others.
    /// Only points that lie beyond a pole read those; the first of them has them made
    /// (RequirePolarRow).
    mutable orvane::PolarTable polarTable;
    const orvane::Kernels *kernels; ///< for the processor at hand

    /// What renders of one size share; never null.
    std::unique_ptr<orvane::PictureTables> pictureTables;

    orvane::PlacedPoints placedPoints; ///< of the last importance-sampled Gaussian
};
