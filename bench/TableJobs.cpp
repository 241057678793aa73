// Lookup tables and evaluation.

#include "bench/Harness.h"
#include "bench/Jobs.h"
#include "bench/Objects.h"
#include "model/LiteralModel.h"
#include "orvane/base/Bands.h"
#include "orvane/base/PolarRow.h"
#include "orvane/kernels/Kernels.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>

namespace bench {

namespace {

/// The first call on a builder, which takes the memory, or a further one, which refills it.
Job GenerateTables(int numSteps, bool isFirst)
{
    const auto builder = MakeBuilder(numSteps);
    Job job;
    job.literal = [=] { benchmark::DoNotOptimize(literal::Tables(numSteps)); };
    job.shipped = [=](orvane::InstructionSet set) {
        const auto chosen = isFirst ? MakeObject<SHBuilder>() : builder;
        chosen->UseInstructionSet(set);
        chosen->GenerateLookUpTables(numSteps);
    };
    // As many values to be written as the steps up to pi have, in memory taken where it is the
    // first call.
    const std::size_t values =
        (numSteps / 2 + 1) * (orvane::legendrePairs + orvane::polarRowLength);
    const auto memory = std::make_shared<std::unique_ptr<double[]>>();
    job.floor = [=] {
        if (isFirst || !*memory) {
            memory->reset();
            memory->reset(new double[values]);
        }
        std::fill_n(memory->get(), values, 1.0);
        benchmark::DoNotOptimize(memory->get());
    };
    return job;
}

/// Evaluation at points that follow one another around the sphere.
Job Evaluate(int numBands)
{
    struct Data {
        explicit Data(int numBands) : set(MakeSet(numBands)) {}

        void Advance()
        {
            phi = phi < 6.0 ? phi + 0.37 : phi - 5.9;
            theta = theta < 3.0 ? theta + 0.11 : theta - 2.9;
        }

        literal::Tables tables{1024};
        std::shared_ptr<SHBuilder> builder = MakeBuilder(1024);
        std::shared_ptr<SphericalHarmonic> set;
        double phi = 0.0;
        double theta = 0.1;
    };
    const auto data = std::make_shared<Data>(numBands);
    Job job;
    job.literal = [=] {
        data->Advance();
        benchmark::DoNotOptimize(data->tables.Evaluate(data->set->coefficients.data(), numBands,
                                                       data->phi, data->theta));
    };
    job.shipped = [=](orvane::InstructionSet set) {
        data->Advance();
        data->builder->UseInstructionSet(set);
        benchmark::DoNotOptimize(data->builder->GetValueAt(*data->set, data->phi, data->theta));
    };
    // One addition after the other, as many as there are terms.
    job.floor = [=] {
        double sum = 0.0;
        for (const float coefficient : data->set->coefficients)
            sum = sum + coefficient;
        benchmark::DoNotOptimize(sum);
    };
    return job;
}

Scaling EvaluationGrowth()
{
    Scaling scaling;
    for (const int numBands : {4, 10, 20, 30}) {
        const auto job = std::make_shared<Job>(Evaluate(numBands));
        scaling.sizes.push_back({static_cast<double>(numBands * numBands),
                                 [=] { job->shipped(orvane::BestKernels().instructionSet); }});
    }
    return scaling;
}

Scaling TableGrowth()
{
    Scaling scaling;
    for (const int numSteps : {256, 1024, 4096}) {
        const auto builder = MakeBuilder(numSteps);
        scaling.sizes.push_back(
            {static_cast<double>(numSteps), [=] { builder->GenerateLookUpTables(numSteps); }});
    }
    return scaling;
}

/// Tables that have all their steps.
std::shared_ptr<SHBuilder> MakeWholeBuilder()
{
    auto builder = MakeBuilder(1024);
    builder->tables.EnsurePolarStep(1023);
    return builder;
}

double DerivedTableBytes()
{
    return static_cast<double>(MakeWholeBuilder()->tables.polarRows.size_bytes());
}

/// From the first array to the last.
double LegendreBytes()
{
    const auto builder = MakeWholeBuilder();
    const auto &arrays = builder->tables.legendreLut;
    return static_cast<double>((arrays.back().data() - arrays.front().data()) * sizeof(double) +
                               arrays.back().size_bytes());
}

} // namespace

void AddTableJobs()
{
    AddJob("`GetValueAt`, one call, 30 bands", {6.5, 5.5, 5.0}, [] { return Evaluate(30); });
    AddJob("`GetValueAt`, one call, 4 bands", {}, [] { return Evaluate(4); });
    for (const int numSteps : {1024, 4096}) {
        const std::string name = "`GenerateLookUpTables`, " + std::to_string(numSteps) + " steps";
        const Aims aims{numSteps == 1024 ? 120.0 : 110.0, 80.0, 40.0};
        AddJob(name, aims, [=] { return GenerateTables(numSteps, false); });
        AddJob(name + ", first call", aims, [=] { return GenerateTables(numSteps, true); });
    }
    AddScaling("`GetValueAt`, 4 to 30 bands", "coefficients", EvaluationGrowth);
    AddScaling("`GenerateLookUpTables`", "steps", TableGrowth);
    AddMemory("Legendre arrays at 1024 steps", LegendreBytes);
    AddMemory("tables derived from them (5 MB at the most)", DerivedTableBytes);
}

} // namespace bench
