// The descriptions of the two exposed classes for tests without Python: identity and interfaces
// only.

#include "orvane/builder/SHBuilder.h"
#include "teskexposure/include/TeskRecords"

namespace {

/// One description, built on the first call for this tag.
template <class Exposed> ClassDescriptor *Describe(const char *name)
{
    static const Tx::Clsid clsid("Orvane", name);
    static const Tx::IID root("IRoot");
    static const Tx::IID own(name);
    static const Tx::InterfaceEntry interfaces[] = {{&root, 0}, {&own, 0}, {nullptr, 0}};
    static ClassDescriptor descriptor = {.clsid = &clsid, .iid = &own, .interfaces = interfaces};
    return &descriptor;
}

} // namespace

ClassDescriptor *SphericalHarmonic::StaticClassDescriptor()
{
    return Describe<SphericalHarmonic>("SphericalHarmonic");
}

ClassDescriptor *SHBuilder::StaticClassDescriptor()
{
    return Describe<SHBuilder>("SHBuilder");
}
