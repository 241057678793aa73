// Identities of classes and interfaces.

#include "teskexposure/include/TeskRecords"

#include <cstring>

namespace Tx {

// Modules hold identities of the size that this library was built with.
static_assert(sizeof(Clsid) == 16 && sizeof(IID) == 8);

namespace {

bool SameText(const char *a, const char *b)
{
    return a == b || std::strcmp(a, b) == 0;
}

} // namespace

Clsid::Clsid(const char *module, const char *name) : module(module), name(name) {}

const char *Clsid::GetModule() const
{
    return module;
}

const char *Clsid::GetName() const
{
    return name;
}

bool Clsid::IsEqual(const Clsid &other) const
{
    return SameText(name, other.name) && SameText(module, other.module);
}

IID::IID(const char *name) : name(name) {}

const char *IID::GetName() const
{
    return name;
}

bool IID::IsEqual(const IID &other) const
{
    return SameText(name, other.name);
}

} // namespace Tx
