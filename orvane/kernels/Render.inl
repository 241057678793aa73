// Rendering: the bytes of the literal sum of up to 900 terms per pixel, out of about 11
// single-precision operations per pixel.
//
// A byte needs only the truncated value, so most pixels are decided by an approximation whose error
// is bounded. With the row sums A and B (RowSums.inl) of cosine and sine the value separates:
//
//   value * scale = A(0) + sum over m = 1..29 of  A(m) cos(m phi) + B(m) sin(m phi)
//
// A group of rows at a time:
//
//    coefficients, polar entries --> row sums (double) --> row sums (single)
//                                        |                    |   factors of the first segment
//                                        |                    v
//                                        |     sums of the classes --transform--> 4 rows of values
//                                        v                                             |
//                 literal sum <--- double value <------ open pixels <------ bytes of both ends
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
// most n u / (1 - n u) times the sum of the magnitudes [1].
//
// Double precision. That sum is at most M = sum |scale c q|, table entries of sine and cosine being
// at most 1 in magnitude. The squares of the basis functions of one band add up to (2l + 1) / 4 pi
// everywhere [2], so |q| < 2.17 for l <= 29; with 4 for it, M <= 4 sum |scale c|.
//
//   literal     q times factor, times c, at most 900 additions, times scale: 903 roundings, so that
//               |f - s| <= 904 u M.
//
//   separated   scale c is exact (24 + 24 bits); at most 32 roundings within a row sum, whatever
//               its order, and 65 in the sum of row sums times factors: off by 98 u M. Taking an
//               end of the interval rounds by u M.
//
// Together less than 1024 u M <= 2^-41 sum |scale c|: `doubleBound`.
//
// Single precision. A term passes, where rows are cut into S segments,
//
//                                                          S =  16    8    4    2    1
//   the narrowing of row sum and factor                          2    2    2    2    2
//   a product, where not fused                                   1    1    1    1    1
//   the additions of the longest class: two for each of its      8   16   30   30   58
//       orders (4, 8, 15, 15, 29), or one where Q is not needed
//   the transform: additions, a narrowed constant, a product     6    5    2    1    0
//   taking an end of the interval                                1    1    1    1    1
//                                                     n =       18   26   37   36   62
//
// roundings. The term of A(m) reaches a pixel as cos(m phi) cos(b) A(m) - sin(m phi) sin(b) A(m),
// b the turn of the segment, and magnitudes of these add up to |A(m)| at most; the same holds for
// B(m). So the value is off from the exact product of the double row sums by at most
// (n w (1 + 2^-16) + turnError) R, R the sum of all |A(m)| and |B(m)|. The code takes n + 1 for n,
// which is ample for the roundings of the bound itself, and twice `doubleBound`.
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

constexpr int SegmentRoundings(int segments)
{
    return segments == 16 ? 18 : segments == 8 ? 26 : segments == 4 ? 37 : segments == 2 ? 36 : 62;
}

constexpr int groupsAtATime = ORVANE_VECTOR_BYTES == 64 ? 2 : 1; // as registers allow
constexpr int stripRows = ORVANE_VECTOR_BYTES == 64 ? 8 : 4;     // fills the registers
static_assert(stripRows <= maxStripRows && rowGroup % stripRows == 0);
/// Vectors of so many rows that a strip has.
template <int rows>
constexpr int stripVectors = stripRows < rowGroup / rows ? stripRows : rowGroup / rows;

typedef int VecWI __attribute__((vector_size(ORVANE_VECTOR_BYTES)));
typedef unsigned char VecBytes
    __attribute__((vector_size(ORVANE_VECTOR_BYTES), aligned(1), may_alias));

/// One summand of a value: coefficient * (polar row entry * angle factor).
struct RenderTerm {
    double coefficient;
    std::int32_t polarIndex;
    std::int32_t order; ///< signed: cosine for 0 and above
};

