// Runs recipes with the literal model.

#include "golden/Recipes.h"
#include "model/LiteralImportance.h"
#include "model/LiteralProjection.h"
#include "model/LiteralRender.h"
#include "model/LiteralRotation.h"
#include "platform/RuntimeRandom.h"

#include <cmath>
#include <map>
#include <optional>

namespace golden {

namespace {

using Set = std::vector<float>;

int Bands(const Set &set)
{
    return static_cast<int>(std::lround(std::sqrt(set.size())));
}

struct Run {
    Set &NamedSet(const Arguments &a, int index) { return sets.at(a.Name(index)); }

    std::optional<literal::Tables> tables;
    std::vector<literal::Sample> samples;
    literal::PdfSamples pdf;
    std::map<std::string, Set> sets;
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> image;
    Values results;
};

/// Element by element over the first coefficients, as many as the source has.
template <typename Combine> void CombineLower(Set &target, const Set &source, Combine combine)
{
    for (std::size_t i = 0; i < source.size(); ++i)
        target[i] = combine(target[i], source[i]);
}

using Method = void (*)(Run &, const Arguments &);
using Creation = Set (*)(Run &, const Arguments &);

const std::map<std::string, Creation> creations = {
    {"CreateSHFromBuffer",
     [](Run &, const Arguments &a) { return DrawCoefficients(a.Int(0), a.Int(1)); }},
    {"CopySH", [](Run &run, const Arguments &a) { return run.NamedSet(a, 0); }},
    {"RotateZ",
     [](Run &run, const Arguments &a) {
         const Set &set = run.NamedSet(a, 0);
         return literal::RotateZ(set, Bands(set), a.Float(1));
     }},
    {"RotateSH",
     [](Run &run, const Arguments &a) {
         double matrix[3][3];
         for (int i = 0; i < 9; ++i)
             matrix[i / 3][i % 3] = a.Double(i + 1);
         return literal::RotateSH(run.NamedSet(a, 0), matrix);
     }},
    {"CreateConstantSH",
     [](Run &run, const Arguments &a) {
         Set set(a.Int(1) * a.Int(1));
         set[0] = static_cast<float>(run.tables->Basis(0, 0.0, 0.0)) * a.Float(0);
         return set;
     }},
    {"CreateLatitudeSH",
     [](Run &run, const Arguments &a) {
         return literal::Project(*run.tables, run.samples, a.Int(0),
                                 literal::Latitude(*run.tables));
     }},
    {"CreateLongtitudeSH",
     [](Run &run, const Arguments &a) {
         return literal::Project(*run.tables, run.samples, a.Int(0),
                                 literal::Longitude(*run.tables));
     }},
    {"CreateGaussSH",
     [](Run &run, const Arguments &a) {
         return literal::Project(*run.tables, run.samples, a.Int(0),
                                 literal::Gauss(a.Float(1), a.Float(2), a.Float(3)));
     }},
    {"CreateImportanceSampledGaussSH",
     [](Run &run, const Arguments &a) {
         return literal::ImportanceSampledGauss(*run.tables, run.pdf, a.Float(0), a.Float(1),
                                                a.Float(2));
     }},
    {"CreateSHFromImageBuffer",
     [](Run &run, const Arguments &a) {
         return literal::ProjectImage(*run.tables, run.samples, a.Int(0), a.Int(1),
                                      a.Int(2) * a.Int(2),
                                      DrawPixels(a.Int(3), a.Int(0), a.Int(1)).data());
     }},
};

const std::map<std::string, Method> methods = {
    {"GenerateLookUpTables", [](Run &run, const Arguments &a) { run.tables.emplace(a.Int(0)); }},
    {"GenerateSphericalSamples",
     [](Run &run, const Arguments &a) {
         platform::srand(a.Int(0));
         run.samples = literal::StratifiedSamples(a.Int(1));
     }},
    {"GeneratePDFSamples",
     [](Run &run, const Arguments &a) {
         run.pdf = literal::GeneratePdfSamples(a.Int(0), a.Int(1), a.Int(2));
     }},
    {"GetValueAt",
     [](Run &run, const Arguments &a) {
         const Set &set = run.NamedSet(a, 0);
         run.results.push_back(
             run.tables->Evaluate(set.data(), Bands(set), a.Double(1), a.Double(2)));
     }},
    {"SHBasisFunc",
     [](Run &run, const Arguments &a) {
         run.results.push_back(run.tables->Basis(a.Int(0), a.Double(1), a.Double(2)));
     }},
    {"GetGaussDensity",
     [](Run &run, const Arguments &a) {
         run.results.push_back(literal::GaussDensity(a.Double(0), a.Double(1), a.Double(2)));
     }},
    {"LongtitudeProjectionFunc",
     [](Run &run, const Arguments &a) {
         run.results.push_back(literal::Longitude(*run.tables)(a.Float(0), a.Float(1)));
     }},
    {"GaussProjectionFunc",
     [](Run &run, const Arguments &a) {
         run.results.push_back(literal::Gauss(a.Float(2), 0.0, 0.0)(a.Float(0), a.Float(1)));
     }},
    {"AddSH",
     [](Run &run, const Arguments &a) {
         CombineLower(run.NamedSet(a, 0), run.NamedSet(a, 1),
                      [](float t, float s) { return s + t; });
     }},
    {"AddScaledSH",
     [](Run &run, const Arguments &a) {
         CombineLower(run.NamedSet(a, 0), run.NamedSet(a, 1),
                      [k = a.Float(2)](float t, float s) { return k * s + t; });
     }},
    {"SubtractSH",
     [](Run &run, const Arguments &a) {
         CombineLower(run.NamedSet(a, 0), run.NamedSet(a, 1),
                      [](float t, float s) { return t - s; });
     }},
    {"SubtractScaledSH",
     [](Run &run, const Arguments &a) {
         CombineLower(run.NamedSet(a, 0), run.NamedSet(a, 1),
                      [k = a.Float(2)](float t, float s) { return t - k * s; });
     }},
    {"ScaleSH",
     [](Run &run, const Arguments &a) {
         for (float &coefficient : run.NamedSet(a, 0))
             coefficient = a.Float(1) * coefficient;
     }},
    {"OffsetSH",
     [](Run &run, const Arguments &a) {
         float &first = run.NamedSet(a, 0)[0];
         first = static_cast<float>(run.tables->Basis(0, 0.0, 0.0)) * a.Float(1) + first;
     }},
    {"LerpSH",
     [](Run &run, const Arguments &a) {
         Set blend = run.NamedSet(a, 1);
         CombineLower(blend, run.NamedSet(a, 2), [alpha = a.Double(3)](double from, double to) {
             return static_cast<float>(to * alpha + from * (1.0 - alpha));
         });
         run.NamedSet(a, 0) = blend;
     }},
    {"CopyScaleAndSubtractSH",
     [](Run &run, const Arguments &a) {
         Set difference = run.NamedSet(a, 1);
         CombineLower(difference, run.NamedSet(a, 3),
                      [scale = double{a.Float(2)}](double copied, double subtracted) {
                          return static_cast<float>(copied * scale - subtracted);
                      });
         run.NamedSet(a, 0) = difference;
     }},
    {"SetImageBuffer",
     [](Run &run, const Arguments &a) {
         run.width = a.Int(0);
         run.height = a.Int(1);
         run.image.assign(run.width * run.height, 0);
     }},
    {"RenderSHToImageBuffer",
     [](Run &run, const Arguments &a) {
         const Set &set = run.NamedSet(a, 0);
         literal::Render(*run.tables, set.data(), Bands(set), a.Float(1), a.Int(2), a.Int(3),
                         a.Int(4), run.width, run.height, run.image.data());
     }},
};

} // namespace

Values RunLiteral(const Vector &vector)
{
    Run run;
    for (const Call &call : vector.calls) {
        const Arguments arguments(call);
        if (call.newSet.empty())
            methods.at(call.method)(run, arguments);
        else
            run.sets[call.newSet] = creations.at(call.method)(run, arguments);
    }
    if (vector.IsImage())
        return {run.image.begin(), run.image.end()};
    if (vector.IsResults())
        return run.results;
    const Set &set = run.sets.at(vector.target);
    return {set.begin(), set.end()};
}

} // namespace golden
