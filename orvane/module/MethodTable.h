#pragma once

// What is known about a method. A class has one table with one row per method: the name, the entry
// function with the shape that was deduced from the native function behind it, the docstring, and a
// note for the reference manual. Everything else (method definitions, signatures, manual, stub) is
// made from the rows.

#include <Python.h>

#include "orvane/module/ScriptTypes.h"
#include "teskexposure/include/TeskRecords"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace orvane::binding {

/// How a method receives its arguments.
enum class Style {
    Thunk,  ///< each argument is converted by the host; has a signature
    Tuple,  ///< the tuple is parsed with a format string
    Direct, ///< the arguments are not looked at
};

inline constexpr std::size_t maxArguments = 5;

/// The function that Python calls, and the shape of the native function behind it.
struct Entry {
    PyCFunction function;
    Style style;
    const char *format = nullptr; ///< of the tuple style only
    ScriptType result;
    std::size_t argumentCount = 0;
    std::array<ScriptType, maxArguments> arguments{};
};

/// One argument in the manual: its name, then meaning, unit and range.
struct ArgumentNote {
    std::string_view name{};
    std::string_view text{};
};

/// What the manual says beside the docstring. Python never sees it.
struct Note {
    std::string_view what; ///< a sentence: what the method does
    std::array<ArgumentNote, maxArguments> arguments{};
    std::string_view result{};  ///< empty for None
    std::string_view errors{};  ///< beyond wrong counts and types of arguments
    std::string_view remarks{}; ///< more about it, and where the docstring is wrong
};

struct MethodRow {
    const char *name;
    Entry entry;
    const char *doc;
    Note note;
};

/// One attribute, bound directly to a field.
struct AttributeRow {
    const char *name;
    AttributeTypeCode type;
    std::int64_t offset; ///< of the field from the start of the object, in bytes
    std::uint32_t access;
    const char *doc;
    std::string_view note; ///< for the manual
};

struct ClassTable {
    const char *name;
    const char *doc;
    const char *note; ///< for the manual
    std::span<const AttributeRow> attributes;
    std::span<const MethodRow> methods;
};

/// The most rows of a class.
inline constexpr std::size_t maxAttributes = 4;
inline constexpr std::size_t maxMethods = 35;

/// Whether every row's note says what the method does and gives, and names exactly the arguments
/// that the entry takes.
constexpr bool NotesFitEntries(std::span<const MethodRow> rows)
{
    for (const MethodRow &row : rows) {
        if (row.note.what.empty() ||
            row.note.result.empty() != (row.entry.result == ScriptType::None))
            return false;
        for (std::size_t i = 0; i < maxArguments; ++i)
            if (row.note.arguments[i].name.empty() != (i >= row.entry.argumentCount))
                return false;
    }
    return true;
}

} // namespace orvane::binding
