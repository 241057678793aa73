// The Legendre tables: theta steps are the lanes, one pass per order m gives all its bands.
//
// With x = cos theta, s = sqrt((1 - x) (1 + x)) and 0 standing for P(m - 1, m):
//
//     P(0, 0)         = 1
//     P(m + 1, m + 1) = P(m, m) (-(2m + 1) s)
//     P(l, m)         = ((2l - 1) x P(l - 1, m) - (l + m - 1) P(l - 2, m)) / (l - m)
//
// A block of steps goes through all orders, and down the bands of each, in registers. Every value
// is written twice: as it is, into the array of its band and order; and times K(l, m), a square of
// bands and steps transposed, into the run of its order in the steps' polar rows.
//
//              lanes: steps                    array of (l, m)     ... k  k+1  k+2 ...
//     l        k  k+1  k+2 ...       ->        array of (l+1, m)   ... k  k+1  k+2 ...
//     l+1      k  k+1  k+2 ...
//     l+2      k  k+1  k+2 ...    K, transposed
//     ...                            ->        polar row k         ... l  l+1  l+2 ...
//                                              polar row k+1       ... l  l+1  l+2 ...
//
// The work is bound by its stores, 8 kilobytes a step into 465 arrays and a row for each step: more
// places than the processor follows on its own. What the next block will write is therefore fetched
// ahead. A stride of an odd number of cache lines spreads a block's lines in the arrays over the
// sets of the cache.
//
// The bits are those of the recurrence run for each (l, m) on its own: to reach a large l it passes
// through every smaller one with the same operations, and its start value for m + 1 is the one for
// m times one more factor.

constexpr int blockVectors = lanes < 8 ? 4 : 2; ///< as many as the registers hold
constexpr int blockSteps = blockVectors * lanes;
constexpr int prefetchDistance = 16; ///< steps
static_assert(legendreBlock % blockSteps == 0);

/// 1 / divisor = high + low, both 0 or more. `high` is exact, with 48 bits after the point; `low`
/// is rounded.
struct Reciprocal {
    double high, low;
};
struct Reciprocals {
    Reciprocal of[tableBands];
};
constexpr Reciprocals reciprocals = [] {
    constexpr long long one = 1LL << 48;
    Reciprocals table{};
    for (int divisor = 1; divisor < tableBands; ++divisor) {
        const long long quotient = one / divisor;
        const long long rest = one % divisor;
        table.of[divisor] = {static_cast<double>(quotient) / one,
                             static_cast<double>(rest) / divisor / one};
    }
    return table;
}();

/// value / divisor, rounded as a division is, in two operations where the processor fuses a
/// multiplication with an addition.
///
/// Before its one rounding, the fused sum differs from the quotient by the roundings of `low` and
/// of its product, each below 2^-53 of what is itself below 2^-43 of the whole: together less than
/// 2^-95. So near to it lies no number at which rounding changes. Such a number b lies half way
/// between two doubles. Scaled to be a whole number it is odd and above 2^53; `value` is then whole
/// as well, and not divisor * b, for the odd part of that has more bits than a double. It differs
/// from it by 1 or more, one part in divisor * b < 2^59.
///
/// A zero keeps its sign, being the sum of two zeros of that sign. Nothing else comes near the ends
/// of the range: s is 0 or above 2^-27, so that P(m, m) is 0 or above 2^-783, and where it is small
/// x is near 1 or -1 and P grows with l.
/// @param divisor 1 to 29
inline VecD Quotient(VecD value, int divisor)
{
#if ORVANE_VECTOR_BYTES == 64
    const auto [high, low] = reciprocals.of[divisor];
    return _mm512_fmadd_pd(value, Broadcast(high), value * low);
#elif ORVANE_VECTOR_BYTES == 32
    const auto [high, low] = reciprocals.of[divisor];
    return _mm256_fmadd_pd(value, Broadcast(high), value * low);
#else
    return value / static_cast<double>(divisor);
#endif
}

