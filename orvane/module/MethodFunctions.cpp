#include "orvane/module/MethodFunctions.h"

#include "orvane/module/SharedView.h"
#include "orvane/sh/CoefficientBuffer.h"
#include "orvane/sh/Rotation.h"

namespace orvane::binding {

namespace {

/// The product as a wrapping signed 32-bit integer.
constexpr std::int32_t WrappedProduct(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

} // namespace

NewReference<ScriptType::View> GetAsBuffer(SphericalHarmonic &sh)
{
    // An alias: it holds the block and points at the floats in it.
    const auto block = sh.coefficients.Share();
    return SharedView({block, sh.coefficients.data()},
                      static_cast<Py_ssize_t>(sh.coefficients.size() * sizeof(float)));
}

void CopyInto(SHBuilder &, SphericalHarmonic &copy, const SphericalHarmonic &sh)
{
    CopySH(sh, copy);
}

void RotateInto(SHBuilder &builder, SphericalHarmonic &rotated, const SphericalHarmonic &sh,
                const RotationMatrix &matrix)
{
    RotateSH(sh, matrix.rows, rotated, *builder.kernels);
}

void RotateZInto(SHBuilder &, SphericalHarmonic &rotated, const SphericalHarmonic &sh, float angle)
{
    RotateZ(sh, angle, rotated);
}

NewReference<ScriptType::View> GetImageBuffer(SHBuilder &builder)
{
    return SharedView({builder.imageBuffer, builder.imageBuffer.get()},
                      static_cast<Py_ssize_t>(builder.imageWidth) * builder.imageHeight);
}

NewReference<ScriptType::Set> CreateSHFromBuffer(SHBuilder &, const ReadBuffer &buffer,
                                                 std::int32_t numBands)
{
    if (!buffer.HasLength(CoefficientBytes(numBands)))
        RaiseTypeError("The buffer of %zd bytes doesn't match a float array for %d band SH "
                       "(%d*%d*4)",
                       buffer.Length(), numBands, numBands, numBands);
    return NewSet([&](SphericalHarmonic &sh) { ExtendFromBuffer(sh, buffer.Data(), 0, numBands); });
}

void ExtendSHFromBuffer(SHBuilder &, SphericalHarmonic &sh, const ReadBuffer &buffer,
                        std::int32_t oldBand, std::int32_t newBand)
{
    const std::int32_t count = ExtensionCoefficients(oldBand, newBand);
    if (!buffer.HasLength(count * static_cast<std::int32_t>(sizeof(float))))
        RaiseTypeError("The buffer of %zd bytes doesn't match a float array extending SH from %d "
                       "band SH to %d bands (%d*4)",
                       buffer.Length(), oldBand, newBand, count);
    ExtendFromBuffer(sh, buffer.Data(), oldBand, newBand);
}

NewReference<ScriptType::Set> CreateSHFromImageBuffer(SHBuilder &builder, std::int32_t width,
                                                      std::int32_t height, std::int32_t band,
                                                      const ReadBuffer &buffer)
{
    if (!buffer.HasLength(WrappedProduct(width, height)))
        RaiseTypeError("The buffer of %zd bytes doesn't match a image byte array with width %d and "
                       "height %d",
                       buffer.Length(), width, height);
    return NewSet([&](SphericalHarmonic &sh) {
        builder.CreateSHFromImageBuffer(sh, width, height, band,
                                        static_cast<const std::uint8_t *>(buffer.Data()));
    });
}

} // namespace orvane::binding
