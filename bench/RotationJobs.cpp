// Rotation by a matrix.

#include "bench/Harness.h"
#include "bench/Jobs.h"
#include "bench/Objects.h"
#include "model/LiteralRotation.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Rotation.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <utility>

namespace bench {

namespace {

Job RotateSH(int bands)
{
    struct Data {
        explicit Data(int bands)
            : in(MakeSet(bands)), coefficients(in->coefficients.begin(), in->coefficients.end())
        {
        }

        // Three turns, about z, y and z again.
        double a = 0.4;
        double b = 1.1;
        double c = -2.3;
        double matrix[3][3] = {
            {std::cos(a) * std::cos(b) * std::cos(c) - std::sin(a) * std::sin(c),
             -std::cos(a) * std::cos(b) * std::sin(c) - std::sin(a) * std::cos(c),
             std::cos(a) * std::sin(b)},
            {std::sin(a) * std::cos(b) * std::cos(c) + std::cos(a) * std::sin(c),
             -std::sin(a) * std::cos(b) * std::sin(c) + std::cos(a) * std::cos(c),
             std::sin(a) * std::sin(b)},
            {-std::sin(b) * std::cos(c), std::sin(b) * std::sin(c), std::cos(b)}};
        std::shared_ptr<SphericalHarmonic> in;
        std::shared_ptr<SphericalHarmonic> out = MakeObject<SphericalHarmonic>();
        std::vector<float> coefficients;
    };
    const auto data = std::make_shared<Data>(bands);
    Job job;
    job.literal = [=] {
        benchmark::DoNotOptimize(literal::RotateSH(data->coefficients, data->matrix));
    };
    job.shipped = [=](orvane::InstructionSet set) {
        orvane::RotateSH(*data->in, data->matrix, *data->out, orvane::KernelsFor(set));
    };
    return job;
}

/// By bands^3: band l has a matrix of (2l + 1)^2 entries.
Scaling Growth()
{
    Scaling scaling;
    for (const int bands : {4, 10, 20, 30}) {
        const auto job = std::make_shared<Job>(RotateSH(bands));
        scaling.sizes.push_back({static_cast<double>(bands * bands * bands),
                                 [=] { job->shipped(orvane::BestKernels().instructionSet); }});
    }
    return scaling;
}

} // namespace

void AddRotationJobs()
{
    const std::pair<int, Aims> jobs[] = {{30, {35.0, 20.0, 10.0}},
                                         {10, {400.0, 20.0, 10.0}},
                                         {4, {2500.0, 20.0, 10.0}},
                                         {2, {5000.0, 20.0, 10.0}}};
    for (const auto &[bands, aims] : jobs)
        AddJob("`RotateSH`, " + std::to_string(bands) + " bands", aims,
               [bands = bands] { return RotateSH(bands); });
    AddScaling("`RotateSH`, 4 to 30 bands", "bands^3", Growth);
}

} // namespace bench