/// What the pixels of a call share, in the order of its making; one lives at a time.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct RenderState {
    // The arrays stay as they are: what is read of them is written first.
    // cppcheck-suppress uninitMemberVar
    explicit RenderState(const RenderJob &job) : job(job) {}

    const RenderJob &job;
    alignas(64) double scaled[tableCoefficients]; ///< coefficients times scale
    RenderTerm terms[tableCoefficients];          ///< filled by the first literal sum
    int termCount = -1;
    double doubleBound = 0.0; ///< on the double-precision value's distance from the literal one
    bool doubleDecides = false;
    bool singleDecides = false;
    float singleWeight = 0.0f; ///< of R in the bound of the single-precision value
    RenderCounts counts{};

    // The group of rows at hand.
    int firstRow = 0; ///< among the different polar rows
    int rows = 0;
    const RowSums *sums = nullptr;
    SlotSums slotSums;
    float bounds[rowGroup + 4]; ///< four are read at a time
};

// The set

/// Scales the coefficients and derives the bounds.
inline void PrepareSet(RenderState &state)
{
    const RenderJob &job = state.job;
    const int count = job.count;
    const double scale = job.scale;
    VecD magnitudes[2] = {};
    int i = 0;
    for (; i + 2 * lanes <= count; i += 2 * lanes)
        for (int which = 0; which < 2; ++which) {
            const VecD scaled = Widen(Load(job.coefficients + i + which * lanes)) * scale;
            Store(state.scaled + i + which * lanes, scaled);
            magnitudes[which] += Magnitude(scaled);
        }
    double magnitude = 0.0;
    for (; i < count; ++i) {
        state.scaled[i] = job.coefficients[i] * scale;
        magnitude += __builtin_fabs(state.scaled[i]);
    }
    for (; i < job.bands * job.bands; ++i)
        state.scaled[i] = 0.0;
    for (int lane = 0; lane < lanes; ++lane)
        magnitude += magnitudes[0][lane] + magnitudes[1][lane];
    state.doubleBound = 0x1p-41 * magnitude + 0x1p-100;
    state.doubleDecides = magnitude < 0x1p500;
    // In single precision values have to stay within 31 bits, and saturate to 16 bits where adding
    // the offset leaves them beyond a byte. A value is below 4 times `magnitude`.
    state.singleDecides = magnitude < 0x1p28 && job.offset >= -32000 && job.offset <= 32000;
    const double roundings = SegmentRoundings(job.columns->segments) + 1;
    state.singleWeight = static_cast<float>(roundings * 0x1p-24 + job.columns->turnError);
}

// The second and third tier

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

/// The double-precision values of one column in all rows of the group.
inline void SumColumn(const RenderState &state, const std::int32_t *index,
                      double (&values)[rowGroup])
{
    const AngleTables &angles = state.job.angles;
    const RowSums &sums = *state.sums;
    // Four sums, for the latency of an addition: of cosines and sines, odd orders and even.
    VecD cosines[2][groupVectors];
    VecD sines[2][groupVectors] = {};
    for (int v = 0; v < groupVectors; ++v) {
        cosines[0][v] = Load(sums.cosine[0] + v * lanes);
        cosines[1][v] = VecD{};
    }
    const auto add = [&](int m, int which) __attribute__((always_inline))
    {
        const VecD cosine = Broadcast(angles.cosLut[index[m]]);
        const VecD sine = Broadcast(angles.sinLut[index[m]]);
        for (int v = 0; v < groupVectors; ++v) {
            const VecD a = Load(sums.cosine[m] + v * lanes);
            const VecD b = Load(sums.sine[m] + v * lanes);
            cosines[which][v] = MultiplyAdd(a, cosine, cosines[which][v]);
            sines[which][v] = MultiplyAdd(b, sine, sines[which][v]);
        }
    };
    int m = 1;
    for (; m + 1 < state.job.bands; m += 2) {
        add(m, 1);
        add(m + 1, 0);
    }
    if (m < state.job.bands)
        add(m, 1);
    for (int v = 0; v < groupVectors; ++v)
        Store(values + v * lanes, (cosines[0][v] + cosines[1][v]) + (sines[0][v] + sines[1][v]));
}

