// The smallest user of the installed tree: embeds Python, imports the module and makes a
// coefficient set through the host, then through Python too.

#include <Python.h>

#include "teskexposure/include/TeskSmartPtr"

#include <cstdio>

int main()
{
    Py_Initialize();
    if (PyRun_SimpleString("import sys; sys.path.insert(0, '" MODULE_DIR "')\n"
                           "import _Orvane\n") != 0)
        return 1;
    const Tx::Clsid clsid("Orvane", "SphericalHarmonic");
    TeskSmartPtr<IRoot> set;
    if (!set.CreateInstance(clsid))
        return 1;
    std::printf("a coefficient set with %d reference", set->GetLockCount());
    std::fflush(stdout);
    return PyRun_SimpleString(
        "import sys\n"
        "sh = _Orvane.SphericalHarmonic()\n"
        "sh.SetNumBands(2)\n"
        "count = sh.GetNumCoefficients()\n"
        "sys.stdout.write(', %d coefficients in Python' % count)\n"
        "builder = _Orvane.SHBuilder()\n"
        "assert builder.AddSH(sh, builder.CopySH(sh)).GetCoefficient(3) == 0\n"
        "assert str(sh.GetAsBuffer()) == '\\0' * 16\n"
        "del sh, builder\n");
}
