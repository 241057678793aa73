#pragma once

// What the mathematics throws. The scripting side turns each into the Python exception of the same
// kind: std::out_of_range into IndexError, std::invalid_argument into ValueError, the two classes
// below into RuntimeError and TypeError, std::bad_alloc into MemoryError.

#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace orvane {

/// The text of a refusal, such as "numSteps is 0; expected 1 to 262144".
inline std::string IllegalValue(const std::string &name, long long value, const std::string &legal)
{
    return name + " is " + std::to_string(value) + "; expected " + legal;
}
inline std::string IllegalValue(const std::string &name, int value, const std::string &legal)
{
    return IllegalValue(name, static_cast<long long>(value), legal);
}
inline std::string IllegalValue(const std::string &name, double value, const std::string &legal)
{
    if (std::isnan(value)) // its sign is of no interest
        return name + " is nan; expected " + legal;
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.17g", value);
    return name + " is " + digits + "; expected " + legal;
}

/// Something that has to be generated or allocated first is not there.
class NotReady : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A required coefficient set was absent (None in a script).
class MissingSet : public std::invalid_argument {
public:
    /// @param argument 0-based index of the argument that was absent
    explicit MissingSet(int argument)
        : std::invalid_argument("coefficient set " + std::to_string(argument) + " is absent"),
          argument(argument)
    {
    }

    const int argument;
};

} // namespace orvane
