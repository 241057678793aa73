#include "orvane/module/ClassDescription.h"

#include "orvane/module/ClassIdentity.h"
#include "orvane/module/SHBuilderTable.h"
#include "orvane/module/SphericalHarmonicTable.h"

#include <atomic>
#include <string>

namespace orvane::binding {

namespace {

/// The type's name in a signature.
const char *SignatureType(ScriptType type)
{
    static const std::string set =
        std::string(ListedInterface<SphericalHarmonic>().GetName()) + "| None";
    switch (type) {
    case ScriptType::Int:
        return "int";
    case ScriptType::Float:
        return "float";
    case ScriptType::Set:
        return set.c_str();
    default:
        return "None";
    }
}

MethodSignature Signature(const Entry &entry)
{
    MethodSignature signature{};
    signature.types[0] = SignatureType(entry.result);
    for (std::size_t i = 0; i < entry.argumentCount; ++i)
        signature.types[i + 1] = SignatureType(entry.arguments[i]);
    signature.argumentCount = static_cast<std::int32_t>(entry.argumentCount);
    return signature;
}

AttributeRecord Attribute(const AttributeRow &row)
{
    AttributeRecord record{};
    record.name = row.name;
    record.typeCode = row.type;
    record.fieldOffset = row.offset;
    record.fieldSize = row.type == AttributeTypeDouble ? sizeof(double) : sizeof(std::int32_t);
    record.doc = row.doc;
    record.flags = row.access;
    return record;
}

template <typename T>
PyObject *PythonNew(PyTypeObject *, PyObject *arguments, PyObject *keywords) noexcept
{
    return TeskCreateInstanceFromPython(ClassId<T>(), arguments, keywords);
}

/// Builds the description of T on the first call.
template <typename T> ClassDescriptor *Describe(const ClassTable &table)
{
    static ClassDescription description(
        table, {ClassId<T>(), ClassInterface<T>(), ListedInterface<T>()}, &PythonNew<T>);
    return description.Descriptor();
}

} // namespace

ClassDescription::ClassDescription(const ClassTable &table, const ClassNames &names,
                                   TeskNewFunction pythonNew)
{
    Py_REFCNT(&pyType) = 1;
    Py_TYPE(&pyType) = &PyType_Type;

    for (const Tx::IID *iid : {&RootInterface(), &names.ownInterface, &names.listedInterface})
        interfaces.push_back({iid, 0});
    for (const AttributeRow &row : table.attributes)
        attributes.push_back(Attribute(row));
    for (const MethodRow &row : table.methods) {
        methods.push_back({row.name, row.entry.function, METH_VARARGS, row.doc});
        if (row.entry.style == Style::Thunk)
            signatureMap[row.name] = Signature(row.entry);
    }
    methods.push_back({});
    attributes.push_back({});
    interfaces.push_back({});

    TeskInitializePyType(&pyType, names.clsid, table.doc, interfaces.data(), pythonNew);

    descriptor.clsid = &names.clsid;
    descriptor.iid = &names.ownInterface;
    descriptor.doc = table.doc;
    descriptor.interfaces = interfaces.data();
    descriptor.attributes = attributes.data();
    descriptor.methods = methods.data();
    descriptor.pyType = &pyType;
    std::atomic_ref(descriptor.counterA).exchange(0);
    std::atomic_ref(descriptor.counterB).exchange(0);
    descriptor.signatures = &signatureMap;
}

} // namespace orvane::binding

ClassDescriptor *SphericalHarmonic::StaticClassDescriptor()
{
    using namespace orvane::binding;
    static ClassDescriptor *const cached = Describe<SphericalHarmonic>(sphericalHarmonicTable);
    return cached;
}

ClassDescriptor *SHBuilder::StaticClassDescriptor()
{
    using namespace orvane::binding;
    static ClassDescriptor *const cached = Describe<SHBuilder>(shBuilderTable);
    return cached;
}
