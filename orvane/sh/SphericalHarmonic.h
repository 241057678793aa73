#pragma once

// One set of real spherical-harmonic coefficients: a scalar function on the sphere.

#include "orvane/sh/SharedArray.h"
#include "teskexposure/include/TeskInterfaces"

#include <cstdint>

/// The coefficients stand band by band: band l >= 0, order m in -l..l, at index l*l + l + m.
///
/// Every operation that walks coefficients uses the array's count; `numBands` is what evaluation
/// and rendering read. Both agree (count = numBands squared) unless a script writes the `numBands`
/// attribute, which changes the field alone.
class SphericalHarmonic : public IRoot {
public:
    /// The class's description; built on the first call. Defined by whoever exposes the class.
    static ClassDescriptor *StaticClassDescriptor();
    ClassDescriptor *GetClassDescriptor() override { return StaticClassDescriptor(); }

    /// Sets the band count and resizes to bands * bands coefficients: the first ones are kept, new
    /// ones are 0.
    /// @param bands 0 to 46,340
    /// @throws std::invalid_argument outside that range
    /// @throws std::bad_alloc
    /// The set is then unchanged.
    void SetNumBands(std::int32_t bands);

    /// Stores the band count as given, a negative one included, and resizes to its square taken as
    /// a wrapping 32-bit product.
    /// @throws std::invalid_argument where that product is negative
    /// @throws std::bad_alloc
    /// The set is then unchanged.
    void ResizeToBands(std::int32_t bands);

    /// @throws std::out_of_range unless 0 <= index < GetNumCoefficients()
    void SetCoefficient(std::int32_t index, const float &value);
    /// @throws std::out_of_range unless 0 <= index < GetNumCoefficients()
    float GetCoefficient(std::int32_t index) const;
    /// The array's element count.
    std::int32_t GetNumCoefficients() const;
    /// Sets every coefficient to 0; count and band count stay.
    void Clean();

    // In-place arithmetic (Arithmetic.cpp), t being a coefficient of this set and s the source's of
    // the same index. This set may be any of the operands.
    //
    // The first four work in single precision on as many coefficients as the source has. A source
    // that has more than this set changes nothing.

    /// t = s + t
    void Add(const SphericalHarmonic &source);
    /// t = scale * s + t
    void AddScaled(const SphericalHarmonic &source, float scale);
    /// t = t - s
    void Subtract(const SphericalHarmonic &source);
    /// t = t - scale * s
    void SubtractScaled(const SphericalHarmonic &source, float scale);
    /// t = scale * t
    void Scale(float scale);

    // The last two work in double precision and round once. This set takes over the first operand's
    // band count and its square of coefficients; those that the operands lack stay. Operands with
    // different numbers of coefficients change nothing.

    /// t = toCopy * scale - toSubtract
    /// @throws std::invalid_argument where the square of toCopy's band count, a wrapping 32-bit
    /// product, is negative
    /// @throws std::bad_alloc
    /// Nothing is changed then.
    void CopyScaleAndSubtract(const SphericalHarmonic &toCopy, double scale,
                              const SphericalHarmonic &toSubtract);
    /// t = to * alpha + from * (1 - alpha)
    /// @param alpha any number
    /// Throws as CopyScaleAndSubtract does, for from's band count.
    void Lerp(const SphericalHarmonic &from, const SphericalHarmonic &to, double alpha);

    std::int32_t numBands = 0;
    SharedArray<float> coefficients;
};

namespace orvane {

/// Makes `out` an exact copy of `in`: band count and every coefficient, whatever their number.
/// @throws std::bad_alloc with `out` unchanged
void CopySH(const SphericalHarmonic &in, SphericalHarmonic &out);

} // namespace orvane
