#pragma once

// The names by which the host knows the two classes. Each is built on first use and lives until the
// library has left memory.

#include "orvane/builder/SHBuilder.h"
#include "orvane/module/Immortal.h"
#include "teskexposure/include/TeskRecords"

namespace orvane::binding {

template <typename T> inline constexpr const char *className = nullptr;
template <> inline constexpr const char *className<SphericalHarmonic> = "SphericalHarmonic";
template <> inline constexpr const char *className<SHBuilder> = "SHBuilder";

template <typename T> const Tx::Clsid &ClassId()
{
    static const Immortal<Tx::Clsid> clsid("Orvane", className<T>);
    return clsid.object;
}

/// The class's own interface.
template <typename T> const Tx::IID &ClassInterface()
{
    static const Immortal<Tx::IID> iid(className<T>);
    return iid.object;
}

/// Equal to the own interface by name, and an object of its own: the last entry of the interface
/// table, and the source of the type name in signatures.
template <typename T> const Tx::IID &ListedInterface()
{
    static const Immortal<Tx::IID> iid(className<T>);
    return iid.object;
}

inline const Tx::IID &RootInterface()
{
    static const Immortal<Tx::IID> iid("IRoot");
    return iid.object;
}

} // namespace orvane::binding
