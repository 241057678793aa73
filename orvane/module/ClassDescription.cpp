#include "orvane/module/ClassDescription.h"

#include "orvane/module/ClassIdentity.h"
#include "orvane/module/ClassTables.h"
#include "orvane/module/HostFailure.h"
#include "orvane/module/PythonErrors.h"

#include <atomic>
#include <cstdio>

namespace orvane::binding {

namespace {

/// The type's name in a signature. A set is the name that the host knows the class by, or None.
const char *SignatureType(ScriptType type)
{
    static const struct SetType {
        SetType()
        {
            std::snprintf(text, sizeof text, "%s| None",
                          ListedInterface<SphericalHarmonic>().GetName());
        }
        char text[64];
    } set;
    const char *const name = NamesOf(type).signature;
    return name ? name : set.text;
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
    return Guarded([&] {
        ForgetFactoryFailure();
        PyObject *const object = TeskCreateInstanceFromPython(ClassId<T>(), arguments, keywords);
        if (!object)
            RaiseCreationFailure("TeskCreateInstanceFromPython", className<T>);
        return object;
    });
}

/// Builds the description of T on the first call that can.
template <typename T> ClassDescription &Describe(const ClassTable &table)
{
    static Immortal<ClassDescription> description(
        table, ClassNames{ClassId<T>(), ClassInterface<T>(), ListedInterface<T>()}, &PythonNew<T>);
    return description.object;
}

ClassDescription &SetDescription()
{
    return Describe<SphericalHarmonic>(sphericalHarmonicTable);
}

ClassDescription &BuilderDescription()
{
    return Describe<SHBuilder>(shBuilderTable);
}

} // namespace

ClassDescription::ClassDescription(const ClassTable &table, const ClassNames &names,
                                   TeskNewFunction pythonNew)
{
    Py_REFCNT(&pyType) = 1;
    Py_TYPE(&pyType) = &PyType_Type;

    Tx::InterfaceEntry *interface = interfaces.data();
    for (const Tx::IID *iid : {&RootInterface(), &names.ownInterface, &names.listedInterface})
        *interface++ = {iid, 0};
    AttributeRecord *attribute = attributes.data();
    for (const AttributeRow &row : table.attributes)
        *attribute++ = Attribute(row);
    PyMethodDef *method = methods.data();
    for (const MethodRow &row : table.methods) {
        *method++ = {row.name, row.entry.function, METH_VARARGS, row.doc};
        if (row.entry.style == Style::Thunk)
            signatureMap[row.name] = Signature(row.entry);
    }

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

void ReleaseDescriptions()
{
    BuilderDescription().Release();
    SetDescription().Release();
}

} // namespace orvane::binding

ClassDescriptor *SphericalHarmonic::StaticClassDescriptor()
{
    using namespace orvane::binding;
    static ClassDescriptor *const cached = SetDescription().Descriptor();
    return cached;
}

ClassDescriptor *SHBuilder::StaticClassDescriptor()
{
    using namespace orvane::binding;
    static ClassDescriptor *const cached = BuilderDescription().Descriptor();
    return cached;
}
