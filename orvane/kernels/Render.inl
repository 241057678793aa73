// Rendering: the bytes of the literal sum of up to 900 terms per pixel, out of 58 single-precision
// multiply-adds per pixel.
//
// A byte needs only the truncated value, so most pixels are decided by an approximation whose error
// is bounded. All pixels of a row share theta, and with it the polar factors q(l, |m|) = K P of all
// terms, so the value separates:
//
//   value * scale = A(0) + sum over m = 1..29 of  A(m) cos(m phi) + A(-m) sin(m phi),
//   A(m) = sum over l of  scale c(l, m) q(l, |m|)                        59 row sums, in double
//
//           64 columns: cos(m phi), sin(m phi) in single precision, 16 KB that stay in the cache
//          +-----------------------------------
//    rows  |  4 rows x 2 or 4 vectors of pixels at a time: a small matrix product that walks the
//    A(m)  |  orders from 29 down to 0, its sums in registers
//
// Three tiers decide a pixel: the single-precision value and its bound all but a few in a thousand;
// the double-precision value of the same form and its much smaller bound most of the rest; the
// literal sum what is left. A bounded tier takes the bytes of both ends of the interval: where they
// are equal, every value between has that byte too, truncation, offset and clamp being monotonic.
// So saturated pixels are decided however wide the interval is.
//
// The bounds. Let f be the scaled value as the literal order of roundings gives it and s its exact
// counterpart over the doubles of the tables; u = 2^-53, w = 2^-24, the largest relative errors of
// a rounding. A sum of products in which no term passes through more than n roundings is off by at
// most n u / (1 - n u) times the sum of the magnitudes [1]. That sum is at most S = sum |scale c
// q|, table entries of sine and cosine being at most 1 in magnitude. The squares of the basis
// functions of one band add up to (2l + 1) / 4 pi everywhere [2], so |q| < 2.17 for l <= 29; with 4
// for it, S <= 4 sum |scale c|.
//
//   f       q factor, * c, at most 900 additions, * scale: 903 roundings,         |f - s| <= 904 u
//   S double  scale c is exact (24 + 24 bits); at most 31 roundings within a row sum, whatever its
//           order, and 65 in the product of row sums and factors: off by 97 u S; taking an end of
//           the interval rounds by u S. In all less than 1024 u S <= 2^-41 sum |scale c|, which is
//           `doubleBound`.
//   single  row sum and factor are rounded to single precision: 2. From order m on, cosine before
//           sine, one product (where not fused) and 2 m + 1 additions: 2 m + 2. Taking an end of
//           the interval: 1. So the value is off from the exact product of the double row sums,
//           which is within the above of f, by at most (2 m + 5) w |A(m)| (1 + 2^-16), summed over
//           all m. The code takes (2 m + 6) w |A(m)|, the rest being ample for the roundings of the
//           bound itself, and twice `doubleBound`.
//
// Operations that underflow are off by 2^-126 at most, even where the processor flushes to zero:
// 2^-100 in `doubleBound` covers them all. If a bound is not finite (an infinite or NaN coefficient
// or scale) or too large, its tier is not asked.
//
// The literal sum leaves out terms with a coefficient of 0: all table entries are finite, so such a
// term is 0 and changes no sum but the sign of a zero, which no byte shows.
//
// Sources:
//   [1] N. J. Higham, "Accuracy and Stability of Numerical Algorithms", 2nd ed., chapter 3.
//   [2] The addition theorem, NIST Digital Library of Mathematical Functions, 14.30.9.

constexpr int wideLanes = ORVANE_VECTOR_BYTES / 4; ///< floats in a vector

typedef float VecW __attribute__((vector_size(ORVANE_VECTOR_BYTES)));
typedef int VecWI __attribute__((vector_size(ORVANE_VECTOR_BYTES)));
typedef unsigned char VecWBytes __attribute__((vector_size(wideLanes), aligned(1), may_alias));

constexpr int ordersLength = RenderScratch::ordersLength;
constexpr int sineStart = ordersLength / 2;
constexpr int tileColumns = RenderScratch::maxColumns;
constexpr int stripRows = 4;
constexpr int stripVectors = ORVANE_VECTOR_BYTES == 64 ? 4 : 2; // fills the registers
static_assert(RenderScratch::maxRows % stripRows == 0);
static_assert(tileColumns % (stripVectors * wideLanes) == 0);

