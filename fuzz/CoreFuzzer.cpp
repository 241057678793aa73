// Fuzzes the mathematics: the bytes choose a job, its settings and an instruction set; the result
// is compared with the literal model bit for bit, so that a finding is a wrong bit as well as a
// report of a sanitizer.

#include "model/LiteralArithmetic.h"
#include "model/LiteralImportance.h"
#include "model/LiteralModel.h"
#include "model/LiteralProjection.h"
#include "model/LiteralRender.h"
#include "model/LiteralRotation.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/kernels/InstructionSet.h"
#include "orvane/sh/Rotation.h"
#include "platform/RuntimeRandom.h"
#include "tests/native/MakeObject.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

constexpr int maxSteps = 24;

/// Tables of one size, both ways; made once, for they are the costliest part.
struct Tables {
    explicit Tables(int steps) : literal(steps), builder(MakeObject<SHBuilder>())
    {
        builder->GenerateLookUpTables(steps);
    }

    literal::Tables literal;
    std::shared_ptr<SHBuilder> builder;
};

Tables &TablesOf(int steps)
{
    static std::unique_ptr<Tables> tables[maxSteps + 1];
    if (!tables[steps])
        tables[steps] = std::make_unique<Tables>(steps);
    return *tables[steps];
}

/// One job on one set of tables.
class Job {
public:
    explicit Job(FuzzedDataProvider &bytes)
        : bytes(bytes), tables(TablesOf(bytes.ConsumeIntegralInRange(1, maxSteps))),
          builder(*tables.builder)
    {
        UseInstructionSet();
    }

    void Run()
    {
        switch (bytes.ConsumeIntegralInRange(0, 8)) {
        case 0:
            return Evaluate();
        case 1:
            return Basis();
        case 2:
            return Project();
        case 3:
            return ProjectImage();
        case 4:
            return Render();
        case 5:
            return Importance();
        case 6:
            return Arithmetic();
        case 7:
            return Rotate();
        default:
            return Refusals();
        }
    }

private:
    void UseInstructionSet()
    {
        const int set = bytes.ConsumeIntegralInRange(0, 2);
        const auto instructionSet = static_cast<orvane::InstructionSet>(set);
        if (orvane::IsSupported(instructionSet))
            builder.UseInstructionSet(instructionSet);
    }

    [[noreturn]] void Differ(const char *job)
    {
        std::fprintf(stderr, "finding: %s differs from the literal model\n", job);
        std::abort();
    }

    /// The same bits, or NaN both: an operation on two NaNs may hand on either.
    template <typename T>
    void Expect(const char *job, const T *is, const T *expected, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
            if (std::memcmp(&is[i], &expected[i], sizeof(T)) != 0 &&
                (is[i] == is[i] || expected[i] == expected[i]))
                Differ(job);
    }

    void ExpectSet(const char *job, const SphericalHarmonic &sh, const std::vector<float> &expected)
    {
        if (sh.coefficients.size() != expected.size())
            Differ(job);
        Expect(job, sh.coefficients.data(), expected.data(), expected.size());
    }

    /// Once in n times; never where the input has ended.
    bool Rarely(int n) { return bytes.ConsumeIntegralInRange(1, n) == n; }

    double Number()
    {
        static const double special[] = {0.0,  -0.0, 1e-320, 1e-40,    1e38,      3e38,
                                         1e39, -1.0, 255.0,  HUGE_VAL, -HUGE_VAL, NAN};
        if (Rarely(8))
            return special[bytes.ConsumeIntegralInRange<std::size_t>(0, std::size(special) - 1)];
        return bytes.ConsumeFloatingPointInRange(-10.0, 10.0);
    }

    double Azimuth() { return bytes.ConsumeFloatingPointInRange(-20.0, 20.0); }
    double PolarAngle() { return bytes.ConsumeFloatingPointInRange(0.0, 3.1415927410125732); }
    /// Mostly few, for the literal model takes its time.
    int Bands() { return bytes.ConsumeIntegralInRange(0, Rarely(32) ? 30 : 5); }

    std::shared_ptr<SphericalHarmonic> Set(int bands)
    {
        auto sh = MakeObject<SphericalHarmonic>();
        sh->SetNumBands(bands);
        float value = 0.0f;
        // A few numbers of the input, repeated, fill any set.
        const int different = bytes.ConsumeIntegralInRange(1, 12);
        for (std::size_t i = 0; i < sh->coefficients.size(); ++i) {
            if (i < static_cast<std::size_t>(different))
                value = static_cast<float>(Number());
            sh->coefficients[i] = i < static_cast<std::size_t>(different)
                                      ? value
                                      : sh->coefficients[i - different] * 0.75f;
        }
        return sh;
    }

    std::vector<float> Copy(const SphericalHarmonic &sh)
    {
        return {sh.coefficients.begin(), sh.coefficients.end()};
    }

    std::vector<literal::Sample> Samples()
    {
        const std::uint32_t seed = bytes.ConsumeIntegral<std::uint16_t>();
        const int perAxis = bytes.ConsumeIntegralInRange(0, 5);
        builder.GenerateSphericalSamples(seed, perAxis);
        platform::srand(seed);
        return literal::StratifiedSamples(perAxis);
    }

