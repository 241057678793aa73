#include "tesk/python/Attributes.h"

#include "tesk/python/Wrapper.h"

#include <cstdint>
#include <cstring>

namespace tesk {
namespace {

/// The field of the wrapped object that the record in `closure` describes. Python has checked that
/// `self` is of the attribute's type.
char *Field(PyObject *self, void *closure)
{
    IRoot *const native = reinterpret_cast<Wrapper *>(self)->native;
    return reinterpret_cast<char *>(native) +
           static_cast<const AttributeRecord *>(closure)->fieldOffset;
}

PyObject *ToPython(std::int32_t value)
{
    return PyInt_FromLong(value);
}

PyObject *ToPython(double value)
{
    return PyFloat_FromDouble(value);
}

template <class T> PyObject *Get(PyObject *self, void *closure)
{
    T value;
    std::memcpy(&value, Field(self, closure), sizeof value);
    return ToPython(value);
}

/// Converts the value as a method would its first argument.
template <class T> int Set(PyObject *self, PyObject *value, void *closure)
{
    if (!value) {
        PyErr_SetString(PyExc_TypeError, "the attribute cannot be deleted");
        return -1;
    }
    T converted;
    if (!TeskExtractArgumentImpl(value, converted, 0, false))
        return -1;
    std::memcpy(Field(self, closure), &converted, sizeof converted);
    return 0;
}

template <class T> void Bind(PyGetSetDef &attribute, unsigned int flags)
{
    attribute.get = flags & AttributeReadable ? Get<T> : nullptr;
    attribute.set = flags & AttributeWritable ? Set<T> : nullptr;
}

} // namespace

PyGetSetDef *MakeAttributes(const AttributeRecord *records)
{
    if (!records || !records->name)
        return nullptr;
    std::size_t count = 0;
    while (records[count].name)
        ++count;
    auto *const attributes = new PyGetSetDef[count + 1]();
    for (std::size_t i = 0; i < count; ++i) {
        const AttributeRecord &record = records[i];
        attributes[i].name = const_cast<char *>(record.name);
        attributes[i].doc = const_cast<char *>(record.doc);
        attributes[i].closure = const_cast<AttributeRecord *>(&record);
        if (record.typeCode == AttributeTypeInt32)
            Bind<std::int32_t>(attributes[i], record.flags);
        else if (record.typeCode == AttributeTypeDouble)
            Bind<double>(attributes[i], record.flags);
    }
    return attributes;
}

} // namespace tesk
