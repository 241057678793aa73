// Classes of an application that happen to be called like the module's. Preloaded, they come before
// the module's wherever the loader looks names up.

#include <cstdio>
#include <cstdlib>

namespace {

[[noreturn]] void Intrude(const char *what)
{
    std::fprintf(stderr, "the application's %s ran inside the module\n", what);
    std::_Exit(1);
}

} // namespace

// [[gnu::used]]: emitted though nothing here calls them.

class SphericalHarmonic {
public:
    [[gnu::used]] void Clean() { Intrude("SphericalHarmonic::Clean"); }
    [[gnu::used]] void SetNumBands(int) { Intrude("SphericalHarmonic::SetNumBands"); }
    [[gnu::used]] void ResizeToBands(int) { Intrude("SphericalHarmonic::ResizeToBands"); }
    [[gnu::used]] static void *StaticClassDescriptor() { Intrude("SphericalHarmonic"); }
};

class SHBuilder {
public:
    [[gnu::used]] SHBuilder() { Intrude("SHBuilder::SHBuilder"); }
    [[gnu::used]] void GenerateLookUpTables(int) { Intrude("SHBuilder::GenerateLookUpTables"); }
    [[gnu::used]] static void *StaticClassDescriptor() { Intrude("SHBuilder"); }
};

namespace orvane {
[[gnu::used]] inline void *BestKernels()
{
    Intrude("orvane::BestKernels");
}
} // namespace orvane
