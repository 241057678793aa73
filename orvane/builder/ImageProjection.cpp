// An 8-bit image of the whole sphere, projected over the builder's samples.

#include "orvane/builder/ImageSize.h"
#include "orvane/builder/LookUpTables.h"
#include "orvane/builder/Projection.h"
#include "orvane/builder/Projector.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Basis.h"
#include "orvane/sh/Constants.h"
#include "orvane/sh/Errors.h"

#include <algorithm>
#include <limits>

using namespace orvane;

namespace {

/// The row or column that an angle falls into, at the low corner of its pixel; the last one for an
/// angle at the far end of the range or just beyond.
std::int64_t PixelIndex(double angle, double scale, std::int32_t size)
{
    return std::clamp(TableIndex(scale, angle), 0, size - 1);
}

} // namespace

/// Projects an image of one byte per pixel, rows of `width` bytes, row y at polar angle
/// y * pi / height and column x at azimuth x * 2 pi / width: each sample takes the pixel whose low
/// corner it is at or beyond.
/// @param band stored as given; its square, a wrapping 32-bit product, is 0 or more, and with
/// samples at most 900
/// @param pixels width * height bytes
/// @throws std::invalid_argument for an illegal size or band, or where samples and coefficients
/// meet an image without pixels; NotReady without tables where they are read; std::bad_alloc. The
/// set is unchanged then.
SphericalHarmonic &SHBuilder::CreateSHFromImageBuffer(SphericalHarmonic &sh, std::int32_t width,
                                                      std::int32_t height, std::int32_t band,
                                                      const std::uint8_t *pixels)
{
    RequireImageSize(width, height);
    const std::int32_t count = CoefficientCount(band);
    const std::int32_t mostCoefficients =
        sphericalSamples.empty() ? std::numeric_limits<std::int32_t>::max() : tableCoefficients;
    if (count < 0 || count > mostCoefficients)
        throw std::invalid_argument(
            IllegalValue("band", band,
                         "bands of at most " + std::to_string(mostCoefficients) + " coefficients"));
    if (sphericalSamples.empty()) {
        // No sum has been added to, and the weight of no samples is infinite.
        sh.coefficients.assign_zeros(static_cast<std::size_t>(count));
        sh.numBands = band;
        for (float &coefficient : sh.coefficients)
            coefficient *= SampleWeight(*this);
        return sh;
    }

    Projector projector(*this, count, Projector::Rounding::Pixels);
    if (count > 0) {
        if (width == 0 || height == 0)
            throw std::invalid_argument("the image has no pixels; expected at least 1");
        RequireLookUpTables(*this);
        const double rowScale = static_cast<float>(height) / static_cast<float>(PI_F);
        const double colScale = static_cast<float>(width) / static_cast<float>(TWO_PI_F);
        for (const SphericalSample &sample : sphericalSamples) {
            const std::int64_t row = PixelIndex(sample.theta, rowScale, height);
            const std::int64_t col = PixelIndex(sample.phi, colScale, width);
            const std::uint8_t pixel = pixels[row * width + col];
            RequireFoldable(sample.phi, tableBands - 1);
            projector.Add(PolarStep(*this, sample.theta), sample.phi, pixel);
        }
    }
    projector.Store(SampleWeight(*this), band, sh);
    return sh;
}