    void Evaluate()
    {
        const int bands = Bands();
        const auto sh = Set(bands);
        const double phi = Azimuth();
        const double theta = PolarAngle();
        const double is = builder.GetValueAt(*sh, phi, theta);
        const double expected = tables.literal.Evaluate(sh->coefficients.data(), bands, phi, theta);
        Expect("evaluation", &is, &expected, 1);
    }

    void Basis()
    {
        const int index = bytes.ConsumeIntegralInRange(0, 899);
        const double phi = Azimuth();
        const double theta = PolarAngle();
        const double is = builder.SHBasisFunc(index, phi, theta);
        const double expected = tables.literal.Basis(index, phi, theta);
        Expect("basis function", &is, &expected, 1);
    }

    void Project()
    {
        const auto samples = Samples();
        const int bands = Bands();
        auto sh = MakeObject<SphericalHarmonic>();
        literal::Function function;
        switch (bytes.ConsumeIntegralInRange(0, 2)) {
        case 0:
            builder.CreateLatitudeSH(*sh, bands);
            function = literal::Latitude(tables.literal);
            break;
        case 1:
            builder.CreateLongtitudeSH(*sh, bands);
            function = literal::Longitude(tables.literal);
            break;
        default: {
            const auto stdDev = static_cast<float>(Number());
            const auto latitude = static_cast<float>(Azimuth());
            const auto longitude = static_cast<float>(Azimuth());
            builder.CreateGaussSH(*sh, bands, stdDev, latitude, longitude);
            function = literal::Gauss(stdDev, latitude, longitude);
        }
        }
        ExpectSet("projection", *sh, literal::Project(tables.literal, samples, bands, function));
    }

    void ProjectImage()
    {
        const auto samples = Samples();
        const int width = bytes.ConsumeIntegralInRange(1, 9);
        const int height = bytes.ConsumeIntegralInRange(1, 9);
        const int bands = Bands();
        auto pixels = bytes.ConsumeBytes<std::uint8_t>(static_cast<std::size_t>(width * height));
        pixels.resize(static_cast<std::size_t>(width * height), 77);
        auto sh = MakeObject<SphericalHarmonic>();
        builder.CreateSHFromImageBuffer(*sh, width, height, bands, pixels.data());
        ExpectSet("image projection", *sh,
                  literal::ProjectImage(tables.literal, samples, width, height,
                                        static_cast<std::size_t>(bands * bands), pixels.data()));
    }

    /// Some renders, each of which may find what an earlier one has kept.
    void Render()
    {
        for (int renders = bytes.ConsumeIntegralInRange(1, 4); renders > 0; --renders) {
            const int bands = Bands();
            const auto sh = Set(bands);
            const int width = bytes.ConsumeIntegralInRange(1, 80);
            const int height = bytes.ConsumeIntegralInRange(1, 5);
            const int slices = bytes.ConsumeIntegralInRange(1, 3);
            const int slice = bytes.ConsumeIntegralInRange(0, slices * slices - 1);
            const auto scale = static_cast<float>(Number());
            const int offset = bytes.ConsumeIntegralInRange(-300, 300);
            const literal::Tables *model = &tables.literal;
            if (Rarely(4)) {
                model = &TablesOf(bytes.ConsumeIntegralInRange(1, maxSteps)).literal;
                builder.GenerateLookUpTables(model->numSteps);
            }
            UseInstructionSet();
            builder.SetImageBuffer(width, height);
            builder.RenderSHToImageBuffer(*sh, scale, offset, slices, slice);
            std::vector<std::uint8_t> expected(static_cast<std::size_t>(width * height));
            literal::Render(*model, sh->coefficients.data(), bands, scale, offset, slices, slice,
                            width, height, expected.data());
            Expect("render", builder.imageBuffer.get(), expected.data(), expected.size());
            if (builder.tables.numSteps != tables.literal.numSteps)
                builder.GenerateLookUpTables(tables.literal.numSteps);
        }
    }

    void Importance()
    {
        const int seed = bytes.ConsumeIntegral<std::uint16_t>();
        const int perAxis = bytes.ConsumeIntegralInRange(0, 2);
        const int offsets = bytes.ConsumeIntegralInRange(0, 8);
        builder.GeneratePDFSamples(seed, perAxis, offsets);
        const auto pdf = literal::GeneratePdfSamples(seed, perAxis, offsets);
        // Angles that keep every point within one turn, where both agree on what to do.
        const double latitude = bytes.ConsumeFloatingPointInRange(0.0, 3.15);
        const double longitude = bytes.ConsumeFloatingPointInRange(-7.0, 7.0);
        const double stdDev = bytes.ConsumeFloatingPointInRange(0.0, 1.0);
        auto sh = MakeObject<SphericalHarmonic>();
        builder.CreateImportanceSampledGaussSH(*sh, latitude, longitude, stdDev);
        ExpectSet(
            "importance sampling", *sh,
            literal::ImportanceSampledGauss(tables.literal, pdf, latitude, longitude, stdDev));
    }

