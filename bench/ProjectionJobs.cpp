// Projection of functions and images.

#include "bench/Harness.h"
#include "bench/Jobs.h"
#include "bench/Objects.h"
#include "model/LiteralProjection.h"

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

namespace {

constexpr int bands = 30;
constexpr int width = 512;
constexpr int height = 256;

/// The function's values were found beforehand: one for each sample, in the samples' order.
struct GivenValues {
    explicit GivenValues(std::size_t count)
    {
        platform::RuntimeRandom random;
        for (std::size_t i = 0; i < count; ++i)
            values.push_back(random.Next() / 16384.0 - 1.0 + 1e-6);
    }

    double Next() { return values[next++ % values.size()]; }
    static double Next(SHBuilder &, const double &, const double &, const void *given)
    {
        return static_cast<GivenValues *>(const_cast<void *>(given))->Next();
    }

    std::vector<double> values;
    std::size_t next = 0;
};

struct Data {
    explicit Data(int samplesPerAxis) : given(samplesPerAxis * samplesPerAxis)
    {
        builder->GenerateSphericalSamples(1, samplesPerAxis);
        for (const SphericalSample &sample : builder->sphericalSamples)
            samples.push_back({sample.theta, sample.phi});
        platform::RuntimeRandom random;
        for (std::uint8_t &pixel : image)
            pixel = static_cast<std::uint8_t>(random.Next() | 1);
    }

    void Project() { builder->ProjectFunction(*set, bands, &GivenValues::Next, &given); }

    literal::Tables tables{1024};
    std::vector<literal::Sample> samples;
    std::shared_ptr<SHBuilder> builder = MakeBuilder(1024);
    std::shared_ptr<SphericalHarmonic> set = MakeObject<SphericalHarmonic>();
    GivenValues given;
    std::vector<std::uint8_t> image = std::vector<std::uint8_t>(width * height); ///< no 0 in it
};

Job ProjectFunction(int samplesPerAxis)
{
    const auto data = std::make_shared<Data>(samplesPerAxis);
    Job job;
    job.literal = [=] {
        benchmark::DoNotOptimize(
            literal::Project(data->tables, data->samples, bands,
                             [&](double, double) { return data->given.Next(); }));
    };
    job.shipped = [=](orvane::InstructionSet set) {
        data->builder->UseInstructionSet(set);
        data->Project();
    };
    return job;
}

Job ProjectImage(int samplesPerAxis)
{
    const auto data = std::make_shared<Data>(samplesPerAxis);
    Job job;
    job.literal = [=] {
        benchmark::DoNotOptimize(literal::ProjectImage(data->tables, data->samples, width, height,
                                                       bands * bands, data->image.data()));
    };
    job.shipped = [=](orvane::InstructionSet set) {
        data->builder->UseInstructionSet(set);
        data->builder->CreateSHFromImageBuffer(*data->set, width, height, bands,
                                               data->image.data());
    };
    return job;
}

Job CreateGauss(int samplesPerAxis)
{
    const auto data = std::make_shared<Data>(samplesPerAxis);
    Job job;
    job.literal = [=] {
        benchmark::DoNotOptimize(
            literal::Project(data->tables, data->samples, bands, literal::Gauss(0.2f, 1.0f, 2.0f)));
    };
    job.shipped = [=](orvane::InstructionSet set) {
        data->builder->UseInstructionSet(set);
        data->builder->CreateGaussSH(*data->set, bands, 0.2f, 1.0f, 2.0f);
    };
    return job;
}

Scaling Growth()
{
    Scaling scaling;
    for (const int samplesPerAxis : {64, 202, 640}) {
        const auto data = std::make_shared<Data>(samplesPerAxis);
        scaling.sizes.push_back(
            {static_cast<double>(data->samples.size()), [=] { data->Project(); }});
    }
    return scaling;
}

/// What a sampling of the sphere costs.
Scaling SamplesGrowth()
{
    Scaling scaling;
    for (const int samplesPerAxis : {64, 640}) {
        const auto builder = MakeBuilder(1024);
        scaling.sizes.push_back({static_cast<double>(samplesPerAxis * samplesPerAxis),
                                 [=] { builder->GenerateSphericalSamples(1, samplesPerAxis); }});
    }
    return scaling;
}

} // namespace

void AddProjectionJobs()
{
    for (const int samplesPerAxis : {128, 256}) {
        const std::string samples = samplesPerAxis == 128 ? "16,384" : "65,536";
        AddJob("projection of given values, " + samples + " samples, 30 bands", {40.0, 22.0, 12.0},
               [=] { return ProjectFunction(samplesPerAxis); });
        AddJob("`CreateSHFromImageBuffer`, " + samples + " samples, 30 bands", {40.0, 22.0, 12.0},
               [=] { return ProjectImage(samplesPerAxis); });
    }
    AddJob("`CreateGaussSH`, standard deviation 0.2, 16,384 samples", {65.0, 40.0, 20.0},
           [] { return CreateGauss(128); });
    AddScaling("projection of given values, 30 bands", "samples", Growth);
    AddScaling("`GenerateSphericalSamples`", "samples", SamplesGrowth);
}

} // namespace bench