// Only the bounded tiers may fuse: no stored bit depends on theirs.
inline VecD MultiplyAdd(VecD a, VecD b, VecD sum)
{
#if ORVANE_VECTOR_BYTES == 64
    return _mm512_fmadd_pd(a, b, sum);
#elif ORVANE_VECTOR_BYTES == 32
    return _mm256_fmadd_pd(a, b, sum);
#else
    return sum + a * b;
#endif
}
inline VecW MultiplyAdd(VecW a, VecW b, VecW sum)
{
#if ORVANE_VECTOR_BYTES == 64
    return _mm512_fmadd_ps(a, b, sum);
#elif ORVANE_VECTOR_BYTES == 32
    return _mm256_fmadd_ps(a, b, sum);
#else
    return sum + a * b;
#endif
}

inline VecW Broadcast(float value)
{
    return value - VecW{};
}
inline VecW LoadWide(const float *from)
{
    return *reinterpret_cast<const VecW *>(from);
}
inline void StoreWide(float *to, VecW value)
{
    *reinterpret_cast<VecW *>(to) = value;
}

inline VecD Magnitude(VecD value)
{
    return value < 0.0 ? -value : value;
}

/// Lane i of the result is the sum of the lanes of vectors[i], which are used up.
inline VecD SumLanes(VecD *vectors)
{
    Transpose(vectors);
    VecD sum = vectors[0];
    for (int i = 1; i < lanes; ++i)
        sum += vectors[i];
    return sum;
}

/// What all pixels of a call share.
struct RenderState {
    const RenderJob &job;
    RenderScratch &scratch;
    int orders = 1;           ///< of the set: 0..orders - 1
    int terms = 0;            ///< in scratch.terms
    double doubleBound = 0.0; ///< on the double-precision value's distance from the literal one
    bool doubleDecides = false;
    bool singleDecides = false;
    RenderCounts counts{};
};

// The set

/// Lists the terms, lays the scaled coefficients out like a polar row and derives the bounds.
inline void PrepareSet(RenderState &state)
{
    const RenderJob &job = state.job;
    RenderScratch &scratch = state.scratch;
    for (int i = 0; i < polarRowLength; ++i)
        scratch.cosineCoefficients[i] = scratch.sineCoefficients[i] = 0.0;
    double magnitude = 0.0;
    for (int l = 0, i = 0; i < job.count; ++l)
        for (int m = -l; m <= l && i < job.count; ++m, ++i) {
            const double coefficient = job.coefficients[i];
            if (coefficient == 0.0)
                continue;
            const int order = m < 0 ? -m : m;
            const int polarIndex = polarRunStart[order] + l - order;
            scratch.terms[state.terms++] = {coefficient, polarIndex,
                                            m < 0 ? sineStart + order : order};
            const double scaled = coefficient * job.scale;
            (m < 0 ? scratch.sineCoefficients : scratch.cosineCoefficients)[polarIndex] = scaled;
            magnitude += __builtin_fabs(scaled);
            state.orders = l + 1;
        }
    state.doubleBound = 0x1p-41 * magnitude + 0x1p-100;
    state.doubleDecides = magnitude < 0x1p500;
    // In single precision sums have to stay far from overflow and the ends of the clamp have to be
    // exact.
    state.singleDecides = magnitude < 0x1p90 && job.offset >= -(1 << 23) && job.offset <= 1 << 23;
}

// The second and third tier: one pixel

inline std::uint8_t ToByte(double scaled, std::int32_t offset)
{
    constexpr int low = -2147483647 - 1;
    constexpr int high = 2147483647;
    const int truncated = scaled >= high     ? high
                          : scaled <= low    ? low
                          : scaled != scaled ? 0
                                             : static_cast<int>(scaled);
    const long long sum = static_cast<long long>(truncated) + offset;
    return static_cast<std::uint8_t>(sum < 0 ? 0 : sum > 255 ? 255 : sum);
}

/// Cosines and, from sineStart on, sines.
inline const double *Values(const AngleFactors &factors)
{
    return reinterpret_cast<const double *>(&factors);
}

inline std::uint8_t DecidePixel(RenderState &state, int row, int column)
{
    const RenderScratch &scratch = state.scratch;
    const std::int32_t offset = state.job.offset;
    const double *factors = Values(scratch.columnFactors[column]);
    if (state.doubleDecides) {
        const double *sums = Values(scratch.rowSums[row]);
        VecD products{};
        for (int i = 0; i < ordersLength; i += lanes)
            products = MultiplyAdd(Load(sums + i), Load(factors + i), products);
        double value = 0.0;
        for (int i = 0; i < lanes; ++i)
            value += products[i];
        const std::uint8_t low = ToByte(value - state.doubleBound, offset);
        if (low == ToByte(value + state.doubleBound, offset)) {
            ++state.counts.rechecked;
            return low;
        }
    }
    const double *polar = scratch.polarRows[row];
    double sum = 0.0;
    for (int i = 0; i < state.terms; ++i) {
        const RenderScratch::Term &term = scratch.terms[i];
        sum += term.coefficient * (polar[term.polarIndex] * factors[term.factorIndex]);
    }
    ++state.counts.exact;
    return ToByte(sum * state.job.scale, offset);
}

