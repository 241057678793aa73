#pragma once

namespace tesk {

/// A static object that outlives static destruction. Unlike one made with new, it is there without
/// asking for memory.
template <class T> union NeverDestroyed {
    NeverDestroyed() : object() {}
    ~NeverDestroyed() {}

    T object;
};

} // namespace tesk