inline void ListTerms(RenderState &state)
{
    const RenderJob &job = state.job;
    state.termCount = 0;
    for (int l = 0, i = 0; l < job.bands; ++l)
        for (int m = -l; m <= l && i < job.count; ++m, ++i)
            if (job.coefficients[i] != 0.0f)
                state.terms[state.termCount++] = {job.coefficients[i],
                                                  PolarIndex(l, m < 0 ? -m : m), m};
}

/// The literal sum of one pixel of the group.
inline double SumTerms(RenderState &state, int row, const std::int32_t *index)
{
    const RenderJob &job = state.job;
    if (state.termCount < 0)
        ListTerms(state);
    const std::ptrdiff_t step = job.rows.steps[state.firstRow + row];
    const double *polar = job.polarRows + step * polarRowLength;
    double sum = 0.0;
    for (int i = 0; i < state.termCount; ++i) {
        const auto [coefficient, polarIndex, order] = state.terms[i];
        const double factor = order == 0  ? 1.0
                              : order > 0 ? job.angles.cosLut[index[order]]
                                          : job.angles.sinLut[index[-order]];
        sum += coefficient * (polar[polarIndex] * factor);
    }
    return sum * job.scale;
}

/// The byte of a pixel of the group whose double-precision value is `value`.
inline std::uint8_t DecidePixel(RenderState &state, int row, const std::int32_t *index,
                                double value)
{
    const std::int32_t offset = state.job.offset;
    if (state.doubleDecides) {
        const std::uint8_t low = ToByte(value - state.doubleBound, offset);
        if (low == ToByte(value + state.doubleBound, offset)) {
            ++state.counts.rechecked;
            return low;
        }
    }
    ++state.counts.exact;
    return ToByte(SumTerms(state, row, index), offset);
}

inline const std::int32_t *ColumnIndices(const RenderState &state, std::ptrdiff_t column)
{
    return state.job.columnArrays.indices + column * columnOrders;
}

__attribute__((noinline)) std::uint8_t RecheckPixel(RenderState &state, int row,
                                                    std::ptrdiff_t column)
{
    double values[rowGroup];
    const std::int32_t *index = ColumnIndices(state, column);
    SumColumn(state, index, values);
    return DecidePixel(state, row, index, values[row]);
}

/// Decides a lone column in all rows of the group.
__attribute__((noinline)) void FillLoneColumn(RenderState &state, std::ptrdiff_t column)
{
    const RenderJob &job = state.job;
    double values[rowGroup];
    const std::int32_t *index = ColumnIndices(state, column);
    SumColumn(state, index, values);
    for (int row = 0; row < state.rows; ++row) {
        const std::uint8_t byte = DecidePixel(state, row, index, values[row]);
        const std::int32_t *firstRows = job.rows.firstRows + state.firstRow + row;
        for (std::int32_t y = firstRows[0]; y < firstRows[1]; ++y)
            job.image[y * job.imageWidth + column] = byte;
    }
}

// The first tier

/// Narrows the sums of the group and derives the bounds of its single-precision values.
inline void NarrowSums(RenderState &state)
{
    const RowSums &sums = *state.sums;
    const PictureColumns &columns = *state.job.columns;
    for (int at = 0; at < rowGroup; at += lanes) {
        Store(state.slotSums.zonal + at, Narrow(Load(sums.cosine[0] + at)));
        for (int slot = 0; slot + 1 < state.job.bands; ++slot) {
            const auto [order, sign] = columns.slots[slot];
            auto &to = state.slotSums.slots[slot];
            Store(to.cosine + at, Narrow(Load(sums.cosine[order] + at)));
            Store(to.sine + at, Narrow(Load(sums.sine[order] + at)) * sign);
        }
        const VecD bound = Load(sums.magnitude + at) * static_cast<double>(state.singleWeight) +
                           2.0 * state.doubleBound;
        Store(state.bounds + at, Narrow(bound));
    }
}

