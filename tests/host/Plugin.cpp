// A plugin that embeds Python and the module: used once, it leaves nothing that keeps it loaded.

#include <Python.h>

extern "C" int UseModule(const char *script)
{
    Py_NoSiteFlag = 1;
    Py_Initialize();
    const int result = PyRun_SimpleString(script);
    Py_Finalize();
    return result;
}
