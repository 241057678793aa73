#pragma once

// What renders of one size have in common, kept from one to the next: the polar rows of the
// picture's rows laid side by side, and the angle factors of its columns.

#include "orvane/kernels/Kernels.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace orvane {

/// A rectangle of pixels in an image of `width` by `height`.
struct ImageTile {
    std::int32_t width, height;
    std::int32_t firstColumn, columns;
    std::int32_t firstRow, rows;
};

/// A coefficient set, how its values become bytes, and the lookup tables that give them.
struct RenderRequest {
    AngleTables angles;
    const double *polarRows;   ///< a row for every theta of the image
    const float *coefficients; ///< in index order
    std::int32_t count;        ///< of coefficients that make the value, 1 to 900
    float scale;
    std::int32_t offset;
};

/// Owned by one builder; at most 4 MB, whatever is rendered.
class PictureTables {
public:
    /// Fills a tile of the image, which is of tile.width * tile.height bytes.
    /// @throws std::bad_alloc; no pixel is written then
    RenderCounts Render(const Kernels &kernels, const RenderRequest &request, const ImageTile &tile,
                        std::uint8_t *image);

    /// Bytes of memory held.
    std::size_t Size() const;

private:
    /// All that the laid out rows and columns depend on. Lookup tables of one size always hold the
    /// same numbers; where they are is asked anew by each render.
    struct Key {
        const Kernels *kernels = nullptr; ///< whose vectors they are laid out for
        std::int32_t numSteps = 0;
        std::int32_t bands = 0;
        std::int32_t length = 0; ///< of the image: its width for columns, its height for rows
        std::int32_t first = 0;
        std::int32_t count = 0;

        bool operator==(const Key &) const = default;
    };

    /// Memory that grows and is never cleared.
    template <typename T> struct Memory {
        void Reserve(std::size_t count);

        std::unique_ptr<T[]> values;
        std::size_t size = 0;
    };
    struct alignas(64) FactorLine {
        float values[16];
    };

    void RequireMemory(std::int32_t numSteps, int bands, const ImageTile &tile);
    void RequireColumns(const Kernels &kernels, const AngleTables &angles, int bands,
                        const ImageTile &block);
    std::int32_t RequireRows(const Kernels &kernels, const RenderRequest &request, int bands,
                             const ImageTile &tile, std::int32_t first);

    Key columnsKey;
    PictureColumns columns{};
    Memory<std::int32_t> indices;
    Memory<std::int32_t> lone;
    Memory<FactorLine> factors;

    Key rowsKey;
    std::int32_t rowCount = 0;
    std::int32_t rowsEnd = 0; ///< the image row after the last one laid out
    Memory<std::int32_t> steps;
    Memory<std::int32_t> firstRows;
    Memory<GroupEntry> groupEntries;

    Memory<FactorLine> values;
    Memory<std::uint8_t> bytes;
};

} // namespace orvane