/// The sums of class c of one vector of columns, whose factors are given, in a strip of rows.
template <int segments, int rows, int c>
inline void SumClass(const RenderState &state, int strip, const float *factors,
                     VecW (&classSums)[stripVectors<rows>][segments])
{
    constexpr bool needsQ = c > 0 && 2 * c < segments;
    constexpr int vectors = stripVectors<rows>;
    // Sums of cosines and of sines, apart where registers allow: few sums would wait for each other.
    constexpr bool isApart = !needsQ || 2 * vectors <= stripRows;
    const SlotSums &sums = state.slotSums;
    VecW p[2][vectors] = {};
    VecW q[2][vectors] = {};
    if constexpr (c == 0)
        for (int r = 0; r < vectors; ++r)
            p[0][r] = SpreadRows<rows>(sums.zonal + strip + r * rows);
    const std::int32_t *ends = state.job.columns->classEnds;
    const int end = ends[c];
    for (int slot = c == 0 ? 0 : ends[c - 1]; slot < end; ++slot) {
        const VecW cosine = LoadWide(factors + slot * 2 * wideLanes);
        const VecW sine = LoadWide(factors + slot * 2 * wideLanes + wideLanes);
        for (int r = 0; r < vectors; ++r) {
            const auto &of = sums.slots[slot];
            const VecW a = Held(SpreadRows<rows>(of.cosine + strip + r * rows));
            const VecW b = Held(SpreadRows<rows>(of.sine + strip + r * rows));
            p[0][r] = MultiplyAdd(a, cosine, p[0][r]);
            if constexpr (needsQ)
                q[0][r] = MultiplyAdd(b, cosine, q[0][r]);
            p[isApart][r] = MultiplyAdd(b, sine, p[isApart][r]);
            if constexpr (needsQ)
                q[isApart][r] = MultiplySubtract(a, sine, q[isApart][r]);
        }
    }
    for (int r = 0; r < vectors; ++r) {
        classSums[r][ClassSum(c)] = isApart ? p[0][r] + p[1][r] : p[0][r];
        if constexpr (needsQ)
            classSums[r][ClassSum(c) + 1] = isApart ? q[0][r] + q[1][r] : q[0][r];
    }
}

template <int segments, int rows, int... c>
inline void SumClasses(const RenderState &state, int strip, const float *factors,
                       VecW (&classSums)[stripVectors<rows>][segments],
                       std::integer_sequence<int, c...>)
{
    (SumClass<segments, rows, c>(state, strip, factors, classSums), ...);
}

/// The single-precision values of a strip of rows of the group, from `strip` on.
template <int segments, int rows>
__attribute__((noinline)) void FillStrip(const RenderState &state, int strip)
{
    const PictureColumns &columns = *state.job.columns;
    const RenderScratch &scratch = state.job.scratch;
    const int orders = state.job.bands - 1;
    const int last = (columns.segmentColumns - 1) / wideLanes;
    const int end = columns.firstSegment + columns.columns / columns.segmentColumns;
    const bool isWhole = end - columns.firstSegment == segments;
    const std::ptrdiff_t segmentFloats = rows * columns.segmentColumns;
    // What a vector writes beyond its segment is overwritten with the next segment's pixels: the
    // last vectors come first.
    for (int vector = last; vector >= 0; --vector) {
        const float *factors = state.job.columnArrays.factors +
                               static_cast<std::ptrdiff_t>(vector) * wideLanes * 2 * orders;
        constexpr int vectors = stripVectors<rows>;
        VecW classSums[vectors][segments];
        SumClasses<segments, rows>(state, strip, factors, classSums,
                                   std::make_integer_sequence<int, segments / 2 + 1>{});
        for (int r = 0; r < vectors; ++r) {
            VecW pixels[segments];
            SegmentTransform<segments>::Do(classSums[r], 1, pixels);
            float *to = scratch.values + r * rows * scratch.valueStride + vector * wideLanes;
            if (isWhole)
                for (int j = 0; j < segments; ++j, to += segmentFloats)
                    StoreWide(to, pixels[j]);
            else
                for (int j = columns.firstSegment; j < end; ++j, to += segmentFloats)
                    StoreWide(to, pixels[j]);
        }
    }
}

