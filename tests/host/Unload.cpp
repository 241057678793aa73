// Loads, uses and unloads module and host twice in one process:
//   unload PLUGIN MODULE_FOLDER HOST_LIBRARY

#include <dlfcn.h>

#include <cstdio>
#include <string>

namespace {

bool IsLoaded(const std::string &library)
{
    void *const handle = dlopen(library.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle;
}

int Fail(const std::string &text)
{
    std::fprintf(stderr, "%s\n", text.c_str());
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4)
        return 2;
    const std::string module = std::string(argv[2]) + "/_Orvane.so";
    const std::string script = "import sys; sys.path.insert(0, '" + std::string(argv[2]) +
                               "')\n"
                               "import _Orvane\n"
                               "builder = _Orvane.SHBuilder()\n"
                               "builder.GenerateLookUpTables(64)\n"
                               "builder.GenerateSphericalSamples(1, 8)\n"
                               "sh = builder.CreateGaussSH(4, 0.5, 1.0, 2.0)\n"
                               "view = builder.RotateZ(sh, 1.0).GetAsBuffer()\n"
                               "assert len(view) == 64\n";
    for (int round = 1; round <= 2; ++round) {
        // Python's symbols are the module's to find.
        void *const plugin = dlopen(argv[1], RTLD_NOW | RTLD_GLOBAL);
        if (!plugin)
            return Fail(dlerror());
        using Function = int (*)(const char *);
        const auto use = reinterpret_cast<Function>(dlsym(plugin, "UseModule"));
        if (!use || use(script.c_str()) != 0)
            return Fail("the module cannot be used");
        // Python never closes what it has imported.
        void *const opened = dlopen(module.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        if (!opened)
            return Fail("the module was not loaded");
        dlclose(opened);
        dlclose(opened);
        if (IsLoaded(module))
            return Fail("the module is still loaded");
        dlclose(plugin);
        if (IsLoaded(argv[3]))
            return Fail("the host is still loaded");
        std::printf("round %d: used and unloaded\n", round);
    }
    return 0;
}
