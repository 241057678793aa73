#pragma once

// What the mathematics throws. The scripting side turns each into the Python exception of the same
// kind: std::out_of_range into IndexError, std::invalid_argument into ValueError, the two classes
// below into RuntimeError and TypeError, std::bad_alloc into MemoryError.

#include <stdexcept>
#include <string>

namespace orvane {

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
