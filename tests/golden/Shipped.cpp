// Runs recipes with the library.

#include "orvane/builder/SHBuilder.h"
#include "tests/golden/Recipes.h"
#include "tests/native/MakeObject.h"

#include <algorithm>
#include <map>

namespace golden {

namespace {

struct Run {
    SphericalHarmonic &New(const Arguments &a)
    {
        return *(sets[a.NewSet()] = MakeObject<SphericalHarmonic>());
    }
    SphericalHarmonic *Set(const Arguments &a, int index) { return sets.at(a.Name(index)).get(); }

    const std::shared_ptr<SHBuilder> builder = MakeObject<SHBuilder>();
    std::map<std::string, std::shared_ptr<SphericalHarmonic>> sets;
};

void Fill(SphericalHarmonic &set, int numBands, const float *coefficients)
{
    set.SetNumBands(numBands);
    std::copy_n(coefficients, set.coefficients.size(), set.coefficients.begin());
}

using Method = void (*)(Run &, SHBuilder &, const Arguments &);

const std::map<std::string, Method> methods = {
    {"GenerateLookUpTables",
     [](Run &, SHBuilder &builder, const Arguments &a) { builder.GenerateLookUpTables(a.Int(0)); }},
    {"GenerateSphericalSamples",
     [](Run &, SHBuilder &builder, const Arguments &a) {
         builder.GenerateSphericalSamples(a.Int(0), a.Int(1));
     }},
    {"GeneratePDFSamples",
     [](Run &, SHBuilder &builder, const Arguments &a) {
         builder.GeneratePDFSamples(a.Int(0), a.Int(1), a.Int(2));
     }},
    {"CreateSHFromBuffer",
     [](Run &run, SHBuilder &, const Arguments &a) {
         Fill(run.New(a), a.Int(1), DrawCoefficients(a.Int(0), a.Int(1)).data());
     }},
    {"CopySH",
     [](Run &run, SHBuilder &, const Arguments &a) {
         const SphericalHarmonic &set = *run.Set(a, 0);
         Fill(run.New(a), set.numBands, set.coefficients.data());
     }},
    {"AddSH", [](Run &run, SHBuilder &builder,
                 const Arguments &a) { builder.AddSH(run.Set(a, 0), run.Set(a, 1)); }},
    {"AddScaledSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.AddScaledSH(run.Set(a, 0), run.Set(a, 1), a.Float(2));
     }},
    {"SubtractSH", [](Run &run, SHBuilder &builder,
                      const Arguments &a) { builder.SubtractSH(run.Set(a, 0), run.Set(a, 1)); }},
    {"SubtractScaledSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.SubtractScaledSH(run.Set(a, 0), run.Set(a, 1), a.Float(2));
     }},
    {"ScaleSH", [](Run &run, SHBuilder &builder,
                   const Arguments &a) { builder.ScaleSH(run.Set(a, 0), a.Float(1)); }},
    {"OffsetSH", [](Run &run, SHBuilder &builder,
                    const Arguments &a) { builder.OffsetSH(run.Set(a, 0), a.Float(1)); }},
    {"LerpSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.LerpSH(run.Set(a, 0), run.Set(a, 1), run.Set(a, 2), a.Double(3));
     }},
    {"CopyScaleAndSubtractSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.CopyScaleAndSubtractSH(run.Set(a, 0), run.Set(a, 1), a.Float(2), run.Set(a, 3));
     }},
    {"CreateConstantSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.CreateConstantSH(run.New(a), a.Float(0), a.Int(1));
     }},
    {"CreateLatitudeSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.CreateLatitudeSH(run.New(a), a.Int(0));
     }},
    {"CreateLongtitudeSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.CreateLongtitudeSH(run.New(a), a.Int(0));
     }},
    {"CreateGaussSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.CreateGaussSH(run.New(a), a.Int(0), a.Float(1), a.Float(2), a.Float(3));
     }},
    {"CreateImportanceSampledGaussSH",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.CreateImportanceSampledGaussSH(run.New(a), a.Float(0), a.Float(1), a.Float(2));
     }},
    {"CreateSHFromImageBuffer",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.CreateSHFromImageBuffer(run.New(a), a.Int(0), a.Int(1), a.Int(2),
                                         DrawPixels(a.Int(3), a.Int(0), a.Int(1)).data());
     }},
    {"SetImageBuffer", [](Run &, SHBuilder &builder,
                          const Arguments &a) { builder.SetImageBuffer(a.Int(0), a.Int(1)); }},
    {"RenderSHToImageBuffer",
     [](Run &run, SHBuilder &builder, const Arguments &a) {
         builder.RenderSHToImageBuffer(*run.Set(a, 0), a.Float(1), a.Int(2), a.Int(3), a.Int(4));
     }},
};

} // namespace

Values RunShipped(const Vector &vector)
{
    Run run;
    for (const Call &call : vector.calls)
        methods.at(call.method)(run, *run.builder, Arguments(call));
    if (vector.IsImage()) {
        const std::uint8_t *pixels = run.builder->imageBuffer.get();
        return {pixels, pixels + run.builder->imageWidth * run.builder->imageHeight};
    }
    const auto &coefficients = run.sets.at(vector.target)->coefficients;
    return {coefficients.begin(), coefficients.end()};
}

} // namespace golden
