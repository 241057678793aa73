#pragma once

// A growable array whose storage can outlive it. Readers that were handed the storage (a script's
// buffer over it) keep the block alive: while one exists, anything that would move or free the
// elements leaves the block to its readers and goes on with a fresh one. Without readers it is a
// plain vector.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

template <typename T> class SharedArray {
public:
    using Block = std::vector<T>;

    SharedArray() = default;
    SharedArray(const SharedArray &) = delete;
    SharedArray &operator=(const SharedArray &) = delete;

    std::size_t size() const { return block ? block->size() : 0; }
    bool empty() const { return size() == 0; }
    T *data() { return block ? block->data() : nullptr; }
    const T *data() const { return block ? block->data() : nullptr; }
    T *begin() { return data(); }
    T *end() { return data() + size(); }
    const T *begin() const { return data(); }
    const T *end() const { return data() + size(); }
    T &operator[](std::size_t index) { return (*block)[index]; }
    const T &operator[](std::size_t index) const { return (*block)[index]; }

    /// Keeps the first min(old, new) elements, appends zeros, drops the tail. Either completes or
    /// throws std::bad_alloc with the array as it was.
    void resize(std::size_t count)
    {
        if (count == size())
            return;
        if (!IsShared() && block) {
            block->resize(count);
            return;
        }
        auto fresh = std::make_shared<Block>();
        fresh->reserve(count);
        if (block)
            fresh->assign(block->begin(), block->begin() + std::min(count, block->size()));
        fresh->resize(count);
        block = std::move(fresh);
    }

    /// Replaces the contents by `count` zeros. Either completes or throws std::bad_alloc with the
    /// array as it was.
    void assign_zeros(std::size_t count) { block = std::make_shared<Block>(count); }

    /// Replaces the contents by `count` elements, of which the caller is to write the first
    /// `written` and the others are zeros. Storage without readers is used again. Either completes
    /// or throws std::bad_alloc with the array as it was.
    void assign_zeros_after(std::size_t written, std::size_t count)
    {
        if (!block || IsShared()) {
            assign_zeros(count);
            return;
        }
        block->resize(count);
        std::fill(block->begin() + written, block->end(), T());
    }

    /// The storage itself, for a reader; null where there are no elements.
    std::shared_ptr<const Block> Share() const { return block; }

private:
    bool IsShared() const { return block.use_count() > 1; }

    std::shared_ptr<Block> block;
};