    void Arithmetic()
    {
        const std::shared_ptr<SphericalHarmonic> sets[] = {Set(bytes.ConsumeIntegralInRange(0, 4)),
                                                           Set(bytes.ConsumeIntegralInRange(0, 4)),
                                                           Set(bytes.ConsumeIntegralInRange(0, 4))};
        for (const auto &sh : sets)
            if (Rarely(8))
                sh->numBands = bytes.ConsumeIntegralInRange(-4, 8);
        const auto any = [&]() -> SphericalHarmonic & {
            return *sets[bytes.ConsumeIntegralInRange(0, 2)];
        };
        SphericalHarmonic &target = any();
        SphericalHarmonic &first = any();
        SphericalHarmonic &second = any();
        literal::Set expected = Literally(target);
        Combine(expected, target, first, second);
        if (target.numBands != expected.numBands)
            Differ("arithmetic");
        ExpectSet("arithmetic", target, expected.coefficients);
    }

    literal::Set Literally(const SphericalHarmonic &sh) { return {sh.numBands, Copy(sh)}; }

    /// The same operation on the model's target and on ours.
    void Combine(literal::Set &expected, SphericalHarmonic &target, SphericalHarmonic &first,
                 SphericalHarmonic &second)
    {
        const auto scale = static_cast<float>(Number());
        const double alpha = Number();
        switch (bytes.ConsumeIntegralInRange(0, 6)) {
        case 0:
            literal::Add(expected, Literally(first));
            builder.AddSH(&target, &first);
            break;
        case 1:
            literal::AddScaled(expected, Literally(first), scale);
            builder.AddScaledSH(&target, &first, scale);
            break;
        case 2:
            literal::Subtract(expected, Literally(first));
            builder.SubtractSH(&target, &first);
            break;
        case 3:
            literal::SubtractScaled(expected, Literally(first), scale);
            builder.SubtractScaledSH(&target, &first, scale);
            break;
        case 4:
            literal::Scale(expected, scale);
            builder.ScaleSH(&target, scale);
            break;
        case 5:
            literal::CopyScaleAndSubtract(expected, Literally(first), scale, Literally(second));
            builder.CopyScaleAndSubtractSH(&target, &first, scale, &second);
            break;
        default:
            literal::Lerp(expected, Literally(first), Literally(second), alpha);
            builder.LerpSH(&target, &first, &second, alpha);
        }
    }

    void Rotate()
    {
        const auto sh = Set(Bands());
        if (Rarely(8))
            sh->numBands = bytes.ConsumeIntegralInRange(-4, 8);
        auto rotated = MakeObject<SphericalHarmonic>();
        // The literal model makes all 30 band matrices whatever the set has.
        if (!Rarely(128)) {
            const double angle = Number();
            orvane::RotateZ(*sh, angle, *rotated);
            return ExpectSet("rotation about z", *rotated,
                             literal::RotateZ(Copy(*sh), sh->numBands, angle));
        }
        double matrix[3][3];
        for (auto &row : matrix)
            for (double &value : row)
                value = Number();
        orvane::RotateSH(*sh, matrix, *rotated, *builder.kernels);
        ExpectSet("rotation", *rotated, literal::RotateSH(Copy(*sh), matrix));
    }

    /// Whatever the arguments, an operation ends: with a result or with an exception.
    void Refusals()
    {
        auto sh = Set(bytes.ConsumeIntegralInRange(0, 4));
        sh->numBands = bytes.ConsumeIntegral<std::int32_t>();
        const double phi = bytes.ConsumeFloatingPoint<double>();
        const double theta = bytes.ConsumeFloatingPoint<double>();
        const auto any = [&] { return bytes.ConsumeIntegral<std::int32_t>(); };
        const auto attempt = [](const auto &call) {
            try {
                call();
            } catch (const std::exception &) {
            }
        };
        attempt([&] { builder.GetValueAt(*sh, phi, theta); });
        attempt([&] { builder.GetValueAtBand(*sh, phi, theta, any()); });
        attempt([&] { builder.SHBasisFunc(any(), phi, theta); });
        attempt([&] { builder.LatitudeProjectionFunc(phi, theta); });
        attempt([&] { builder.LongtitudeProjectionFunc(phi, theta); });
        attempt([&] { builder.GaussProjectionFunc(phi, theta, phi); });
        attempt([&] { sh->GetCoefficient(any()); });
        builder.SetImageBuffer(4, 3);
        attempt([&] {
            builder.RenderSHToImageBuffer(*sh, static_cast<float>(phi), any(), any(), any());
        });
        builder.GeneratePDFSamples(1, 2, 5);
        attempt([&] {
            auto out = MakeObject<SphericalHarmonic>();
            builder.CreateImportanceSampledGaussSH(*out, phi, theta, phi);
        });
    }

    FuzzedDataProvider &bytes;
    Tables &tables;
    SHBuilder &builder;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider bytes(data, size);
    Job(bytes).Run();
    return 0;
}
