#include "tesk/python/Attributes.h"

#include "tesk/python/Wrapper.h"

#include <cstdint>
#include <cstring>

namespace tesk {
namespace {

/// The field of the wrapped object. Python has checked that `self` is of the attribute's type.
char *Field(PyObject *self, const AttributeRecord &record)
{
    IRoot *const native = reinterpret_cast<Wrapper *>(self)->native;
    return reinterpret_cast<char *>(native) + record.fieldOffset;
}

template <class T> T Load(const char *field)
{
    T value;
    std::memcpy(&value, field, sizeof value);
    return value;
}

/// Converts `value` as a method's first argument and stores it.
template <class T> int Store(PyObject *self, PyObject *value, const AttributeRecord &record)
{
    T converted;
    if (!TeskExtractArgumentImpl(value, converted, 0, false))
        return -1;
    std::memcpy(Field(self, record), &converted, sizeof converted);
    return 0;
}

PyObject *GetAttribute(PyObject *self, void *closure)
{
    const auto &record = *static_cast<const AttributeRecord *>(closure);
    if (record.typeCode == AttributeTypeInt32)
        return PyInt_FromLong(Load<std::int32_t>(Field(self, record)));
    return PyFloat_FromDouble(Load<double>(Field(self, record)));
}

int SetAttribute(PyObject *self, PyObject *value, void *closure)
{
    const auto &record = *static_cast<const AttributeRecord *>(closure);
    if (!value) {
        PyErr_Format(PyExc_TypeError, "attribute '%s' cannot be deleted", record.name);
        return -1;
    }
    if (record.typeCode == AttributeTypeInt32)
        return Store<std::int32_t>(self, value, record);
    return Store<double>(self, value, record);
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
        attributes[i].get = record.flags & AttributeReadable ? GetAttribute : nullptr;
        attributes[i].set = record.flags & AttributeWritable ? SetAttribute : nullptr;
        attributes[i].doc = const_cast<char *>(record.doc);
        attributes[i].closure = const_cast<AttributeRecord *>(&record);
    }
    return attributes;
}

} // namespace tesk
