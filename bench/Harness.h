#pragma once

// Every job is measured in the same process as the literal model and as the shipped code, once per
// instruction set, interleaved; the table shows medians.

#include "orvane/kernels/InstructionSet.h"

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// The literal model's time divided by the shipped code's that a job is to reach; 0 states none.
struct Aims {
    double avx512 = 0.0;
    double avx2 = 0.0;
    double baseline = 0.0;

    double For(orvane::InstructionSet instructionSet) const;
};

inline constexpr orvane::InstructionSet instructionSets[] = {
    orvane::InstructionSet::Avx512, orvane::InstructionSet::Avx2, orvane::InstructionSet::Baseline};

/// One piece of work, done in both ways on the same data.
struct Job {
    std::function<void()> literal;
    std::function<void(orvane::InstructionSet)> shipped;
    /// What no implementation can do without (the library calls, the bytes written, the chain of
    /// dependent additions); empty where no such floor is stated.
    std::function<void()> floor;
    /// Other processes do the work: the time on the clock counts, and not this process's own.
    bool isElsewhere = false;
};

/// Adds a row to the table of ratios. `make` prepares the data; they live while the job runs.
void AddJob(std::string name, Aims aims, std::function<Job()> make);

/// The same work in growing sizes.
struct Scaling {
    struct Size {
        double units; ///< of work: samples, pixels, points
        std::function<void()> run;
    };
    std::vector<Size> sizes;
};

/// Adds rows to the table of linear growth.
void AddScaling(std::string name, std::string unit, std::function<Scaling()> make);

/// Adds a row to the table of memory: `measure` gives bytes.
void AddMemory(std::string name, std::function<double()> measure);

/// Measures what matches `filter` (a regular expression found anywhere in the name) `runs` times
/// and prints the tables as Markdown, each figure the median over the runs.
void RunAll(const std::string &filter, int runs);

} // namespace bench
