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

class SphericalHarmonic {
public:
    void Clean();
    void SetNumBands(int);
    void ResizeToBands(int);
    static void *StaticClassDescriptor();
};
void SphericalHarmonic::Clean()
{
    Intrude("SphericalHarmonic::Clean");
}
void SphericalHarmonic::SetNumBands(int)
{
    Intrude("SphericalHarmonic::SetNumBands");
}
void SphericalHarmonic::ResizeToBands(int)
{
    Intrude("SphericalHarmonic::ResizeToBands");
}
void *SphericalHarmonic::StaticClassDescriptor()
{
    Intrude("SphericalHarmonic::StaticClassDescriptor");
}

class SHBuilder {
public:
    SHBuilder();
    void GenerateLookUpTables(int);
    static void *StaticClassDescriptor();
};
SHBuilder::SHBuilder()
{
    Intrude("SHBuilder::SHBuilder");
}
void SHBuilder::GenerateLookUpTables(int)
{
    Intrude("SHBuilder::GenerateLookUpTables");
}
void *SHBuilder::StaticClassDescriptor()
{
    Intrude("SHBuilder::StaticClassDescriptor");
}

namespace orvane {
void *BestKernels();
void *BestKernels()
{
    Intrude("orvane::BestKernels");
}
} // namespace orvane