// Rows

/// Fills the row sums of one row and the bound on its single-precision values.
inline void PrepareRow(const RenderState &state, int row)
{
    RenderScratch &scratch = state.scratch;
    const double *polar = scratch.polarRows[row];
    AngleFactors &sums = scratch.rowSums[row];
    VecD weighted{};
    for (int group = 0; group < sineStart; group += lanes) {
        VecD cosine[lanes];
        VecD sine[lanes];
        for (int i = 0; i < lanes; ++i) {
            const int m = group + i;
            VecD cosineSum{};
            VecD sineSum{};
            for (int l = m; l < state.orders; l += lanes) {
                const int at = polarRunStart[m] + l - m;
                const VecD q = Load(polar + at);
                cosineSum = MultiplyAdd(q, Load(scratch.cosineCoefficients + at), cosineSum);
                sineSum = MultiplyAdd(q, Load(scratch.sineCoefficients + at), sineSum);
            }
            cosine[i] = cosineSum;
            sine[i] = sineSum;
        }
        const VecD cosineSums = SumLanes(cosine);
        const VecD sineSums = SumLanes(sine);
        Store(sums.cosine + group, cosineSums);
        Store(sums.sine + group, sineSums);
        Store(scratch.narrowRowSums[row] + group, Narrow(cosineSums));
        Store(scratch.narrowRowSums[row] + sineStart + group, Narrow(sineSums));
        const VecD magnitudes = Magnitude(cosineSums) + Magnitude(sineSums);
        const VecD weights = 2.0 * Load(orderValues + group) + 6.0;
        weighted += weights * magnitudes;
    }
    double sum = 0.0;
    for (int i = 0; i < lanes; ++i)
        sum += weighted[i];
    scratch.rowBounds[row] = static_cast<float>(0x1p-24 * sum + 2.0 * state.doubleBound);
}

/// Collects up to maxRows different polar rows, beginning with image row `y`, and what belongs to
/// them. Rows of the image that share a polar row share all their pixels.
/// @return how many; the last one's image rows end at scratch.firstRows[count]
inline int PrepareRows(RenderState &state, std::int32_t y)
{
    const RenderJob &job = state.job;
    RenderScratch &scratch = state.scratch;
    const std::int32_t end = job.firstRow + job.rows;
    int count = 0;
    for (; y < end; ++y) {
        const double theta = y * job.dTheta;
        const int step = static_cast<int>(job.angles.angleScale * theta);
        const double *polar = job.polarRows + static_cast<std::ptrdiff_t>(step) * polarRowLength;
        if (count > 0 && polar == scratch.polarRows[count - 1])
            continue;
        if (count == RenderScratch::maxRows)
            break;
        scratch.polarRows[count] = polar;
        scratch.firstRows[count] = y;
        PrepareRow(state, count);
        ++count;
    }
    scratch.firstRows[count] = y;
    return count;
}

// Columns

inline void PrepareColumns(const RenderState &state, std::ptrdiff_t x, int columns)
{
    RenderScratch &scratch = state.scratch;
    for (int column = 0; column < columns; ++column)
        FillAngleFactors(state.job.angles, static_cast<double>(x + column) * state.job.dPhi,
                         state.orders, scratch.columnFactors[column]);
    for (int at = 0; at < ordersLength; at += lanes)
        for (int column = 0; column < columns; column += lanes) {
            VecD square[lanes];
            for (int i = 0; i < lanes; ++i)
                square[i] = Load(Values(scratch.columnFactors[column + i]) + at);
            Transpose(square);
            for (int i = 0; i < lanes; ++i)
                Store(scratch.narrowColumnFactors[at + i] + column, Narrow(square[i]));
        }
}

// The first tier

/// Single-precision values of one strip of rows in a tile.
struct Strip {
    alignas(64) float values[stripRows][tileColumns];
};

/// The matrix product of row sums and column factors, from the highest order down to 0.
inline void FillStrip(const RenderState &state, int row, Strip &strip)
{
    const RenderScratch &scratch = state.scratch;
    for (int column = 0; column < tileColumns; column += stripVectors * wideLanes) {
        VecW values[stripRows][stripVectors] = {};
        for (int m = state.orders - 1; m > 0; --m)
            for (int at = m; at < ordersLength; at += sineStart) {
                const float *factors = scratch.narrowColumnFactors[at] + column;
                for (int r = 0; r < stripRows; ++r) {
                    const VecW sum = Broadcast(scratch.narrowRowSums[row + r][at]);
                    for (int v = 0; v < stripVectors; ++v)
                        values[r][v] =
                            MultiplyAdd(sum, LoadWide(factors + v * wideLanes), values[r][v]);
                }
            }
        for (int r = 0; r < stripRows; ++r)
            for (int v = 0; v < stripVectors; ++v)
                StoreWide(strip.values[r] + column + v * wideLanes,
                          values[r][v] + scratch.narrowRowSums[row + r][0]);
    }
}

