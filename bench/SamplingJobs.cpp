// Importance sampling and its quadtree.

#include "bench/Harness.h"
#include "bench/Jobs.h"
#include "bench/Objects.h"
#include "model/LiteralImportance.h"
#include "orvane/builder/QuadTree.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <string>

namespace bench {

namespace {

Job CreateImportanceSampledGauss()
{
    struct Data {
        Data() { builder->GeneratePDFSamples(1, 71, 5000); }

        literal::Tables tables{1024};
        literal::PdfSamples pdf = literal::GeneratePdfSamples(1, 71, 5000);
        std::shared_ptr<SHBuilder> builder = MakeBuilder(1024);
        std::shared_ptr<SphericalHarmonic> set = MakeObject<SphericalHarmonic>();
    };
    const auto data = std::make_shared<Data>();
    Job job;
    job.literal = [=] {
        benchmark::DoNotOptimize(
            literal::ImportanceSampledGauss(data->tables, data->pdf, 1.0, 2.0, 0.2));
    };
    job.shipped = [=](orvane::InstructionSet set) {
        data->builder->UseInstructionSet(set);
        data->set->SetNumBands(0);
        data->builder->CreateImportanceSampledGaussSH(*data->set, 1.0, 2.0, 0.2);
    };
    return job;
}

/// Points of which half crowd around one place, as importance sampling makes them.
std::vector<orvane::QuadPoint> QuadPoints(int count)
{
    platform::RuntimeRandom random;
    const auto unit = [&] { return random.Next() / 32767.0; };
    std::vector<orvane::QuadPoint> points(count);
    for (int i = 0; i < count; ++i) {
        const double spread = i < count / 2 ? 0.1 : 1.0;
        points[i] = {literal::twoPi * spread * unit(), std::cos(3.14159 * spread * unit())};
    }
    return points;
}

/// From points to the leaf of each. The literal model keeps it in the records that it allocates one
/// by one; the library in memory that it keeps from call to call.
Job FindLeaves(int count)
{
    const auto points = std::make_shared<std::vector<orvane::QuadPoint>>(QuadPoints(count));
    const auto tree = std::make_shared<orvane::QuadTree>();
    Job job;
    job.literal = [=] {
        std::vector<std::unique_ptr<literal::ImportanceSample>> samples;
        std::vector<literal::ImportanceSample *> pointers;
        for (const orvane::QuadPoint &point : *points) {
            samples.push_back(std::make_unique<literal::ImportanceSample>());
            *samples.back() = {point.cosTheta, 0.0, point.phi, nullptr};
            pointers.push_back(samples.back().get());
        }
        benchmark::DoNotOptimize(literal::BuildQuadTree(pointers));
    };
    job.shipped = [=](orvane::InstructionSet) {
        benchmark::DoNotOptimize(tree->FindLeaves(*points).data());
    };
    return job;
}

Job GeneratePdfSamples(int count)
{
    const auto builder = MakeObject<SHBuilder>();
    Job job;
    job.literal = [=] { benchmark::DoNotOptimize(literal::GeneratePdfSamples(1, 0, count)); };
    job.shipped = [=](orvane::InstructionSet set) {
        builder->UseInstructionSet(set);
        builder->GeneratePDFSamples(1, 0, count);
    };
    // The library calls of one offset: sqrt, log10, sin, cos and exp.
    job.floor = [=] {
        for (int i = 0; i < count; ++i) {
            const double x = (i % 1000 + 1) * 0.001;
            benchmark::DoNotOptimize(std::sqrt(-std::log10(x)));
            benchmark::DoNotOptimize(std::sin(6.28 * x));
            benchmark::DoNotOptimize(std::cos(6.28 * x));
            benchmark::DoNotOptimize(std::exp(-0.5 * x));
        }
    };
    return job;
}

} // namespace

void AddSamplingJobs()
{
    AddJob("`CreateImportanceSampledGaussSH`, 5,000 + 5,041 points", {45.0, 28.0, 15.0},
           CreateImportanceSampledGauss);
    AddJob("quadtree of 10,000 points", {20.0, 20.0, 20.0}, [] { return FindLeaves(10000); });
    AddJob("quadtree of 100,000 points", {20.0, 20.0, 20.0}, [] { return FindLeaves(100000); });
    AddJob("quadtree of 1,000,000 points", {17.0, 17.0, 17.0}, [] { return FindLeaves(1000000); });
    AddJob("`GeneratePDFSamples`, 100,000 offsets", {1.2, 1.2, 1.2},
           [] { return GeneratePdfSamples(100000); });
}

} // namespace bench
