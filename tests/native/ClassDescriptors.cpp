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
