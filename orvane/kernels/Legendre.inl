// The Legendre tables: theta steps are the lanes, one pass per order m gives all its bands.
//
// A block of steps goes down the bands of one order in registers, by the recurrence
//
//                       lanes = steps k, k+1, k+2 ...
//     P(m, m)           that of m - 1 times one more factor of the sine
//     P(m+1, m)         from P(m, m)
//     P(m+2, m)         from P(m+1, m) and P(m, m)
//     ...               down to P(29, m)
//
// and writes each value to the arrays of (l, m) and (l, -m). Every few bands, the values times
// K(l, m) are transposed into the run of m in the polar rows:
//
//     registers  l     k  k+1  k+2 ...               polar row k      l  l+1  l+2 ...
//                l+1   k  k+1  k+2 ...      ->                 k+1    l  l+1  l+2 ...
//                l+2   k  k+1  k+2 ...                         k+2    l  l+1  l+2 ...
//
// The work is bound by its stores, some 10 kilobytes a step into up to 60 arrays at once and a row
// for every step: more places than the processor follows on its own. What a later block will write
// is therefore fetched ahead of it.
//
// The bits are those of the recurrence run for each (l, m) on its own: to reach a large l it passes
// through every smaller one with the same operations, and its start value for m + 1 is the one for
// m times one more factor.

constexpr int chunkSteps = 1024;                 ///< steps that go through all orders together
constexpr int blockVectors = lanes < 8 ? 4 : 2;  ///< as many as the registers hold
constexpr int blockSteps = blockVectors * lanes; ///< a divisor of chunkSteps
constexpr int stepsAhead = 32;                   ///< how far ahead of a block is fetched

/// The theta steps from `first` on, of which a block takes the first blockSteps.
struct StepBlock {
    int first;
    int steps; ///< that are left
    int rows;  ///< that are left of the polar rows, which end earlier
};

/// The first `count` lanes, all of them where there are more; the others are 0.
inline VecD LoadFirst(const double *from, int count)
{
    if (count >= lanes)
        return Load(from);
    VecD value{};
    for (int lane = 0; lane < count; ++lane)
        value[lane] = from[lane];
    return value;
}

/// Stores the first `count` lanes, all of them where there are more.
inline void StoreFirst(double *to, VecD value, int count)
{
    if (count >= lanes) {
        Store(to, value);
        return;
    }
    for (int lane = 0; lane < count; ++lane)
        to[lane] = value[lane];
}

/// Fetches `count` values that are about to be written.
inline void Fetch(const double *from, int count)
{
    for (int i = 0; i < count; i += 8)
        __builtin_prefetch(from + i, 1);
}

/// Stores the block's values of one band and order.
template <bool isWhole> inline void StoreBlock(double *array, const VecD *values, StepBlock block)
{
    double *to = array + block.first;
    if (block.steps >= stepsAhead + blockSteps)
        Fetch(to + stepsAhead, blockSteps);
    for (int i = 0; i < blockVectors; ++i)
        StoreFirst(to + i * lanes, values[i], isWhole ? lanes : block.steps - i * lanes);
}

/// All bands of order m for one block, the run of the polar rows included.
/// @param start P(m, m)
/// @tparam isWhole whether the block has all its steps, and polar rows for all or none
template <bool isWhole>
inline void FillOrder(const LegendreTables &tables, int m, StepBlock block, const double *start)
{
    VecD x[blockVectors], value[blockVectors], below[blockVectors];
    for (int i = 0; i < blockVectors; ++i) {
        const int left = isWhole ? lanes : block.steps - i * lanes;
        x[i] = LoadFirst(tables.cosines + block.first + i * lanes, left);
        value[i] = Load(start + i * lanes);
        below[i] = VecD{};
    }
    double *run =
        tables.polarRows + static_cast<long long>(block.first) * polarRowLength + polarRunStart[m];
    if (block.rows >= stepsAhead + blockSteps)
        for (int step = stepsAhead; step < stepsAhead + blockSteps; ++step)
            Fetch(run + step * polarRowLength, tableBands - m);

    // Copies: to the compiler, each store might change `tables`.
    double *const *const arrays = tables.legendre;
    const double *const normalisation = tables.normalisation;
    for (int group = m; group < tableBands; group += lanes) { // bands of one transposition
        VecD squares[blockVectors][lanes] = {};
        // Unrolled, the squares stay in registers.
#pragma GCC unroll 8
        for (int row = 0; row < lanes; ++row) {
            if (group + row >= tableBands)
                continue;
            const int l = group + row;
            const int index = CoefficientIndex(l, m);
            for (int i = 0; i < blockVectors; ++i) {
                if (l > m) {
                    // For l = m + 1 it takes 0 from the product and divides by 1: no change.
                    const VecD above =
                        ((2.0 * l - 1.0) * x[i] * value[i] - (l + m - 1.0) * below[i]) /
                        static_cast<double>(l - m);
                    below[i] = value[i];
                    value[i] = above;
                }
                squares[i][row] = value[i] * normalisation[index];
            }
            StoreBlock<isWhole>(arrays[index], value, block);
            if (m > 0)
                StoreBlock<isWhole>(arrays[index - 2 * m], value, block);
        }
        if (block.rows <= 0)
            continue;
        for (int i = 0; i < blockVectors; ++i) {
            Transpose(squares[i]);
            for (int lane = 0; lane < lanes; ++lane) {
                const int step = i * lanes + lane;
                if (isWhole || step < block.rows)
                    Store(run + step * polarRowLength + group - m, squares[i][lane]);
            }
        }
    }
}

inline void FillLegendreTables(const LegendreTables &tables)
{
    double sine[chunkSteps], start[chunkSteps];
    for (int chunk = 0; chunk < tables.numSteps; chunk += chunkSteps) {
        const int left = tables.numSteps - chunk;
        const int steps = left < chunkSteps ? left : chunkSteps;
        for (int k = 0; k < steps; ++k) {
            const double x = tables.cosines[chunk + k];
            sine[k] = __builtin_sqrt((1.0 - x) * (x + 1.0));
        }
        for (double &value : start)
            value = 1.0;
        for (int m = 0; m < tableBands; ++m) {
            for (int k = 0; k < steps; k += blockSteps) {
                const int first = chunk + k;
                const StepBlock block{first, tables.numSteps - first, tables.polarSteps - first};
                if (block.steps >= blockSteps && (block.rows >= blockSteps || block.rows <= 0))
                    FillOrder<true>(tables, m, block, start + k);
                else
                    FillOrder<false>(tables, m, block, start + k);
            }
            for (int k = 0; k < steps; ++k)
                start[k] = start[k] * (-(2.0 * m + 1.0) * sine[k]);
        }
    }
}
