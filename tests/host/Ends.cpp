// Programs that end while objects, views and weak references live:
//   ends WHEN MODULE_FOLDER    Python is finalized from main, static, atexit or never
// The module's descriptions must outlive all of them; a sanitizer watches.

#include <Python.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string when;

void End(const char *now)
{
    if (when != now)
        return;
    // Weak references are told, views and objects go, the types are asked once more.
    const int failed =
        PyRun_SimpleString("late = _Orvane.SHBuilder()\n"
                           "assert repr(type(late)) == \"<type '_Orvane.SHBuilder'>\"\n"
                           "assert use(late) == before\n");
    Py_Finalize();
    std::printf("%s: %s\n", now, failed ? "failed" : "finalized");
    std::fflush(stdout);
}

struct StaticEnd {
    ~StaticEnd() { End("static"); }
} staticEnd;

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    when = argv[1];
    std::atexit([] { End("atexit"); });
    Py_NoSiteFlag = 1;
    Py_Initialize();
    const std::string script = "import sys; sys.path.insert(0, '" + std::string(argv[2]) +
                               "')\n"
                               "import weakref, _Orvane\n"
                               "builder, sh = _Orvane.SHBuilder(), _Orvane.SphericalHarmonic()\n"
                               "builder.GenerateLookUpTables(16); sh.SetNumBands(3)\n"
                               "builder.SetImageBuffer(4, 4)\n"
                               "views = [sh.GetAsBuffer(), builder.GetImageBuffer()]\n"
                               "told = []\n"
                               "references = [weakref.ref(sh, told.append)]\n"
                               "circle = [builder, sh, views]; circle.append(circle)\n"
                               "def use(b):\n"
                               "    b.GenerateLookUpTables(16)\n"
                               "    b.GenerateSphericalSamples(1, 4)\n"
                               "    b.GeneratePDFSamples(1, 4, 9)\n"
                               "    made = b.CreateGaussSH(30, 0.5, 1.0, 2.0)\n"
                               "    made = b.RotateSH(made, ((0., 1., 0., 0.), (1., 0., 0., 0.),\n"
                               "                             (0., 0., 1., 0.), (0.,) * 4))\n"
                               "    b.SetImageBuffer(8, 4)\n"
                               "    b.RenderSHToImageBuffer(made, 9.0, 99, 1, 0)\n"
                               "    return [str(b.RotateZ(made, 1.0).GetAsBuffer()),\n"
                               "            str(b.GetImageBuffer()), b.SHBasisFunc(7, 1.0, 1.0)]\n"
                               "before = use(_Orvane.SHBuilder())\n";
    if (PyRun_SimpleString(script.c_str()) != 0)
        return 1;
    End("main");
    return 0;
}
