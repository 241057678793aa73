// An 8-bit image of the whole sphere, projected over the builder's samples.

#include "orvane/base/Constants.h"
#include "orvane/base/Errors.h"
#include "orvane/builder/ImageSize.h"
#include "orvane/builder/Projector.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Basis.h"

#include <algorithm>
#include <limits>

using namespace orvane;

namespace {

/// The pixels as a function on the sphere.
class ImageValues {
public:
    ImageValues(std::int32_t width, std::int32_t height, const std::uint8_t *pixels)
        : width(width), height(height), pixels(pixels)
    {
    }

    double At(const SphericalSample &sample) const
    {
        const std::int64_t row = PixelIndex(rowsPerRadian * sample.theta, height);
        return pixels[row * width + PixelIndex(columnsPerRadian * sample.phi, width)];
    }

private:
    /// The row or column of a pixel; the last one for an angle at the far end or just beyond.
    static std::int32_t PixelIndex(double position, std::int32_t size)
    {
        return std::clamp(TruncateToInt32(position), 0, size - 1);
    }

    const std::int32_t width;
    const std::int32_t height;
    const std::uint8_t *const pixels;
    const double rowsPerRadian = static_cast<float>(height) / static_cast<float>(PI_F);
    const double columnsPerRadian = static_cast<float>(width) / static_cast<float>(TWO_PI_F);
};

} // namespace

SphericalHarmonic &SHBuilder::CreateSHFromImageBuffer(SphericalHarmonic &sh, std::int32_t width,
                                                      std::int32_t height, std::int32_t band,
                                                      const std::uint8_t *pixels)
{
    RequireImageSize(width, height);
    const std::int32_t count = CoefficientCount(band);
    // Without samples nothing reads the tables, and a set of any size is NaN throughout.
    const std::int32_t maxCoefficients =
        sphericalSamples.empty() ? std::numeric_limits<std::int32_t>::max() : tableCoefficients;
    if (count < 0 || count > maxCoefficients)
        throw std::invalid_argument(IllegalValue(
            "band", band, "bands of at most " + std::to_string(maxCoefficients) + " coefficients"));
    if (count > 0 && !sphericalSamples.empty() && (width == 0 || height == 0))
        throw std::invalid_argument("the image has no pixels; expected at least 1");

    const ImageValues image(width, height, pixels);
    const auto valueAt = [&](std::size_t i) { return image.At(sphericalSamples[i]); };
    return Projector(tables, *kernels, count, Projector::Rounding::Pixels)
        .ProjectSamples(sphericalSamples, valueAt, band, sh);
}
