// Usage: golden_check VECTORS
//
// Compares the library with the golden vectors; nothing may be left in the host afterwards.

#include "golden/Vectors.h"
#include "orvane/kernels/Kernels.h"
#include "tesk/TeskReport.h"

#include <cstdio>
#include <exception>

int main(int argumentCount, char **arguments)
try {
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: %s VECTORS\n", arguments[0]);
        return 2;
    }
    std::printf("Kernels: %s\n", orvane::Name(orvane::BestKernels().instructionSet));
    bool pass = true;
    for (const golden::Vector &vector : golden::Read(arguments[1])) {
        const golden::Verdict verdict = golden::Compare(vector, golden::Run(vector));
        pass = pass && verdict.passes;
        std::printf("%-4s %-24s %-24s %s\n", verdict.passes ? "ok" : "FAIL", vector.name.c_str(),
                    vector.functions.c_str(), verdict.text.c_str());
    }
    const TeskTotals left = TeskReportTotals();
    return pass && !left.liveObjects && !left.allocations && !left.assertionHits ? 0 : 1;
} catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
}
