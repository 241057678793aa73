#pragma once

// The object that owns lookup tables, sample sets and an image, and performs every operation on
// coefficient sets.
//
// Angles are in radians: phi and longitude are azimuths from 0 to 2 pi, theta and latitude polar
// angles from 0, the pole, to pi. `Longtitude` and `Imporance` are how scripts spell these words.
//
// An operation that throws has changed nothing.

#include "orvane/builder/IntegralMipMaps.h"
#include "orvane/builder/PlacedPoints.h"
#include "orvane/builder/SphereSamples.h"
#include "orvane/sh/LookUpTables.h"
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

/// A two-dimensional offset in units of a Gaussian's stdDev; GaussDeviate says how far they spread.
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
    /// @throws std::invalid_argument where the processor lacks the instruction set
    void UseInstructionSet(orvane::InstructionSet instructionSet);

    // Lookup tables and evaluation: LookUpTables in orvane/sh

    /// Fills the tables of `numSteps` steps to a full circle.
    /// @param numSteps 1 to 262,144
    /// @throws std::invalid_argument outside that range
    /// @throws std::bad_alloc
    void GenerateLookUpTables(std::int32_t numSteps);

    /// The value of the set at a point: the sum of its coefficients times the basis functions.
    /// @param sh a set of at most 30 bands. Where its band count has a square, a wrapping 32-bit
    /// product, below 1, the value is 0 whatever else there is.
    /// @param phi finite; each m * phi is folded
    /// @param theta not folded, within the tables
    /// @throws NotReady before the tables exist
    /// @throws std::invalid_argument for an angle without a table entry, or a band count beyond the
    /// set or 30
    double GetValueAt(const SphericalHarmonic &sh, double phi, double theta);
    /// The same over the first band * band coefficients.
    double GetValueAtBand(const SphericalHarmonic &sh, double phi, double theta, std::int32_t band);

    /// The basis function of one coefficient index at a point.
    /// @param index 0 to 899
    /// @param phi as GetValueAt
    /// @param theta as GetValueAt
    /// @throws NotReady before the tables exist
    /// @throws std::out_of_range for the index
    /// @throws std::invalid_argument for an angle without a table entry
    double SHBasisFunc(std::int32_t index, double phi, double theta) const;

    // Arithmetic on sets: SetOperations.cpp
    //
    // Each changes and returns its target, which may be an operand as well. Where sizes do not
    // match, SphericalHarmonic says what happens. All throw MissingSet for a null set.

    SphericalHarmonic *AddSH(SphericalHarmonic *target, SphericalHarmonic *source);
    SphericalHarmonic *AddScaledSH(SphericalHarmonic *target, SphericalHarmonic *source,
                                   float scale);
    SphericalHarmonic *SubtractSH(SphericalHarmonic *target, SphericalHarmonic *source);
    SphericalHarmonic *SubtractScaledSH(SphericalHarmonic *target, SphericalHarmonic *source,
                                        float scale);
    SphericalHarmonic *ScaleSH(SphericalHarmonic *target, float scale);
    /// Adds value * y_0 to coefficient 0, y_0 = 1 / sqrt(4 pi) being the basis function of band 0:
    /// the set's value rises by value / (4 pi) everywhere. An empty set has no coefficient to
    /// change and needs no tables.
    /// @throws NotReady before the tables exist
    SphericalHarmonic *OffsetSH(SphericalHarmonic *target, float value);
    SphericalHarmonic *LerpSH(SphericalHarmonic *target, SphericalHarmonic *from,
                              SphericalHarmonic *to, double alpha);
    SphericalHarmonic *CopyScaleAndSubtractSH(SphericalHarmonic *target, SphericalHarmonic *toCopy,
                                              float scale, SphericalHarmonic *toSubtract);

    // Random numbers: Random.h

    /// Seeds the calling thread's generator, which all builders share.
    void SetRandomSeed(std::int32_t seed);
    /// orvane::GaussDensity for scripts.
    double GetGaussDensity(const double &x, const double &mean, const double &stdDev);

    // Samples and projection: FunctionProjection.cpp

    /// Seeds the thread's generator and replaces the samples of every projection.
    /// @param sqrtNumSamples samples per axis, at most 16,384; none below 1
    /// @throws std::invalid_argument above that
    /// @throws std::bad_alloc
    void GenerateSphericalSamples(std::uint32_t seed, std::int32_t sqrtNumSamples);

    /// Projects a function over the samples; an empty sample set gives NaN.
    /// @param sh is replaced
    /// @param numBands 0 to 30
    /// @param func called once per sample, in order (not at all for 0 bands); it leaves the
    /// builder's tables and samples alone
    /// @throws std::invalid_argument for numBands
    /// @throws NotReady without tables where there are samples and bands
    /// @throws std::bad_alloc
    /// What func throws.
    SphericalHarmonic &ProjectFunction(SphericalHarmonic &sh, std::int32_t numBands,
                                       ProjectionFunc func, const void *userData);

    /// sin(theta) from the table: 1 on the equator, 0 at the poles.
    /// @param theta finite; it is folded
    /// @throws std::invalid_argument for theta
    /// @throws NotReady without tables
    double LatitudeProjectionFunc(double phi, double theta) const;

    /// sin(phi) from the table, faded out towards both poles:
    /// (1 - ((theta - pi/2) / (pi/2))^4) sin(phi).
    /// @param phi finite; it is folded
    /// @param theta any number
    /// @throws std::invalid_argument for phi
    /// @throws NotReady without tables
    double LongtitudeProjectionFunc(double phi, double theta) const;

    /// The value at (longitude, latitude) of a Gaussian with its mean at the pole, 1 there.
    double GaussProjectionFunc(double longitude, double latitude, double stdDev) const;

    /// Projects LatitudeProjectionFunc. Throws as ProjectFunction.
    SphericalHarmonic &CreateLatitudeSH(SphericalHarmonic &sh, std::int32_t numBands);
    /// Projects LongtitudeProjectionFunc. Throws as ProjectFunction.
    SphericalHarmonic &CreateLongtitudeSH(SphericalHarmonic &sh, std::int32_t numBands);

    /// A set whose value is value / (4 pi) everywhere: coefficient 0 is value * y_0, as in
    /// OffsetSH, and all others are 0.
    /// @param numBands 0 to 46,340
    /// @throws std::invalid_argument outside that range
    /// @throws NotReady without tables unless numBands is 0
    /// @throws std::bad_alloc
    SphericalHarmonic &CreateConstantSH(SphericalHarmonic &sh, float value, std::int32_t numBands);

    /// Projects a Gaussian of height 1 (GaussBlob). Throws as ProjectFunction.
    /// @param stdDev standard deviation in radians
    /// @param latitude polar angle of the mean
    /// @param longitude azimuth of the mean
    SphericalHarmonic &CreateGaussSH(SphericalHarmonic &sh, std::int32_t numBands, float stdDev,
                                     float latitude, float longitude);

    // Importance sampling: ImportanceSampling.cpp

    /// Draws offsets, the first being (0, 0), and stratified samples of the whole sphere with
    /// density 0; they replace the earlier ones.
    /// @param sqrtNumSamples samples per axis, at most 16,384; none below 1
    /// @param numGaussSamples offsets, at most 2^27; 1 where it is below
    /// @throws std::invalid_argument above these
    /// @throws std::bad_alloc
    /// The generator is then as it was.
    void GeneratePDFSamples(std::int32_t seed, std::int32_t sqrtNumSamples,
                            std::int32_t numGaussSamples);

    /// Adds a Gaussian's samples to the set's coefficients (30 bands), then scales all by 4 pi /
    /// total leaf area; NaN without samples, whatever the arguments are.
    /// @param latitude polar angle of the mean
    /// @param longitude azimuth of the mean
    /// @param stdDev how far the offsets reach; their densities do not depend on it
    /// @throws std::invalid_argument where there are samples and an argument or a point's place is
    /// not finite
    /// @throws NotReady without tables where there are samples
    /// @throws std::bad_alloc
    SphericalHarmonic &CreateImportanceSampledGaussSH(SphericalHarmonic &sh, double latitude,
                                                      double longitude, double stdDev);

    // Image: Image.cpp, ImageProjection.cpp

    /// Makes a black image, width * height bytes, row by row. Views of an earlier one keep it.
    /// @param width 0 and up
    /// @param height 0 and up; at most 2,147,483,647 pixels
    /// @throws std::invalid_argument outside that range
    /// @throws std::bad_alloc
    void SetImageBuffer(std::int32_t width, std::int32_t height);

    /// Lets go of the image; its size stays. Views of it keep it.
    void ClearImageBuffer();

    /// Renders one tile of the image: pixel (x, y) stands for azimuth x * 2 pi / width and polar
    /// angle y * pi / height, its upper left corner; its byte is the value there times `scale`,
    /// truncated, plus `offset`, clamped to 0..255. Truncation saturates to 32 bits and gives 0 for
    /// NaN.
    /// @param sqrtNumSlices tiles per row and per column, 1 and up
    /// @param sliceIndex 0 to sqrtNumSlices squared - 1, row by row
    /// @throws NotReady without an image, or without tables where a pixel needs them
    /// @throws std::invalid_argument for an illegal slice or a band count beyond the set or 30
    /// @throws std::bad_alloc
    void RenderSHToImageBuffer(const SphericalHarmonic &sh, float scale, std::int32_t offset,
                               std::int32_t sqrtNumSlices, std::int32_t sliceIndex);

    /// Projects an image of one byte per pixel over the samples: row y begins at polar angle
    /// y * pi / height and column x at azimuth x * 2 pi / width, and each sample takes the pixel
    /// whose upper left corner it is at or beyond. An empty sample set gives NaN.
    /// @param sh is replaced
    /// @param band stored as given; its square, a wrapping 32-bit product, is 0 or more, and with
    /// samples at most 900
    /// @param pixels holds width * height bytes; the caller checks this
    /// @throws std::invalid_argument for an illegal size or band, or where samples and coefficients
    /// meet an image without pixels
    /// @throws NotReady without tables where they are read
    /// @throws std::bad_alloc
    SphericalHarmonic &CreateSHFromImageBuffer(SphericalHarmonic &sh, std::int32_t width,
                                               std::int32_t height, std::int32_t band,
                                               const std::uint8_t *pixels);

    // Integrals over cos theta and phi: IntegralMipMaps.cpp

    /// Replaces `integrals` by those of the tables.
    /// @throws NotReady without tables
    /// @throws std::bad_alloc
    void GenerateImporanceIntegralMipMaps();

    orvane::LookUpTables tables;
    std::shared_ptr<std::uint8_t[]> imageBuffer; ///< rows of imageWidth bytes; null: no image
    std::int32_t imageWidth = 0;
    std::int32_t imageHeight = 0;
    std::vector<GaussOffset> pdfGaussOffsets;
    std::vector<SphericalSample> pdfSphericalSamples;
    std::vector<SphericalSample> sphericalSamples; ///< the points of every projection
    /// The normal density of each offset, then 0 for each of pdfSphericalSamples.
    std::vector<double> pdfDensities;
    orvane::IntegralMipMaps integrals;

    const orvane::Kernels *kernels; ///< for the processor at hand

    /// What renders of one size share; never null.
    std::unique_ptr<orvane::PictureTables> pictureTables;

    orvane::PlacedPoints placedPoints; ///< of the last importance-sampled Gaussian
};
