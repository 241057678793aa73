// Usage: orvane_bench [--runs=N] [--benchmark_filter=REGEX]

#include "bench/Harness.h"
#include "bench/Jobs.h"
#include "orvane/kernels/Kernels.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

#ifdef __clang__
constexpr const char *compiler = "Clang " __clang_version__;
#else
constexpr const char *compiler = "GCC " __VERSION__;
#endif

std::string ProcessorModel()
{
    std::ifstream facts("/proc/cpuinfo");
    for (std::string line; std::getline(facts, line);)
        if (line.rfind("model name", 0) == 0)
            return line.substr(line.find(':') + 2);
    return "unknown processor";
}

} // namespace

int main(int argumentCount, char **arguments)
{
    const std::string first = argumentCount == 2 ? arguments[1] : "";
    if (first.rfind(bench::firstPictureOption, 0) == 0) {
        bench::RenderFirstPicture(first.substr(bench::firstPictureOption.size()));
        return 0;
    }

    std::vector<char *> all(arguments, arguments + argumentCount);
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    all.insert(all.begin() + 1, interleaved);
    int count = static_cast<int>(all.size());
    benchmark::Initialize(&count, all.data());

    int runs = 1;
    for (int i = 1; i < count; ++i) {
        const char option[] = "--runs=";
        if (std::strncmp(all[i], option, sizeof option - 1) == 0)
            runs = std::atoi(all[i] + sizeof option - 1);
        else
            runs = 0;
    }
    if (runs < 1) {
        std::fprintf(stderr, "usage: %s [--runs=N] [--benchmark_filter=REGEX]\n", arguments[0]);
        return 2;
    }

    bench::AddProjectionJobs();
    bench::AddSamplingJobs();
    bench::AddRenderJobs();
    bench::AddTableJobs();
    bench::AddRotationJobs();

    std::printf("Processor: %s, widest instruction set in use: %s. Compiler: %s. One thread; "
                "medians.\n\n",
                ProcessorModel().c_str(), orvane::Name(orvane::BestKernels().instructionSet),
                compiler);
    bench::RunAll(benchmark::GetBenchmarkFilter(), runs);
}
