// Loads, uses and unloads module and host twice in one process:
//   unload PLUGIN MODULE HOST_LIBRARY

#include <dlfcn.h>

#include <cstdio>

namespace {

bool IsLoaded(const char *library)
{
    void *const handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle;
}

int Fail(const char *text)
{
    std::fprintf(stderr, "%s\n", text);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4)
        return 2;
    for (int round = 1; round <= 2; ++round) {
        // Python's symbols are the module's to find.
        void *const plugin = dlopen(argv[1], RTLD_NOW | RTLD_GLOBAL);
        if (!plugin)
            return Fail(dlerror());
        using Function = int (*)();
        const auto use = reinterpret_cast<Function>(dlsym(plugin, "UseModule"));
        if (!use || use() != 0)
            return Fail("the module cannot be used");
        // Python never closes what it has imported.
        void *const opened = dlopen(argv[2], RTLD_LAZY | RTLD_NOLOAD);
        if (!opened)
            return Fail("the module was not loaded");
        dlclose(opened);
        dlclose(opened);
        if (IsLoaded(argv[2]))
            return Fail("the module is still loaded");
        dlclose(plugin);
        if (IsLoaded(argv[3]))
            return Fail("the host is still loaded");
        std::printf("round %d: used and unloaded\n", round);
    }
    return 0;
}
