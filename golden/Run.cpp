// Runs recipes with the library.

#include "golden/Vectors.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Rotation.h"
#include "platform/RuntimeRandom.h"
#include "tests/native/MakeObject.h"

#include <algorithm>
#include <functional>
#include <map>
#include <type_traits>
#include <utility>

namespace golden {

namespace {

/// What the calls of one recipe work on.
struct State {
    std::shared_ptr<SHBuilder> builder = MakeObject<SHBuilder>();
    std::map<std::string, std::shared_ptr<SphericalHarmonic>> sets;
    Values results;
};

/// Calls with the words that stand for the parameters: a new set first, where there is one.
using Method = std::function<void(State &, const Words &)>;

/// A number is kept by value, a set by the pointer or reference that the method takes.
template <typename Parameter>
using Kept = std::conditional_t<std::is_arithmetic_v<std::remove_cvref_t<Parameter>>,
                                std::remove_cvref_t<Parameter>, Parameter>;

template <typename Parameter> Kept<Parameter> Convert(State &state, const std::string &word)
{
    if constexpr (std::is_pointer_v<Parameter>)
        return state.sets.at(word).get();
    else if constexpr (std::is_arithmetic_v<Kept<Parameter>>)
        return static_cast<Kept<Parameter>>(std::stod(word));
    else
        return *state.sets.at(word);
}

template <typename Result, typename... Parameters, typename Callee, std::size_t... index>
Result Call(Callee callee, State &state, const Words &words, std::index_sequence<index...>)
{
    return std::invoke(callee, *state.builder, Convert<Parameters>(state, words.at(index))...);
}

template <typename Result, typename... Parameters, typename Callee> Method BindTo(Callee callee)
{
    return [callee](State &state, const Words &words) {
        constexpr std::index_sequence_for<Parameters...> indices;
        if constexpr (std::is_same_v<Result, double>)
            state.results.push_back(Call<Result, Parameters...>(callee, state, words, indices));
        else
            Call<Result, Parameters...>(callee, state, words, indices);
    };
}

template <typename Result, typename... Parameters>
Method Bind(Result (SHBuilder::*method)(Parameters...))
{
    return BindTo<Result, Parameters...>(method);
}

template <typename Result, typename... Parameters>
Method Bind(Result (SHBuilder::*method)(Parameters...) const)
{
    return BindTo<Result, Parameters...>(method);
}

template <typename... Parameters> Method Bind(void (*function)(SHBuilder &, Parameters...))
{
    return BindTo<void, Parameters...>(function);
}

void CreateFromBuffer(SHBuilder &, SphericalHarmonic &set, int seed, int numBands)
{
    platform::RuntimeRandom random{static_cast<std::uint32_t>(seed)};
    set.SetNumBands(numBands);
    for (float &coefficient : set.coefficients)
        coefficient = static_cast<float>(random.Next() - 16384) / 16384.0f;
}

void CreateFromImage(SHBuilder &builder, SphericalHarmonic &set, int width, int height, int band,
                     int seed)
{
    platform::RuntimeRandom random{static_cast<std::uint32_t>(seed)};
    std::vector<std::uint8_t> pixels(width * height);
    for (std::uint8_t &pixel : pixels)
        pixel = static_cast<std::uint8_t>(random.Next() & 255);
    builder.CreateSHFromImageBuffer(set, width, height, band, pixels.data());
}

void Copy(SHBuilder &, SphericalHarmonic &copy, const SphericalHarmonic &set)
{
    orvane::CopySH(set, copy);
}

void RotateAboutPole(SHBuilder &, SphericalHarmonic &out, const SphericalHarmonic &in, double angle)
{
    orvane::RotateZ(in, angle, out);
}

void RotateByMatrix(SHBuilder &, SphericalHarmonic &out, const SphericalHarmonic &in, double xx,
                    double xy, double xz, double yx, double yy, double yz, double zx, double zy,
                    double zz)
{
    const double matrix[3][3] = {{xx, xy, xz}, {yx, yy, yz}, {zx, zy, zz}};
    orvane::RotateSH(in, matrix, out);
}

const std::map<std::string, Method> methods = {
    {"GenerateLookUpTables", Bind(&SHBuilder::GenerateLookUpTables)},
    {"GenerateSphericalSamples", Bind(&SHBuilder::GenerateSphericalSamples)},
    {"GeneratePDFSamples", Bind(&SHBuilder::GeneratePDFSamples)},
    {"GetValueAt", Bind(&SHBuilder::GetValueAt)},
    {"SHBasisFunc", Bind(&SHBuilder::SHBasisFunc)},
    {"GetGaussDensity", Bind(&SHBuilder::GetGaussDensity)},
    {"LongtitudeProjectionFunc", Bind(&SHBuilder::LongtitudeProjectionFunc)},
    {"GaussProjectionFunc", Bind(&SHBuilder::GaussProjectionFunc)},
    {"AddSH", Bind(&SHBuilder::AddSH)},
    {"AddScaledSH", Bind(&SHBuilder::AddScaledSH)},
    {"SubtractSH", Bind(&SHBuilder::SubtractSH)},
    {"SubtractScaledSH", Bind(&SHBuilder::SubtractScaledSH)},
    {"ScaleSH", Bind(&SHBuilder::ScaleSH)},
    {"OffsetSH", Bind(&SHBuilder::OffsetSH)},
    {"LerpSH", Bind(&SHBuilder::LerpSH)},
    {"CopyScaleAndSubtractSH", Bind(&SHBuilder::CopyScaleAndSubtractSH)},
    {"CopySH", Bind(&Copy)},
    {"RotateZ", Bind(&RotateAboutPole)},
    {"RotateSH", Bind(&RotateByMatrix)},
    {"CreateConstantSH", Bind(&SHBuilder::CreateConstantSH)},
    {"CreateLatitudeSH", Bind(&SHBuilder::CreateLatitudeSH)},
    {"CreateLongtitudeSH", Bind(&SHBuilder::CreateLongtitudeSH)},
    {"CreateGaussSH", Bind(&SHBuilder::CreateGaussSH)},
    {"CreateImportanceSampledGaussSH", Bind(&SHBuilder::CreateImportanceSampledGaussSH)},
    {"CreateSHFromBuffer", Bind(&CreateFromBuffer)},
    {"CreateSHFromImageBuffer", Bind(&CreateFromImage)},
    {"SetImageBuffer", Bind(&SHBuilder::SetImageBuffer)},
    {"RenderSHToImageBuffer", Bind(&SHBuilder::RenderSHToImageBuffer)},
};

} // namespace

Values Run(const Vector &vector)
{
    State state;
    for (Words words : vector.calls) {
        if (words.size() > 2 && words[1] == "=") {
            state.sets[words[0]] = MakeObject<SphericalHarmonic>();
            words.erase(words.begin() + 1);
            std::swap(words[0], words[1]); // the new set is the first parameter
        }
        methods.at(words[0])(state, {words.begin() + 1, words.end()});
    }
    if (vector.target == "results")
        return state.results;
    if (vector.target == "image") {
        const std::uint8_t *pixels = state.builder->imageBuffer.get();
        return {pixels, pixels + state.builder->imageWidth * state.builder->imageHeight};
    }
    const auto &coefficients = state.sets.at(vector.target)->coefficients;
    return {coefficients.begin(), coefficients.end()};
}

} // namespace golden
