#include "orvane/module/SharedView.h"

#include <new>
#include <utility>

namespace orvane::binding {

namespace {

/// The object under a view: it owns a share of a block and lends it out for reading. The module
/// does not expose its type, and it has no constructor.
struct BlockObject {
    PyObject_HEAD
    std::shared_ptr<const void> block;
    Py_ssize_t length;
};

void Deallocate(PyObject *self)
{
    reinterpret_cast<BlockObject *>(self)->block.~shared_ptr();
    PyObject_Del(self);
}

Py_ssize_t CountSegments(PyObject *self, Py_ssize_t *totalLength)
{
    if (totalLength)
        *totalLength = reinterpret_cast<BlockObject *>(self)->length;
    return 1;
}

Py_ssize_t Read(PyObject *self, Py_ssize_t segment, void **data)
{
    if (segment != 0) {
        PyErr_SetString(PyExc_SystemError, "a view has one segment");
        return -1;
    }
    const auto *object = reinterpret_cast<BlockObject *>(self);
    // Readers of an empty buffer may look at its address; it is never null.
    static const char nothing = 0;
    *data = const_cast<void *>(object->block ? object->block.get() : &nothing);
    return object->length;
}

Py_ssize_t ReadCharacters(PyObject *self, Py_ssize_t segment, char **data)
{
    return Read(self, segment, reinterpret_cast<void **>(data));
}

PyTypeObject *BlockType()
{
    static PyBufferProcs procedures = [] {
        PyBufferProcs filled{};
        filled.bf_getreadbuffer = &Read;
        filled.bf_getsegcount = &CountSegments;
        filled.bf_getcharbuffer = &ReadCharacters;
        return filled;
    }();
    static PyTypeObject type = [] {
        PyTypeObject filled{};
        Py_REFCNT(&filled) = 1;
        filled.tp_name = "_shared_block";
        filled.tp_basicsize = sizeof(BlockObject);
        filled.tp_dealloc = &Deallocate;
        filled.tp_as_buffer = &procedures;
        filled.tp_flags = Py_TPFLAGS_DEFAULT;
        return filled;
    }();
    // Does nothing where the type is ready.
    return PyType_Ready(&type) == 0 ? &type : nullptr;
}

} // namespace

NewReference<ScriptType::View> SharedView(std::shared_ptr<const void> block, Py_ssize_t length)
{
    PyTypeObject *const type = BlockType();
    BlockObject *const object = type ? PyObject_New(BlockObject, type) : nullptr;
    if (!object)
        throw ErrorAlreadySet();
    object->length = block ? length : 0;
    new (&object->block) std::shared_ptr<const void>(std::move(block));
    PyObject *const owner = reinterpret_cast<PyObject *>(object);
    PyObject *const view = PyBuffer_FromObject(owner, 0, Py_END_OF_BUFFER);
    Py_DECREF(owner);
    return {view};
}

} // namespace orvane::binding
