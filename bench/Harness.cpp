#include "bench/Harness.h"

#include "bench/Allocations.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <regex>

using orvane::InstructionSet;

namespace bench {

namespace {

constexpr int repetitions = 5;
constexpr int literalRepetitions = 3; ///< which may take seconds each
constexpr double seconds = 0.04;      ///< at the least, of each repetition

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

/// One figure, gathered once a run.
struct Figure {
    std::vector<double> values;

    void Add(double value) { values.push_back(value); }
    double Value() const { return Median(values); }
};

/// Hears the benchmark library's repetitions and prints nothing.
class Collector : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            if (run.run_type == Run::RT_Iteration)
                times[run.run_name.function_name].push_back(run.run_name.time_type.empty()
                                                                ? run.GetAdjustedCPUTime()
                                                                : run.GetAdjustedRealTime());
    }

    std::map<std::string, std::vector<double>> times;
};

/// Pieces of work that are measured together, their repetitions in random order.
class Round {
public:
    void Add(const std::string &name, const std::function<void()> &work, int repetitions,
             bool isElsewhere = false)
    {
        auto *const added = benchmark::RegisterBenchmark(name.c_str(),
                                                         [work](benchmark::State &state) {
                                                             for (auto _ : state)
                                                                 work();
                                                         })
                                ->MinTime(seconds)
                                ->Repetitions(repetitions)
                                ->Unit(benchmark::kNanosecond);
        if (isElsewhere)
            added->UseRealTime();
    }

    /// Nanoseconds of one call by name: the median of the repetitions.
    std::map<std::string, double> Run()
    {
        Collector collector;
        benchmark::RunSpecifiedBenchmarks(&collector, ".");
        benchmark::ClearRegisteredBenchmarks();
        std::map<std::string, double> medians;
        for (const auto &[name, times] : collector.times)
            medians[name] = Median(times);
        return medians;
    }
};

struct JobRow {
    struct Shipped {
        Figure nanoseconds;
        Figure ratio;
        Figure floorShare;
        Figure allocations;
    };

    void Measure()
    {
        const Job job = make();
        Round round;
        round.Add("literal", job.literal, literalRepetitions, job.isElsewhere);
        if (job.floor)
            round.Add("floor", job.floor, repetitions);
        for (const InstructionSet set : instructionSets)
            if (orvane::IsSupported(set))
                round.Add(
                    orvane::Name(set), [&, set] { job.shipped(set); }, repetitions,
                    job.isElsewhere);
        const std::map<std::string, double> times = round.Run();

        literal.Add(times.at("literal"));
        for (const InstructionSet set : instructionSets) {
            if (!orvane::IsSupported(set))
                continue;
            Shipped &row = shipped[set];
            const double time = times.at(orvane::Name(set));
            row.nanoseconds.Add(time);
            row.ratio.Add(times.at("literal") / time);
            if (job.floor)
                row.floorShare.Add(times.at("floor") / time);
            const std::uint64_t before = AllocationCount();
            job.shipped(set);
            row.allocations.Add(static_cast<double>(AllocationCount() - before));
        }
    }

    std::string name;
    Aims aims;
    std::function<Job()> make;
    Figure literal;
    std::map<InstructionSet, Shipped> shipped;
};

struct ScalingRow {
    void Measure()
    {
        const Scaling scaling = make();
        Round round;
        for (std::size_t i = 0; i < scaling.sizes.size(); ++i)
            round.Add(std::to_string(i), scaling.sizes[i].run, repetitions);
        const std::map<std::string, double> times = round.Run();
        perUnit.resize(scaling.sizes.size());
        units.clear();
        for (std::size_t i = 0; i < scaling.sizes.size(); ++i) {
            units.push_back(scaling.sizes[i].units);
            perUnit[i].Add(times.at(std::to_string(i)) / units[i]);
        }
    }

    std::string name;
    std::string unit;
    std::function<Scaling()> make;
    std::vector<double> units;
    std::vector<Figure> perUnit;
};

struct MemoryRow {
    void Measure() { bytes.Add(measure()); }

    std::string name;
    std::function<double()> measure;
    Figure bytes;
};

// What was added, in that order.
template <typename Row> std::vector<Row> &Rows()
{
    static std::vector<Row> rows;
    return rows;
}

