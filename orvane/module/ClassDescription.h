#pragma once

// The records that describe a class to the host, made from its table. SHBuilder and
// SphericalHarmonic get their StaticClassDescriptor here.

#include <Python.h>

#include "orvane/module/MethodTable.h"
#include "teskexposure/include/TeskCollections"
#include "teskexposure/include/TeskPython"

#include <vector>

namespace orvane::binding {

/// What the host has to know of a class beside its table.
struct ClassNames {
    const Tx::Clsid &clsid;
    const Tx::IID &ownInterface;
    const Tx::IID &listedInterface;
};

class ClassDescription {
public:
    /// Builds all records and has the host prepare the Python type.
    ClassDescription(const ClassTable &table, const ClassNames &names, TeskNewFunction pythonNew);
    ClassDescription(const ClassDescription &) = delete;
    ClassDescription &operator=(const ClassDescription &) = delete;

    ClassDescriptor *Descriptor() { return &descriptor; }

private:
    std::vector<Tx::InterfaceEntry> interfaces;
    std::vector<AttributeRecord> attributes;
    std::vector<PyMethodDef> methods;
    MethodSignatureMap signatureMap;
    PyTypeObject pyType{};
    ClassDescriptor descriptor{};
};

} // namespace orvane::binding
