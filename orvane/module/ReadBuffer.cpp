#include "orvane/module/ReadBuffer.h"

#include "orvane/module/PythonErrors.h"

namespace orvane::binding {

ReadBuffer::ReadBuffer(PyObject *object)
{
    const PyBufferProcs *const procedures = object ? Py_TYPE(object)->tp_as_buffer : nullptr;
    if (!procedures || !procedures->bf_getreadbuffer)
        RaiseTypeError("data isn't a buffer");
    length = procedures->bf_getreadbuffer(object, 0, &data);
    if (length < 0 && PyErr_Occurred())
        throw ErrorAlreadySet();
}

} // namespace orvane::binding