/// Fetches `count` values that are about to be written. They may lie beyond the memory.
inline void PrefetchForWrite(const double *to, int count)
{
    for (int i = 0; i < count; i += 8)
        __builtin_prefetch(to + i, 1);
}

/// Stores bands of one order, each a row of the squares, into the polar rows of the block's steps.
/// @param run where the first band of the first step goes
inline void StoreTransposed(double *run, VecD (&squares)[blockVectors][lanes])
{
    for (int i = 0; i < blockVectors; ++i) {
        Transpose(squares[i]);
        for (int lane = 0; lane < lanes; ++lane)
            Store(run + (i * lanes + lane) * polarRowLength, squares[i][lane]);
    }
}

/// All bands of order m for the block of steps from `first` on.
/// @param x cos theta
/// @param start P(m, m)
inline void FillOrder(const LegendreTables &tables, int m, int first, const VecD *x,
                      const VecD *start)
{
    // Copies: to the compiler, each store might change `tables`.
    double *const arrays = tables.legendre + first;
    const std::ptrdiff_t stride = tables.stride;
    const double *const normalisation = tables.normalisation;
    double *const run =
        tables.polarRows + std::ptrdiff_t{first} * polarRowLength + polarRunStart[m];
    for (int step = prefetchDistance; step < prefetchDistance + blockSteps; ++step)
        PrefetchForWrite(run + step * polarRowLength, tableBands - m);

    // Squares reach the vectors that begin with a band; the last ones of a run may be all padding.
    const int runLength = polarRunStart[m + 1] - polarRunStart[m];
    for (int i = runLength - 8 + lanes; i < runLength; i += lanes)
        for (int step = 0; step < blockSteps; ++step)
            Store(run + step * polarRowLength + i, VecD{});

    VecD value[blockVectors], below[blockVectors];
    for (int i = 0; i < blockVectors; ++i) {
        value[i] = start[i];
        below[i] = VecD{};
    }
    for (int group = m; group < tableBands; group += lanes) { // bands of one transposition
        VecD squares[blockVectors][lanes] = {};
        // Unrolled, the squares stay in registers.
#pragma GCC unroll 8
        for (int row = 0; row < lanes; ++row) {
            const int l = group + row;
            if (l >= tableBands)
                continue;
            double *const array = arrays + LegendrePair(l, m) * stride;
            for (int i = 0; i < blockVectors; ++i) {
                if (l > m) {
                    // At l = m + 1, `below` is 0 and the divisor 1: P(m+1, m) = (2m+1) x P(m, m).
                    const VecD above = Quotient(
                        (2.0 * l - 1.0) * x[i] * value[i] - (l + m - 1.0) * below[i], l - m);
                    below[i] = value[i];
                    value[i] = above;
                }
                squares[i][row] = value[i] * normalisation[CoefficientIndex(l, m)];
                Store(array + i * lanes, value[i]);
            }
            PrefetchForWrite(array + prefetchDistance, blockSteps);
        }
        StoreTransposed(run + group - m, squares);
    }
}

/// All orders for the block of steps from `first` on.
inline void FillBlock(const LegendreTables &tables, int first)
{
    double cosines[blockSteps], sines[blockSteps];
    for (int k = 0; k < blockSteps; ++k) {
        const double x = first + k < tables.numSteps ? tables.cosines[first + k] : 0.0;
        cosines[k] = x;
        sines[k] = __builtin_sqrt((1.0 - x) * (x + 1.0));
    }
    VecD x[blockVectors], start[blockVectors];
    for (int i = 0; i < blockVectors; ++i) {
        x[i] = Load(cosines + i * lanes);
        start[i] = Broadcast(1.0);
    }
    for (int m = 0; m < tableBands; ++m) {
        FillOrder(tables, m, first, x, start);
        for (int i = 0; i < blockVectors; ++i)
            start[i] = start[i] * (-(2.0 * m + 1.0) * Load(sines + i * lanes));
    }
}

inline void FillLegendreTables(const LegendreTables &tables)
{
    for (int first = 0; first < tables.numSteps; first += blockSteps)
        FillBlock(tables, first);
}
