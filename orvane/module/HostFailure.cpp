#include "orvane/module/HostFailure.h"

#include "orvane/module/Immortal.h"
#include "orvane/module/PythonErrors.h"

#include <exception>
#include <new>
#include <utility>

namespace orvane::binding {

namespace {

std::exception_ptr &FactoryFailure()
{
    static Immortal<std::exception_ptr> failure;
    return failure.object;
}

} // namespace

void RaiseHostFailure(const char *operation, const char *className)
{
    if (!PyErr_Occurred())
        PyErr_Format(PyExc_RuntimeError, "%s failed for class %s", operation, className);
    throw ErrorAlreadySet();
}

void RaiseHostFailure(const char *operation, unsigned int argument)
{
    if (!PyErr_Occurred())
        PyErr_Format(PyExc_RuntimeError, "%s failed for argument %i", operation,
                     static_cast<int>(argument));
    throw ErrorAlreadySet();
}

void RaiseCreationFailure(const char *operation, const char *className)
{
    const std::exception_ptr cause = std::exchange(FactoryFailure(), nullptr);
    if (cause && !PyErr_Occurred())
        std::rethrow_exception(cause);
    RaiseHostFailure(operation, className);
}

void NoteFactoryFailure()
{
    std::exception_ptr cause = std::current_exception();
    FactoryFailure() = cause ? cause : std::make_exception_ptr(std::bad_alloc());
}

void ForgetFactoryFailure() noexcept
{
    FactoryFailure() = nullptr;
}

} // namespace orvane::binding
