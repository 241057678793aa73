#pragma once

#include <Python.h>

#include <cstdint>

namespace orvane::binding {

/// The bytes of a Python object that offers the read-buffer interface: strings, arrays, buffers,
/// byte arrays, memory maps. Valid until Python code runs.
class ReadBuffer {
public:
    /// @throws ErrorAlreadySet: TypeError "data isn't a buffer", or what reading it raised
    explicit ReadBuffer(PyObject *object);

    const void *Data() const { return data; }
    /// In bytes, as the object reports it. Some objects report a negative length where they have
    /// no bytes any more; it matches no size.
    Py_ssize_t Length() const { return length; }
    bool HasLength(std::int32_t bytes) const { return length >= 0 && length == bytes; }

private:
    void *data = nullptr;
    Py_ssize_t length;
};

} // namespace orvane::binding
