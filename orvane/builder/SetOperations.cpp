// Arithmetic on coefficient sets as the builder offers it: the target is changed and handed back.

#include "orvane/base/Errors.h"
#include "orvane/builder/SHBuilder.h"

using namespace orvane;

namespace {

/// Refuses an absent set before anything is changed.
/// @throws MissingSet
void RequireSet(const SphericalHarmonic *sh, int argument)
{
    if (!sh)
        throw MissingSet(argument);
}

} // namespace

SphericalHarmonic *SHBuilder::AddSH(SphericalHarmonic *target, SphericalHarmonic *source)
{
    RequireSet(target, 0);
    RequireSet(source, 1);
    target->Add(*source);
    return target;
}

SphericalHarmonic *SHBuilder::AddScaledSH(SphericalHarmonic *target, SphericalHarmonic *source,
                                          float scale)
{
    RequireSet(target, 0);
    RequireSet(source, 1);
    target->AddScaled(*source, scale);
    return target;
}

SphericalHarmonic *SHBuilder::SubtractSH(SphericalHarmonic *target, SphericalHarmonic *source)
{
    RequireSet(target, 0);
    RequireSet(source, 1);
    target->Subtract(*source);
    return target;
}

SphericalHarmonic *SHBuilder::SubtractScaledSH(SphericalHarmonic *target, SphericalHarmonic *source,
                                               float scale)
{
    RequireSet(target, 0);
    RequireSet(source, 1);
    target->SubtractScaled(*source, scale);
    return target;
}

SphericalHarmonic *SHBuilder::ScaleSH(SphericalHarmonic *target, float scale)
{
    RequireSet(target, 0);
    target->Scale(scale);
    return target;
}

SphericalHarmonic *SHBuilder::OffsetSH(SphericalHarmonic *target, float value)
{
    RequireSet(target, 0);
    if (target->coefficients.empty())
        return target;
    const float basis = static_cast<float>(SHBasisFunc(0, 0.0, 0.0));
    target->coefficients[0] = basis * value + target->coefficients[0];
    return target;
}

SphericalHarmonic *SHBuilder::LerpSH(SphericalHarmonic *target, SphericalHarmonic *from,
                                     SphericalHarmonic *to, double alpha)
{
    RequireSet(target, 0);
    RequireSet(from, 1);
    RequireSet(to, 2);
    target->Lerp(*from, *to, alpha);
    return target;
}

SphericalHarmonic *SHBuilder::CopyScaleAndSubtractSH(SphericalHarmonic *target,
                                                     SphericalHarmonic *toCopy, float scale,
                                                     SphericalHarmonic *toSubtract)
{
    RequireSet(target, 0);
    RequireSet(toCopy, 1);
    RequireSet(toSubtract, 3);
    target->CopyScaleAndSubtract(*toCopy, scale, *toSubtract);
    return target;
}
