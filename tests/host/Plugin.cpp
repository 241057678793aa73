// A plugin that embeds Python and the module: used once, it leaves nothing that keeps it loaded.

#include <Python.h>

extern "C" int UseModule()
{
    Py_NoSiteFlag = 1;
    Py_Initialize();
    const int result = PyRun_SimpleString("import use");
    Py_Finalize();
    return result;
}