/// @tparam rows in a vector; VectorRows tells for which cuts
template <int rows> inline void FillStrip(const RenderState &state, int strip)
{
    const int segments = state.job.columns->segments;
    if (segments == 16)
        return FillStrip<16, rows>(state, strip);
    if constexpr (rows == 1 || wideLanes == 4 * rows) {
        if (segments == 8)
            return FillStrip<8, rows>(state, strip);
        if (segments == 4)
            return FillStrip<4, rows>(state, strip);
    }
    if constexpr (rows == 1) {
        if (segments == 2)
            return FillStrip<2, rows>(state, strip);
        FillStrip<1, rows>(state, strip);
    }
}

#if ORVANE_VECTOR_BYTES == 64
#define ORVANE_VECTOR_CALL(name) _mm512_##name
typedef __m512i VecInteger;
#elif ORVANE_VECTOR_BYTES == 32
#define ORVANE_VECTOR_CALL(name) _mm256_##name
typedef __m256i VecInteger;
#else
#define ORVANE_VECTOR_CALL(name) _mm_##name
typedef __m128i VecInteger;
#endif

/// The bytes of four vectors of values. Packing saturates, which clamps, and works within the
/// quarters of a vector: four pixels stay together, in the order of PackedOrder.
inline VecInteger PackBytes(const VecW (&values)[4], VecInteger offsets)
{
    VecInteger whole[4];
    for (int i = 0; i < 4; ++i)
        whole[i] = reinterpret_cast<VecInteger>(__builtin_convertvector(values[i], VecWI));
    const VecInteger low = ORVANE_VECTOR_CALL(packs_epi32)(whole[0], whole[1]);
    const VecInteger high = ORVANE_VECTOR_CALL(packs_epi32)(whole[2], whole[3]);
    return ORVANE_VECTOR_CALL(packus_epi16)(ORVANE_VECTOR_CALL(adds_epi16)(low, offsets),
                                            ORVANE_VECTOR_CALL(adds_epi16)(high, offsets));
}

/// Where packing puts four pixels, and where they come from, of vectors of so many rows.
template <int rows> constexpr int PackedPlace(int place)
{
    constexpr int share = quarters / rows; // of each row in a vector
    const int row = place / (4 * share);
    return (row * share + place % share) * 4 + place / share % 4;
}
template <int rows> constexpr int OrderedPlace(int packed)
{
    constexpr int share = quarters / rows;
    const int row = packed / 4 / share;
    return (row * 4 + packed % 4) * share + packed / 4 % share;
}

/// Stores the bytes of each row from a column on.
template <int rows, int... place>
inline void StoreBytes(std::uint8_t *const (&to)[rows], int column, VecInteger packed,
                       std::integer_sequence<int, place...>)
{
    const auto fours = reinterpret_cast<VecWI>(packed);
    const VecWI ordered = __builtin_shufflevector(fours, fours, PackedPlace<rows>(place)...);
    constexpr int length = ORVANE_VECTOR_BYTES / rows;
    for (int row = 0; row < rows; ++row)
        __builtin_memcpy(to[row] + column,
                         reinterpret_cast<const std::uint8_t *>(&ordered) + row * length, length);
}

/// A bit for each byte that differs.
inline std::uint64_t Differences(VecInteger a, VecInteger b)
{
#if ORVANE_VECTOR_BYTES == 64
    return _mm512_cmpneq_epi8_mask(a, b);
#elif ORVANE_VECTOR_BYTES == 32
    return ~static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(a, b)));
#else
    return 0xffff ^ _mm_movemask_epi8(_mm_cmpeq_epi8(a, b));
#endif
}

