// Programs that end while objects, views and weak references live:
//   ends WHEN    Python is finalized from main, static, atexit or never
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
        PyRun_SimpleString("late = type(builder)()\n"
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
    if (argc != 2)
        return 2;
    when = argv[1];
    std::atexit([] { End("atexit"); });
    Py_NoSiteFlag = 1;
    Py_Initialize();
    if (PyRun_SimpleString("from use import *") != 0)
        return 1;
    End("main");
    return 0;
}
