#pragma once

// The records that describe a class to the host, made from its table. SHBuilder and
// SphericalHarmonic get their StaticClassDescriptor here.

#include <Python.h>

#include "orvane/module/MethodTable.h"
#include "teskexposure/include/TeskCollections"
#include "teskexposure/include/TeskPython"

#include <array>

namespace orvane::binding {

/// What the host has to know of a class beside its table.
struct ClassNames {
    const Tx::Clsid &clsid;
    const Tx::IID &ownInterface;
    const Tx::IID &listedInterface;
};

/// Nothing in it moves once it is built, and all of it but the signatures' map takes no memory of
/// its own: what the host was handed stays where it is for as long as the library does.
class ClassDescription {
public:
    /// Builds all records and has the host prepare the Python type.
    /// @throws std::bad_alloc, or what the host throws
    ClassDescription(const ClassTable &table, const ClassNames &names, TeskNewFunction pythonNew);
    ClassDescription(const ClassDescription &) = delete;
    ClassDescription &operator=(const ClassDescription &) = delete;

    ClassDescriptor *Descriptor() { return &descriptor; }

    /// Gives back the memory of the signatures, and leaves an empty map.
    void Release() { signatureMap.clear(); }

private:
    // Each with the zero record that ends it.
    std::array<Tx::InterfaceEntry, 4> interfaces{};
    std::array<AttributeRecord, maxAttributes + 1> attributes{};
    std::array<PyMethodDef, maxMethods + 1> methods{};
    MethodSignatureMap signatureMap;
    PyTypeObject pyType{};
    ClassDescriptor descriptor{};
};

/// Gives back the memory of both descriptions, for a library that is about to leave the process.
void ReleaseDescriptions();

} // namespace orvane::binding
