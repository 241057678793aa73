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

typedef int VecWI __attribute__((vector_size(ORVANE_VECTOR_BYTES)));
typedef unsigned char VecBytes __attribute__((vector_size(ORVANE_VECTOR_BYTES)));
typedef unsigned char VecBytesUnaligned
    __attribute__((vector_size(ORVANE_VECTOR_BYTES), aligned(1), may_alias));

/// One summand of a value: coefficient * (polar row entry * angle factor).
struct RenderTerm {
    double coefficient;
    std::int32_t polarIndex;
    std::int32_t order; ///< signed: cosine for 0 and above
};

/// What the pixels of a call share.
struct RenderState {
    explicit RenderState(const RenderJob &job) : job(job) {} // and the arrays stay as they are

    const RenderJob &job;
    alignas(64) double scaled[tableCoefficients]; ///< coefficients times scale
    RenderTerm terms[tableCoefficients];          ///< filled by the first literal sum
    int termCount = -1;
    double doubleBound = 0.0; ///< on the double-precision value's distance from the literal one
    bool doubleDecides = false;
    bool singleDecides = false;
    float singleWeight = 0.0f; ///< of R in the bound of the single-precision value
    RowSums sums;              ///< of the group at hand
    SlotSums slotSums;
    float bounds[rowGroup];
    RenderCounts counts{};
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
    for (int which = 0; i + lanes <= count; i += lanes, which ^= 1) {
        const VecD scaled = Widen(Load(job.coefficients + i)) * scale;
        Store(state.scaled + i, scaled);
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
    VecD cosines[groupVectors];
    VecD sines[groupVectors] = {};
    for (int v = 0; v < groupVectors; ++v)
        cosines[v] = Load(state.sums.cosine[0] + v * lanes);
    for (int m = 1; m < state.job.bands; ++m)
        for (int v = 0; v < groupVectors; ++v) {
            const VecD cosine = Broadcast(angles.cosLut[index[m]]);
            const VecD sine = Broadcast(angles.sinLut[index[m]]);
            cosines[v] = MultiplyAdd(Load(state.sums.cosine[m] + v * lanes), cosine, cosines[v]);
            sines[v] = MultiplyAdd(Load(state.sums.sine[m] + v * lanes), sine, sines[v]);
        }
    for (int v = 0; v < groupVectors; ++v)
        Store(values + v * lanes, cosines[v] + sines[v]);
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

/// The literal sum of one pixel. `row` counts the different polar rows of the picture.
__attribute__((noinline)) double SumTerms(RenderState &state, int row, const std::int32_t *index)
{
    const RenderJob &job = state.job;
    if (state.termCount < 0)
        ListTerms(state);
    const double *polar =
        job.polarRows + static_cast<std::ptrdiff_t>(job.rows.steps[row]) * polarRowLength;
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

/// The byte of a pixel whose double-precision value is `value`.
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

__attribute__((noinline)) std::uint8_t RecheckPixel(RenderState &state, int firstRow, int row,
                                                    std::ptrdiff_t column)
{
    double values[rowGroup];
    const std::int32_t *index = ColumnIndices(state, column);
    SumColumn(state, index, values);
    return DecidePixel(state, firstRow + row, index, values[row]);
}

// The first tier

/// Narrows the sums of the group and derives the bounds of its single-precision values.
inline void NarrowSums(RenderState &state)
{
    const RowSums &sums = state.sums;
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

/// The single-precision values of a strip of rows of the group, from `strip` on.
template <int segments> inline void FillStrip(const RenderState &state, int strip)
{
    const PictureColumns &columns = *state.job.columns;
    const SlotSums &sums = state.slotSums;
    const int orders = state.job.bands - 1;
    const int last = (columns.segmentColumns - 1) / wideLanes;
    // What a vector writes beyond its segment is overwritten with the next segment's pixels: the
    // last vectors come first.
    for (int vector = last; vector >= 0; --vector) {
        const float *factors = state.job.columnArrays.factors +
                               static_cast<std::ptrdiff_t>(vector) * wideLanes * 2 * orders;
        VecW classSums[rowStrip][segments];
        int slot = 0;
        for (int c = 0; c <= segments / 2; ++c) {
            VecW p[rowStrip];
            VecW q[rowStrip];
            for (int r = 0; r < rowStrip; ++r) {
                p[r] = c == 0 ? BroadcastWide(sums.zonal[strip + r]) : VecW{};
                q[r] = VecW{};
            }
            const bool needsQ = c > 0 && 2 * c < segments;
            for (; slot < columns.classEnds[c]; ++slot) {
                const VecW cosine = LoadWide(factors + slot * 2 * wideLanes);
                const VecW sine = LoadWide(factors + slot * 2 * wideLanes + wideLanes);
                for (int r = 0; r < rowStrip; ++r) {
                    const VecW a = BroadcastWide(sums.slots[slot].cosine[strip + r]);
                    const VecW b = BroadcastWide(sums.slots[slot].sine[strip + r]);
                    p[r] = MultiplyAdd(a, cosine, p[r]);
                    p[r] = MultiplyAdd(b, sine, p[r]);
                    if (needsQ) {
                        q[r] = MultiplyAdd(b, cosine, q[r]);
                        q[r] = MultiplySubtract(a, sine, q[r]);
                    }
                }
            }
            for (int r = 0; r < rowStrip; ++r) {
                classSums[r][ClassSum(c)] = p[r];
                if (needsQ)
                    classSums[r][ClassSum(c) + 1] = q[r];
            }
        }
        for (int r = 0; r < rowStrip; ++r) {
            VecW pixels[segments];
            SegmentTransform<segments>::Do(classSums[r], 1, pixels);
            float *to =
                state.job.scratch.values + r * state.job.scratch.valueStride + vector * wideLanes;
            for (int j = 0; j < segments; ++j)
                StoreWide(to + static_cast<std::ptrdiff_t>(j) * columns.segmentColumns, pixels[j]);
        }
    }
}

inline void FillStrip(const RenderState &state, int strip)
{
    switch (state.job.columns->segments) {
    case 16:
        return FillStrip<16>(state, strip);
    case 8:
        return FillStrip<8>(state, strip);
    case 4:
        return FillStrip<4>(state, strip);
    case 2:
        return FillStrip<2>(state, strip);
    default:
        return FillStrip<1>(state, strip);
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

template <int... at> inline VecWI Unpacked(VecWI packed, std::integer_sequence<int, at...>)
{
    constexpr int quarters = ORVANE_VECTOR_BYTES / 16;
    return __builtin_shufflevector(packed, packed, (at % quarters * 4 + at / quarters)...);
}
/// Packed bytes in the order of the columns.
inline void StoreBytes(std::uint8_t *to, VecInteger packed)
{
    const VecWI ordered =
        Unpacked(reinterpret_cast<VecWI>(packed), std::make_integer_sequence<int, wideLanes>{});
    *reinterpret_cast<VecBytesUnaligned *>(to) = reinterpret_cast<VecBytes>(ordered);
}

inline bool AnyBit(VecWI vector)
{
    int bits = 0;
    for (int i = 0; i < wideLanes; ++i)
        bits |= vector[i];
    return bits != 0;
}

/// Fills the bytes of one row of the strip.
inline void FillPixels(RenderState &state, int firstRow, int row, const float *values)
{
    const RenderJob &job = state.job;
    const int columns = job.columns->columns;
    std::uint8_t *bytes = job.scratch.bytes;
    const VecW bound = BroadcastWide(state.bounds[row]);
    const VecInteger offsets = ORVANE_VECTOR_CALL(set1_epi16)(static_cast<short>(job.offset));
    const auto pack = [&](int column, VecW distance) __attribute__((always_inline))
    {
        VecW ends[4];
        for (int i = 0; i < 4; ++i)
            ends[i] = LoadWide(values + column + i * wideLanes) + distance;
        return PackBytes(ends, offsets);
    };
    VecWI open{};
    for (int column = 0; column < columns; column += ORVANE_VECTOR_BYTES) {
        const VecInteger low = pack(column, -bound);
        open |= reinterpret_cast<VecWI>(low) ^ reinterpret_cast<VecWI>(pack(column, bound));
        StoreBytes(bytes + column, low);
    }
    if (!AnyBit(open))
        return;
    std::uint8_t *high = bytes + job.scratch.valueStride;
    for (int column = 0; column < columns; column += ORVANE_VECTOR_BYTES)
        StoreBytes(high + column, pack(column, bound));
    for (int first = 0; first < columns; first += 64) {
        if (__builtin_memcmp(bytes + first, high + first, 64) == 0)
            continue;
        const int end = first + 64 < columns ? first + 64 : columns;
        for (int column = first; column < end; ++column)
            if (bytes[column] != high[column])
                bytes[column] = RecheckPixel(state, firstRow, row, column);
    }
}

/// Writes the pixels of a row to all image rows that share them.
inline void WritePixels(const RenderState &state, int row)
{
    const RenderJob &job = state.job;
    for (std::int32_t y = job.rows.firstRows[row]; y < job.rows.firstRows[row + 1]; ++y)
        __builtin_memcpy(job.image + y * job.imageWidth, job.scratch.bytes, job.columns->columns);
}

inline void RenderGroup(RenderState &state, int firstRow, int rows)
{
    const RenderJob &job = state.job;
    const PictureColumns &columns = *job.columns;
    if (!state.singleDecides) {
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns.columns; ++column)
                job.scratch.bytes[column] = RecheckPixel(state, firstRow, row, column);
            WritePixels(state, firstRow + row);
        }
        return;
    }
    NarrowSums(state);
    for (int strip = 0; strip < rows; strip += rowStrip) {
        FillStrip(state, strip);
        for (int row = strip; row < strip + rowStrip && row < rows; ++row) {
            FillPixels(state, firstRow, row,
                       job.scratch.values + (row - strip) * job.scratch.valueStride);
            WritePixels(state, firstRow + row);
        }
    }
    for (int i = 0; i < columns.loneColumns; ++i) {
        const std::int32_t column = job.columnArrays.lone[i];
        const std::int32_t *index = ColumnIndices(state, column);
        double values[rowGroup];
        SumColumn(state, index, values);
        for (int row = 0; row < rows; ++row) {
            const std::uint8_t byte = DecidePixel(state, firstRow + row, index, values[row]);
            const PictureRows &all = job.rows;
            for (std::int32_t y = all.firstRows[firstRow + row];
                 y < all.firstRows[firstRow + row + 1]; ++y)
                job.image[y * job.imageWidth + column] = byte;
        }
    }
}

RenderCounts Render(const RenderJob &job)
{
    RenderState state(job);
    PrepareSet(state);
    const PictureRows &rows = job.rows;
    for (int first = 0; first < rows.count; first += rowGroup) {
        const GroupEntry *entries =
            rows.groupEntries +
            static_cast<std::ptrdiff_t>(first / rowGroup) * GroupEntries(job.bands);
        SumRows(entries, state.scaled, job.bands, state.sums);
        const int left = rows.count - first;
        RenderGroup(state, first, left < rowGroup ? left : rowGroup);
    }
    return state.counts;
}
