#pragma once

// Golden vectors: recipes and what they have to give. README.md in this folder states the format.

#include <string>
#include <vector>

namespace golden {

/// One call of a recipe: `[newSet =] method arguments...`.
struct Call {
    std::string newSet; ///< empty where the method returns none
    std::string method;
    std::vector<std::string> arguments;
};

/// What a recipe gives: coefficients, grey levels or the methods' results.
using Values = std::vector<double>;

struct Vector {
    bool IsImage() const { return target == "image"; }
    bool IsResults() const { return target == "results"; }
    bool IsExact() const { return functions == "none"; }

    std::string recipe; ///< the text before the result, as it stands
    std::string name;
    std::string functions; ///< the library functions that take part
    double tolerance = 0.0;
    std::vector<Call> calls;
    std::string target; ///< name of a set, "image" or "results"
    Values expected;
};

struct File {
    std::string head; ///< the text before the first vector
    std::vector<Vector> vectors;
};

/// @throws std::runtime_error where the file cannot be read
File Read(const std::string &path);

/// Writes what Read reads.
/// @throws std::runtime_error where the file cannot be written
void Write(const std::string &path, const File &file);

struct Verdict {
    bool passes;
    std::string text;
};

/// How far `actual` is from what the vector expects.
Verdict Compare(const Vector &vector, const Values &actual);

} // namespace golden