/// Bytes, not yet narrowed, of scaled values.
inline VecWI ToBytes(VecW scaled, std::int32_t offset)
{
    const VecW lowest = Broadcast(static_cast<float>(-offset));
    const VecW highest = Broadcast(static_cast<float>(255 - offset));
    VecW clamped = scaled < lowest ? lowest : scaled;
    clamped = clamped > highest ? highest : clamped;
    return __builtin_convertvector(clamped, VecWI) + offset;
}
inline void StoreBytes(std::uint8_t *to, VecWI bytes)
{
    *reinterpret_cast<VecWBytes *>(to) = __builtin_convertvector(bytes, VecWBytes);
}
inline bool AnyBit(VecWI vector)
{
    int bits = 0;
    for (int i = 0; i < wideLanes; ++i)
        bits |= vector[i];
    return bits != 0;
}

/// Fills the bytes of one row of a tile.
inline void FillPixels(RenderState &state, int row, const float *values, int columns,
                       std::uint8_t *pixels)
{
    const std::int32_t offset = state.job.offset;
    const VecW bound = Broadcast(state.scratch.rowBounds[row]);
    VecWI open{};
    for (int column = 0; column < tileColumns; column += wideLanes) {
        const VecW value = LoadWide(values + column);
        const VecWI low = ToBytes(value - bound, offset);
        open |= low ^ ToBytes(value + bound, offset);
        StoreBytes(pixels + column, low);
    }
    if (!AnyBit(open))
        return;
    std::uint8_t high[tileColumns];
    for (int column = 0; column < tileColumns; column += wideLanes)
        StoreBytes(high + column, ToBytes(LoadWide(values + column) + bound, offset));
    for (int column = 0; column < columns; ++column)
        // cppcheck-suppress uninitvar ; StoreBytes has filled whole vectors of it
        if (pixels[column] != high[column])
            pixels[column] = DecidePixel(state, row, column);
}

/// Writes the pixels of one row of a tile to all image rows that share them.
inline void WritePixels(const RenderState &state, int row, std::ptrdiff_t x, int columns,
                        const std::uint8_t *pixels)
{
    const RenderScratch &scratch = state.scratch;
    for (std::int32_t y = scratch.firstRows[row]; y < scratch.firstRows[row + 1]; ++y) {
        std::uint8_t *to = state.job.image + y * state.job.imageWidth + x;
        if (columns == tileColumns) // one vector instead of a call
            __builtin_memcpy(to, pixels, tileColumns);
        else
            __builtin_memcpy(to, pixels, columns);
    }
}

inline void RenderTile(RenderState &state, int rows, std::ptrdiff_t x, int columns)
{
    Strip strip;
    alignas(64) std::uint8_t pixels[tileColumns];
    for (int row = 0; row < rows; ++row) {
        if (state.singleDecides) {
            if (row % stripRows == 0)
                FillStrip(state, row, strip);
            FillPixels(state, row, strip.values[row % stripRows], columns, pixels);
        } else {
            for (int column = 0; column < columns; ++column)
                pixels[column] = DecidePixel(state, row, column);
        }
        WritePixels(state, row, x, columns, pixels);
    }
}

inline RenderCounts Render(const RenderJob &job)
{
    RenderScratch &scratch = *job.scratch;
    RenderState state{job, scratch};
    PrepareSet(state);
    // What no column fills is read, times 0 or for nobody.
    __builtin_memset(scratch.columnFactors, 0, sizeof scratch.columnFactors);
    __builtin_memset(scratch.narrowColumnFactors, 0, sizeof scratch.narrowColumnFactors);

    const std::int32_t rowEnd = job.firstRow + job.rows;
    const std::int32_t columnEnd = job.firstColumn + job.columns;
    for (std::int32_t y = job.firstRow; y < rowEnd;) {
        const int rows = PrepareRows(state, y);
        for (std::ptrdiff_t x = job.firstColumn; x < columnEnd; x += tileColumns) {
            const std::ptrdiff_t left = columnEnd - x;
            const int columns = left < tileColumns ? static_cast<int>(left) : tileColumns;
            PrepareColumns(state, x, columns);
            RenderTile(state, rows, x, columns);
        }
        y = scratch.firstRows[rows];
    }
    return state.counts;
}
