// Runs recipes with the library.

#include "golden/Recipes.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Rotation.h"
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
    Values results;
};

void Fill(SphericalHarmonic &set, int numBands, const float *coefficients)
{
    set.SetNumBands(numBands);
    std::copy_n(coefficients, set.coefficients.size(), set.coefficients.begin());
}

using Method = void (*)(Run &, const Arguments &);

const std::map<std::string, Method> methods = {
    {"GenerateLookUpTables",
     [](Run &run, const Arguments &a) { run.builder->GenerateLookUpTables(a.Int(0)); }},
    {"GenerateSphericalSamples",
     [](Run &run, const Arguments &a) {
         run.builder->GenerateSphericalSamples(a.Int(0), a.Int(1));
     }},
    {"GeneratePDFSamples",
     [](Run &run, const Arguments &a) {
         run.builder->GeneratePDFSamples(a.Int(0), a.Int(1), a.Int(2));
     }},
    {"CreateSHFromBuffer",
     [](Run &run, const Arguments &a) {
         Fill(run.New(a), a.Int(1), DrawCoefficients(a.Int(0), a.Int(1)).data());
     }},
    {"CopySH",
     [](Run &run, const Arguments &a) {
         const SphericalHarmonic &set = *run.Set(a, 0);
         Fill(run.New(a), set.numBands, set.coefficients.data());
     }},
    {"RotateZ",
     [](Run &run, const Arguments &a) {
         const SphericalHarmonic &in = *run.Set(a, 0);
         orvane::RotateZ(in, a.Float(1), run.New(a));
     }},
    {"RotateSH",
     [](Run &run, const Arguments &a) {
         const SphericalHarmonic &in = *run.Set(a, 0);
         double matrix[3][3];
         for (int i = 0; i < 9; ++i)
             matrix[i / 3][i % 3] = a.Double(i + 1);
         orvane::RotateSH(in, matrix, run.New(a));
     }},
    {"GetValueAt",
     [](Run &run, const Arguments &a) {
         run.results.push_back(run.builder->GetValueAt(*run.Set(a, 0), a.Double(1), a.Double(2)));
     }},
    {"SHBasisFunc",
     [](Run &run, const Arguments &a) {
         run.results.push_back(run.builder->SHBasisFunc(a.Int(0), a.Double(1), a.Double(2)));
     }},
    {"GetGaussDensity",
     [](Run &run, const Arguments &a) {
         run.results.push_back(run.builder->GetGaussDensity(a.Double(0), a.Double(1), a.Double(2)));
     }},
    {"LongtitudeProjectionFunc",
     [](Run &run, const Arguments &a) {
         run.results.push_back(run.builder->LongtitudeProjectionFunc(a.Float(0), a.Float(1)));
     }},
    {"GaussProjectionFunc",
     [](Run &run, const Arguments &a) {
         run.results.push_back(
             run.builder->GaussProjectionFunc(a.Float(0), a.Float(1), a.Float(2)));
     }},
    {"AddSH",
     [](Run &run, const Arguments &a) { run.builder->AddSH(run.Set(a, 0), run.Set(a, 1)); }},
    {"AddScaledSH",
     [](Run &run, const Arguments &a) {
         run.builder->AddScaledSH(run.Set(a, 0), run.Set(a, 1), a.Float(2));
     }},
    {"SubtractSH",
     [](Run &run, const Arguments &a) { run.builder->SubtractSH(run.Set(a, 0), run.Set(a, 1)); }},
    {"SubtractScaledSH",
     [](Run &run, const Arguments &a) {
         run.builder->SubtractScaledSH(run.Set(a, 0), run.Set(a, 1), a.Float(2));
     }},
    {"ScaleSH",
     [](Run &run, const Arguments &a) { run.builder->ScaleSH(run.Set(a, 0), a.Float(1)); }},
    {"OffsetSH",
     [](Run &run, const Arguments &a) { run.builder->OffsetSH(run.Set(a, 0), a.Float(1)); }},
    {"LerpSH",
     [](Run &run, const Arguments &a) {
         run.builder->LerpSH(run.Set(a, 0), run.Set(a, 1), run.Set(a, 2), a.Double(3));
     }},
    {"CopyScaleAndSubtractSH",
     [](Run &run, const Arguments &a) {
         run.builder->CopyScaleAndSubtractSH(run.Set(a, 0), run.Set(a, 1), a.Float(2),
                                             run.Set(a, 3));
     }},
    {"CreateConstantSH",
     [](Run &run, const Arguments &a) {
         run.builder->CreateConstantSH(run.New(a), a.Float(0), a.Int(1));
     }},
    {"CreateLatitudeSH",
     [](Run &run, const Arguments &a) { run.builder->CreateLatitudeSH(run.New(a), a.Int(0)); }},
    {"CreateLongtitudeSH",
     [](Run &run, const Arguments &a) { run.builder->CreateLongtitudeSH(run.New(a), a.Int(0)); }},
    {"CreateGaussSH",
     [](Run &run, const Arguments &a) {
         run.builder->CreateGaussSH(run.New(a), a.Int(0), a.Float(1), a.Float(2), a.Float(3));
     }},
    {"CreateImportanceSampledGaussSH",
     [](Run &run, const Arguments &a) {
         run.builder->CreateImportanceSampledGaussSH(run.New(a), a.Float(0), a.Float(1),
                                                     a.Float(2));
     }},
    {"CreateSHFromImageBuffer",
     [](Run &run, const Arguments &a) {
         run.builder->CreateSHFromImageBuffer(run.New(a), a.Int(0), a.Int(1), a.Int(2),
                                              DrawPixels(a.Int(3), a.Int(0), a.Int(1)).data());
     }},
    {"SetImageBuffer",
     [](Run &run, const Arguments &a) { run.builder->SetImageBuffer(a.Int(0), a.Int(1)); }},
    {"RenderSHToImageBuffer",
     [](Run &run, const Arguments &a) {
         run.builder->RenderSHToImageBuffer(*run.Set(a, 0), a.Float(1), a.Int(2), a.Int(3),
                                            a.Int(4));
     }},
};

} // namespace

Values RunShipped(const Vector &vector)
{
    Run run;
    for (const Call &call : vector.calls)
        methods.at(call.method)(run, Arguments(call));
    if (vector.IsImage()) {
        const std::uint8_t *pixels = run.builder->imageBuffer.get();
        return {pixels, pixels + run.builder->imageWidth * run.builder->imageHeight};
    }
    if (vector.IsResults())
        return run.results;
    const auto &coefficients = run.sets.at(vector.target)->coefficients;
    return {coefficients.begin(), coefficients.end()};
}

} // namespace golden
