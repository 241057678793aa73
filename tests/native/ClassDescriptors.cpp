// The exposed classes for programs that have no Python. Where there is one, orvane/module describes
// them instead.

#include "orvane/builder/SHBuilder.h"
#include "tests/native/Describe.h"

ClassDescriptor *SphericalHarmonic::StaticClassDescriptor()
{
    return Describe<SphericalHarmonic>("Orvane", "SphericalHarmonic");
}

ClassDescriptor *SHBuilder::StaticClassDescriptor()
{
    return Describe<SHBuilder>("Orvane", "SHBuilder");
}
