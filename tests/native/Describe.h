#pragma once

#include "teskexposure/include/TeskRecords"

/// A class's description without a script: identity and interfaces only. Built on the first
/// call for this class.
template <class Exposed> ClassDescriptor *Describe(const char *module, const char *name)
{
    static const Tx::Clsid clsid(module, name);
    static const Tx::IID root("IRoot");
    static const Tx::IID own(name);
    static const Tx::InterfaceEntry interfaces[] = {{&root, 0}, {&own, 0}, {nullptr, 0}};
    static ClassDescriptor descriptor = {.clsid = &clsid, .iid = &own, .interfaces = interfaces};
    return &descriptor;
}
