// The exposed classes for programs that have no Python. Where there is one, orvane/module describes
// them instead.

#include "orvane/bare/Describe.h"
#include "orvane/builder/SHBuilder.h"

ClassDescriptor *SphericalHarmonic::StaticClassDescriptor()
{
    return Describe<SphericalHarmonic>("Orvane", "SphericalHarmonic");
}

ClassDescriptor *SHBuilder::StaticClassDescriptor()
{
    return Describe<SHBuilder>("Orvane", "SHBuilder");
}
