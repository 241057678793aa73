#pragma once

// The types of arguments and results as scripts see them, and what each is called where.

#include <cstddef>
#include <span>

namespace orvane::binding {

enum class ScriptType {
    None,
    Int,
    Float,
    Set,        ///< a SphericalHarmonic
    ReadBuffer, ///< any object with a read buffer
    Matrix,     ///< a tuple of 4 tuples of 4 floats
    View,       ///< a read-only buffer over native memory
};

struct ScriptTypeNames {
    ScriptType type;
    const char *signature; ///< in the host's signatures; null: made of the host's name of the class
    const char *manual;    ///< in the reference
    const char *stub;      ///< in the typed stub
};

/// By value of ScriptType. Signatures are of thunk style only, which has none of the last three.
inline constexpr ScriptTypeNames scriptTypeNames[] = {
    {ScriptType::None, "None", "None", "None"},
    {ScriptType::Int, "int", "int", "int"},
    {ScriptType::Float, "float", "float", "float"},
    {ScriptType::Set, nullptr, "set", "SphericalHarmonic"},
    {ScriptType::ReadBuffer, "None", "read buffer", "_ReadBuffer"},
    {ScriptType::Matrix, "None", "tuple", "_Matrix"},
    {ScriptType::View, "None", "buffer", "_Buffer"},
};

constexpr const ScriptTypeNames &NamesOf(ScriptType type)
{
    return scriptTypeNames[static_cast<std::size_t>(type)];
}

/// Whether each row stands where NamesOf looks for it.
constexpr bool EachIsAtItsValue(std::span<const ScriptTypeNames> names)
{
    for (const ScriptTypeNames &each : names)
        if (&each != &names[static_cast<std::size_t>(each.type)])
            return false;
    return true;
}
static_assert(EachIsAtItsValue(scriptTypeNames));

} // namespace orvane::binding