std::string Time(double nanoseconds)
{
    static const char *const units[] = {"ns", "µs", "ms", "s"};
    int unit = 0;
    for (; nanoseconds >= 1000.0 && unit < 3; ++unit)
        nanoseconds /= 1000.0;
    char text[32];
    std::snprintf(text, sizeof text, "%.3g %s", nanoseconds, units[unit]);
    return text;
}

/// Two significant digits at the least, no exponent.
std::string Number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text,
                  value < 10.0    ? "%.2f"
                  : value < 100.0 ? "%.1f"
                                  : "%.0f",
                  value);
    return text;
}

void PrintJobs(const std::vector<JobRow> &rows)
{
    std::puts("| job | instruction set | literal | shipped | ratio | aim | share of floor | "
              "allocations |\n|---|---|---:|---:|---:|---:|---:|---:|");
    for (const JobRow &row : rows)
        for (const InstructionSet set : instructionSets) {
            const auto shipped = row.shipped.find(set);
            if (shipped == row.shipped.end())
                continue;
            const auto &[nanoseconds, ratio, floorShare, allocations] = shipped->second;
            const double aim = row.aims.For(set);
            std::printf(
                "| %s | %s | %s | %s | %s | %s | %s | %s |\n", row.name.c_str(), orvane::Name(set),
                Time(row.literal.Value()).c_str(), Time(nanoseconds.Value()).c_str(),
                Number(ratio.Value()).c_str(), aim > 0.0 ? ("≥ " + Number(aim)).c_str() : "",
                floorShare.values.empty() ? ""
                                          : (Number(100.0 * floorShare.Value()) + " %").c_str(),
                std::to_string(static_cast<long>(allocations.Value())).c_str());
        }
}

void PrintScaling(const std::vector<ScalingRow> &rows)
{
    std::puts("\n| growth | work | time per unit | against the smallest |\n|---|---:|---:|---:|");
    for (const ScalingRow &row : rows)
        for (std::size_t i = 0; i < row.perUnit.size(); ++i)
            std::printf("| %s | %.0f %s | %s | %s |\n", row.name.c_str(), row.units[i],
                        row.unit.c_str(), Time(row.perUnit[i].Value()).c_str(),
                        Number(row.perUnit[i].Value() / row.perUnit[0].Value()).c_str());
}

void PrintMemory(const std::vector<MemoryRow> &rows)
{
    std::puts("\n| memory | MB |\n|---|---:|");
    for (const MemoryRow &row : rows)
        std::printf("| %s | %s |\n", row.name.c_str(), Number(row.bytes.Value() / 1e6).c_str());
}

template <typename Row>
void MeasureAndPrint(const std::regex &filter, int runs, void (*print)(const std::vector<Row> &))
{
    std::vector<Row> rows;
    for (const Row &row : Rows<Row>())
        if (std::regex_search(row.name, filter))
            rows.push_back(row);
    for (int run = 0; run < runs; ++run)
        for (Row &row : rows) {
            std::fprintf(stderr, "run %d of %d: %s\n", run + 1, runs, row.name.c_str());
            row.Measure();
        }
    if (!rows.empty())
        print(rows);
}

} // namespace

double Aims::For(InstructionSet instructionSet) const
{
    switch (instructionSet) {
    case InstructionSet::Avx512:
        return avx512;
    case InstructionSet::Avx2:
        return avx2;
    case InstructionSet::Baseline:
        break;
    }
    return baseline;
}

void AddJob(std::string name, Aims aims, std::function<Job()> make)
{
    Rows<JobRow>().push_back({std::move(name), aims, std::move(make), {}, {}});
}

void AddScaling(std::string name, std::string unit, std::function<Scaling()> make)
{
    Rows<ScalingRow>().push_back({std::move(name), std::move(unit), std::move(make), {}, {}});
}

void AddMemory(std::string name, std::function<double()> measure)
{
    Rows<MemoryRow>().push_back({std::move(name), std::move(measure), {}});
}

void RunAll(const std::string &filter, int runs)
{
    const std::regex expression(filter);
    MeasureAndPrint<JobRow>(expression, runs, PrintJobs);
    MeasureAndPrint<ScalingRow>(expression, runs, PrintScaling);
    MeasureAndPrint<MemoryRow>(expression, runs, PrintMemory);
}

} // namespace bench
