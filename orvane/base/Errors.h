#pragma once

// What the mathematics throws, and the checks of a range. The scripting side turns each into the
// Python exception of the same kind: std::out_of_range into IndexError, std::invalid_argument into
// ValueError, the two classes below into RuntimeError and TypeError, std::bad_alloc into
// MemoryError.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace orvane {

/// The message for an illegal value, such as "numSteps is 0; expected 1 to 262144".
inline std::string IllegalValue(const std::string &name, std::int64_t value,
                                const std::string &legal)
{
    return name + " is " + std::to_string(value) + "; expected " + legal;
}
inline std::string IllegalValue(const std::string &name, std::int32_t value,
                                const std::string &legal)
{
    return IllegalValue(name, std::int64_t{value}, legal);
}
inline std::string IllegalValue(const std::string &name, double value, const std::string &legal)
{
    if (std::isnan(value)) // its sign is of no interest
        return name + " is nan; expected " + legal;
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.17g", value);
    return name + " is " + digits + "; expected " + legal;
}

/// @throws Error "name is value; expected low to high" unless low <= value <= high
template <typename Error = std::invalid_argument>
void RequireInRange(const char *name, std::int64_t value, std::int64_t low, std::int64_t high)
{
    if (value < low || value > high)
        throw Error(IllegalValue(name, value, std::to_string(low) + " to " + std::to_string(high)));
}

/// @throws std::invalid_argument "name is value; expected at most high" above it
inline void RequireAtMost(const char *name, std::int64_t value, std::int64_t high)
{
    if (value > high)
        throw std::invalid_argument(IllegalValue(name, value, "at most " + std::to_string(high)));
}

/// @throws std::invalid_argument "name is value; expected low or more" below it
inline void RequireAtLeast(const char *name, std::int64_t value, std::int64_t low)
{
    if (value < low)
        throw std::invalid_argument(IllegalValue(name, value, std::to_string(low) + " or more"));
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
