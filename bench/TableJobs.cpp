// Lookup tables and evaluation.

#include "bench/Harness.h"
#include "bench/Jobs.h"
#include "bench/Objects.h"
#include "model/LiteralModel.h"

#include <benchmark/benchmark.h>

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
    // 900 arrays to be written, and taken from the heap where it is the first call.
    const auto arrays = std::make_shared<std::vector<std::vector<double>>>();
    job.floor = [=] {
        if (isFirst)
            arrays->clear();
        arrays->resize(900);
        for (std::vector<double> &array : *arrays)
            array.assign(numSteps, 1.0);
        benchmark::DoNotOptimize(arrays->data());
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

double DerivedTableBytes()
{
    return static_cast<double>(MakeBuilder(1024)->tables.polarRows.capacity() * sizeof(double));
}

double LegendreBytes()
{
    double bytes = 0.0;
    for (const std::vector<double> &array : MakeBuilder(1024)->tables.legendreLut)
        bytes += static_cast<double>(array.capacity() * sizeof(double));
    return bytes;
}

} // namespace

void AddTableJobs()
{
    AddJob("`GetValueAt`, one call, 30 bands", {6.5, 5.5, 5.0}, [] { return Evaluate(30); });
    for (const int numSteps : {1024, 4096}) {
        const std::string name = "`GenerateLookUpTables`, " + std::to_string(numSteps) + " steps";
        AddJob(name, {60.0, 40.0, 15.0}, [=] { return GenerateTables(numSteps, false); });
        AddJob(name + ", first call", {}, [=] { return GenerateTables(numSteps, true); });
    }
    AddMemory("Legendre arrays at 1024 steps", LegendreBytes);
    AddMemory("tables derived from them (5 MB at the most)", DerivedTableBytes);
}

} // namespace bench
