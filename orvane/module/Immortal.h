#pragma once

namespace orvane::binding {

/// An object in static storage that no destructor ends: the host may look at what it was given
/// until the library has left memory, which is after every static destructor and exit function of
/// the process. Memory that it owns is its user's to give back; see ReleaseAtUnload in Module.cpp.
template <class T> union Immortal {
    template <typename... Arguments>
    explicit Immortal(Arguments &&...arguments) : object(static_cast<Arguments &&>(arguments)...)
    {
    }
    ~Immortal() {}
    Immortal(const Immortal &) = delete;
    Immortal &operator=(const Immortal &) = delete;

    T object;
};

} // namespace orvane::binding
