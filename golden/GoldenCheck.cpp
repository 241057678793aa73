// Usage: golden_check [--write] VECTORS
//
// Compares the library, and the literal model, with the golden vectors; with --write computes the
// vectors' results anew with the literal model.

#include "golden/Recipes.h"
#include "orvane/kernels/Kernels.h"

#include <cstdio>
#include <cstring>
#include <exception>

namespace {

void WriteResults(const char *path)
{
    golden::File file = golden::Read(path);
    for (golden::Vector &vector : file.vectors)
        vector.expected = golden::RunLiteral(vector);
    golden::Write(path, file);
}

/// Prints the table; whether all pass.
bool CheckResults(const char *path)
{
    std::printf("Kernels: %s\n", orvane::Name(orvane::BestKernels().instructionSet));
    bool pass = true;
    for (const golden::Vector &vector : golden::Read(path).vectors) {
        const golden::Values shipped = golden::RunShipped(vector);
        const golden::Verdict verdict = golden::Compare(vector, shipped);
        // On one platform the two agree to the bit whatever its library functions give.
        golden::Vector model = vector;
        model.functions = "none";
        model.expected = golden::RunLiteral(vector);
        const bool isLiteral = golden::Compare(model, shipped).passes;
        pass = pass && verdict.passes && isLiteral;
        std::printf("%-4s %-24s %-24s %s%s\n", verdict.passes && isLiteral ? "ok" : "FAIL",
                    vector.name.c_str(), vector.functions.c_str(), verdict.text.c_str(),
                    isLiteral ? "" : "; not what the literal model gives");
    }
    return pass;
}

} // namespace

int main(int argumentCount, char **arguments)
try {
    if (argumentCount == 3 && std::strcmp(arguments[1], "--write") == 0) {
        WriteResults(arguments[2]);
        return 0;
    }
    if (argumentCount == 2)
        return CheckResults(arguments[1]) ? 0 : 1;
    std::fprintf(stderr, "usage: %s [--write] VECTORS\n", arguments[0]);
    return 2;
} catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
}