/// Fills the bytes of the rows of a vector, from `firstRow` of the group on.
template <int rows>
inline void FillPixels(RenderState &state, int firstRow, const float *values,
                       std::uint8_t *const (&to)[rows])
{
    const RenderJob &job = state.job;
    const int columns = job.columns->columns;
    const VecW bound = SpreadRows<rows>(state.bounds + firstRow);
    const VecInteger offsets = ORVANE_VECTOR_CALL(set1_epi16)(static_cast<short>(job.offset));
    constexpr int block = ORVANE_VECTOR_BYTES / rows; // columns of four vectors
    for (int first = 0; first < columns; first += block, values += ORVANE_VECTOR_BYTES) {
        VecW low[4];
        VecW high[4];
        for (int i = 0; i < 4; ++i) {
            const VecW value = LoadWide(values + i * wideLanes);
            low[i] = value - bound;
            high[i] = value + bound;
        }
        const VecInteger packed = PackBytes(low, offsets);
        std::uint64_t open = Differences(packed, PackBytes(high, offsets));
        StoreBytes<rows>(to, first, packed, std::make_integer_sequence<int, wideLanes>{});
        for (; __builtin_expect(open != 0, 0); open &= open - 1) {
            const int bit = __builtin_ctzll(open);
            const int place = 4 * OrderedPlace<rows>(bit / 4) + bit % 4;
            const int row = place / block;
            const int column = first + place % block;
            if (column < columns && firstRow + row < state.rows)
                to[row][column] = RecheckPixel(state, firstRow + row, column);
        }
    }
}

/// The image rows that share a row of the group.
struct ImageRows {
    ImageRows(const RenderJob &job, int row)
        : first(job.image + job.rows.firstRows[row] * job.imageWidth),
          end(job.image + job.rows.firstRows[row + 1] * job.imageWidth)
    {
    }
    std::uint8_t *first;
    std::uint8_t *end;
};

/// Decides the columns that are not lone.
/// @tparam rows in a vector
template <int rows> inline void FillStrips(RenderState &state)
{
    const RenderJob &job = state.job;
    constexpr int strip = stripVectors<rows> * rows;
    for (int first = 0; first < state.rows; first += strip) {
        FillStrip<rows>(state, first);
        for (int row = first; row < first + strip && row < state.rows; row += rows) {
            // The bytes of a vector's several rows end with these, and go where they belong at once.
            std::uint8_t *to[rows];
            for (int i = 0; i < rows; ++i)
                to[i] = rows > 1 && row + i < state.rows
                            ? ImageRows(job, state.firstRow + row + i).first
                            : job.scratch.bytes;
            FillPixels<rows>(state, row,
                             job.scratch.values + (row - first) * job.scratch.valueStride, to);
            for (int i = 0; i < rows && row + i < state.rows; ++i) {
                const ImageRows image(job, state.firstRow + row + i);
                for (std::uint8_t *y = image.first; y != image.end; y += job.imageWidth)
                    if (y != to[i])
                        __builtin_memcpy(y, to[i], job.columns->columns);
            }
        }
    }
}

inline void RenderGroup(RenderState &state)
{
    const RenderJob &job = state.job;
    if (!state.singleDecides) {
        for (std::int32_t column = 0; column < job.columns->columns; ++column)
            FillLoneColumn(state, column);
        return;
    }
    NarrowSums(state);
    if (job.columns->vectorRows == 1)
        FillStrips<1>(state);
    else if (job.columns->vectorRows == quarters)
        FillStrips<quarters>(state);
    else if constexpr (quarters > 2)
        FillStrips<2>(state);
    for (int i = 0; i < job.columns->loneColumns; ++i)
        FillLoneColumn(state, job.columnArrays.lone[i]);
}

RenderCounts Render(const RenderJob &job)
{
    RenderState state(job);
    PrepareSet(state);
    const GroupEntry *entries = job.rows.groupEntries;
    const int count = job.rows.count;
    RowSums sums[groupsAtATime];
    for (int first = 0; first < count;) {
        const bool isOneGroup = groupsAtATime == 1 || count - first <= rowGroup;
        if (isOneGroup)
            SumRows<1>(entries, state.scaled, job.bands, sums);
        else
            SumRows<groupsAtATime>(entries, state.scaled, job.bands, sums);
        for (int g = 0; g < (isOneGroup ? 1 : groupsAtATime); ++g) {
            entries += GroupEntries(job.bands);
            state.sums = &sums[g];
            state.firstRow = first;
            state.rows = count - first < rowGroup ? count - first : rowGroup;
            RenderGroup(state);
            first += state.rows;
        }
    }
    return state.counts;
}
