// A row of pixels in S equal segments, S = 16, 8, 4, 2 or 1.
//
//    column     0 .. n - 1 | n .. 2 n - 1 | ..  | (S - 1) n .. S n - 1        W = S n columns,
//    segment        0      |      1       | ..  |       S - 1                 N table steps
//
// From a column to the same one in the next segment the angle of order m grows by m / S of a full
// turn. With A and B the row sums of cosine and sine, and x a column of segment 0, the pixel at
// x + j n is the sum over m of
//
//   P(m) cos(2 pi m j / S) + Q(m) sin(2 pi m j / S),     P(m) = A(m) cos(m phi) + B(m) sin(m phi)
//                                                        Q(m) = B(m) cos(m phi) - A(m) sin(m phi)
//
// where the turned factors depend on m mod S only. So P and Q are summed by class, and class S - c
// joins class c: its turned cosine is the same and its turned sine the negative, which puts a sign
// on Q(m), had by turning the signs of B(m) and sin(m phi). S sums remain, P of the classes 0 to
// S / 2 and Q of those between, and one real transform of S points makes S pixels of them:
//
//    58 factors of n columns --(row sums)--> S sums of n columns --(transform)--> S n pixels
//
// Where n is a quarter or half of a vector's lanes, as in icons, a vector holds as many rows:
//
//    lane       0 .. n - 1 | n .. 2 n - 1 | ..
//    row            y      |    y + 1     | ..        columns 0 .. n - 1 of each
//
// The literal pixel takes its factors from a table of N steps. Where S divides N, turning by m j /
// S is going on by m j N / S entries, modulo N; that the tables of the columns are read so is
// looked up, index by index. Columns that do not fit are lone: they are computed on their own. The
// first column always is, its index 0 being where the rounding of the others puts one less. So
// segment 0 is laid out as segment 1 turned back.
//
// Entry k stands for the angle k * step. An entry that is turned j m N / S steps on, less t whole
// turns, where both indices lie in 0..N - 1, is (j m / S - t) N steps away, less than N; by exact
// parts of a turn, 2 pi (j m / S - t). So the angles differ by less than |N step - 2 pi|, and the
// factors by no more: `turnError`, with 2^-48 for the roundings of k * step and of the library.

constexpr double exactTurn = 0x1.921fb54442d18p+2; // 2 pi

constexpr int wideLanes = ORVANE_VECTOR_BYTES / 4; ///< floats in a vector
constexpr int quarters = wideLanes / 4;            ///< of four floats

typedef float VecWUnaligned
    __attribute__((vector_size(ORVANE_VECTOR_BYTES), aligned(4), may_alias));

inline VecW BroadcastWide(float value)
{
    return value - VecW{};
}
inline VecW LoadWide(const float *from)
{
    return *reinterpret_cast<const VecWUnaligned *>(from);
}
inline void StoreWide(float *to, VecW value)
{
    *reinterpret_cast<VecWUnaligned *>(to) = value;
}

/// Four values, in every quarter.
inline VecW LoadQuarters(const float *from)
{
#if ORVANE_VECTOR_BYTES == 64
    return _mm512_maskz_broadcast_f32x4(0xffff, _mm_loadu_ps(from));
#elif ORVANE_VECTOR_BYTES == 32
    return _mm256_broadcast_ps(reinterpret_cast<const __m128 *>(from));
#else
    return LoadWide(from);
#endif
}

/// The values of so many rows, each in its share of the lanes.
/// @param values of the rows; for more than one, four can be read
template <int rows, int... lane>
inline VecW SpreadRows(const float *values, std::integer_sequence<int, lane...>)
{
    if constexpr (rows == 1) {
        return BroadcastWide(*values);
    } else {
        const VecW fours = LoadQuarters(values);
        return __builtin_shufflevector(fours, fours, (lane / 4 * 4 + lane * rows / wideLanes)...);
    }
}
template <int rows> inline VecW SpreadRows(const float *values)
{
    return SpreadRows<rows>(values, std::make_integer_sequence<int, wideLanes>{});
}

/// Row sums of a group in single precision, in the order of the slots, signs turned as there.
struct alignas(64) SlotSums {
    float zonal[rowGroup]; ///< of order 0
    struct {
        float cosine[rowGroup];
        float sine[rowGroup];
    } slots[tableBands];
};

/// Operations on a vector of columns: four sums for each order, two where Q is not needed, and the
/// transform.
constexpr int SegmentCost(int segments, int orders)
{
    if (segments <= 2)
        return 2 * orders + (segments == 2 ? 2 : 0);
    const int transform = segments == 16 ? 66 : segments == 8 ? 22 : 6;
    return 4 * orders - 2 * (orders / (segments / 2)) + transform;
}

/// Orders by class, and in each class by number.
inline void OrderByClass(int segments, int bands, PictureColumns &columns)
{
    int slot = 0;
    for (int c = 0; c <= segments / 2; ++c) {
        for (int m = 1; m < bands; ++m) {
            const int rest = m % segments;
            if (rest == c || rest == segments - c)
                columns.slots[slot++] = {m, rest > segments / 2 ? -1.0f : 1.0f};
        }
        columns.classEnds[c] = slot;
    }
}

/// How many rows of a picture a vector holds: more than one where a segment of four columns or, at
/// the finest cut, eight fills but a part of it.
constexpr int VectorRows(int segments, int segmentColumns)
{
    const int rows = wideLanes / segmentColumns;
    const bool isFull = segmentColumns >= 4 && rows * segmentColumns == wideLanes;
    return isFull && segments >= (segmentColumns == 4 ? 4 : 16) ? rows : 1;
}

/// A way to cut the columns of a picture, or of a part of it that is made of whole segments.
struct Cut {
    int segments;                     ///< of a full circle
    int segmentColumns;               ///< of each
    int firstSegment;                 ///< of the part
    int vectorRows;                   ///< rows of the picture in a vector
    std::int32_t turns[columnOrders]; ///< table entries from segment to segment, for each order
};

inline Cut MakeCut(const ColumnLayoutJob &job, int segments)
{
    const int columns = segments == 1 ? job.columns : job.imageWidth / segments;
    const int rows = job.columns == job.imageWidth ? VectorRows(segments, columns) : 1;
    Cut cut = {segments, columns, segments == 1 ? 0 : job.firstColumn / columns, rows, {}};
    for (int m = 0; m < job.bands; ++m)
        cut.turns[m] = m % segments * (job.angles.numSteps / segments);
    return cut;
}

/// Turns indices by one segment, back or on.
inline void TurnBack(const Cut &cut, std::int32_t numSteps, std::int32_t (&index)[columnOrders])
{
    for (int m = 0; m < columnOrders; ++m) {
        const std::int32_t at = index[m] - cut.turns[m];
        index[m] = at < 0 ? at + numSteps : at;
    }
}
inline void TurnOn(const Cut &cut, std::int32_t numSteps, std::int32_t (&index)[columnOrders])
{
    for (int m = 0; m < columnOrders; ++m) {
        const std::int32_t at = index[m] + cut.turns[m];
        index[m] = at < numSteps ? at : at - numSteps;
    }
}

/// The indices of column x of the part's first segment, from those of its second turned back.
inline void FindFirstSegment(const ColumnLayoutJob &job, const Cut &cut, int x,
                             std::int32_t (&index)[columnOrders])
{
    const std::ptrdiff_t from = cut.segments == 1 ? x : x + cut.segmentColumns;
    __builtin_memcpy(index, job.arrays.indices + from * columnOrders, sizeof index);
    if (cut.segments > 1)
        TurnBack(cut, job.angles.numSteps, index);
}

/// Lists the lone columns.
/// @return how many; more than MostLoneColumns where the cut does not serve
inline int FindLoneColumns(const ColumnLayoutJob &job, const Cut &cut)
{
    const int most = MostLoneColumns(job.columns);
    int count = 0;
    for (int x = 0; x < cut.segmentColumns; ++x) {
        std::int32_t turned[columnOrders];
        FindFirstSegment(job, cut, x, turned);
        for (int column = x; column < job.columns; column += cut.segmentColumns) {
            const std::int32_t *index =
                job.arrays.indices + static_cast<std::ptrdiff_t>(column) * columnOrders;
            std::int32_t differs = 0;
            for (int m = 0; m < columnOrders; ++m)
                differs |= index[m] ^ turned[m];
            if (differs != 0) {
                if (count == most)
                    return most + 1;
                job.arrays.lone[count++] = column;
            }
            TurnOn(cut, job.angles.numSteps, turned);
        }
    }
    return count;
}

/// The factors of segment 0 of the circle.
inline void FillFactors(const ColumnLayoutJob &job, const Cut &cut, const PictureColumns &columns)
{
    const int orders = job.bands - 1;
    int slotOf[columnOrders] = {};
    float signs[columnOrders] = {};
    for (int slot = 0; slot < orders; ++slot) {
        slotOf[columns.slots[slot].order] = slot;
        signs[columns.slots[slot].order] = columns.slots[slot].sign;
    }
    AngleFactors factors[lanes] = {};
    const int vectors = (cut.segmentColumns + wideLanes - 1) / wideLanes;
    for (int first = 0; first < vectors * wideLanes; first += lanes) {
        for (int lane = 0; lane < lanes; ++lane) {
            // Behind the last column stand those of further rows, or of nobody.
            std::int32_t index[columnOrders];
            FindFirstSegment(job, cut, (first + lane) % cut.segmentColumns, index);
            for (int segment = cut.firstSegment; segment > 0; --segment)
                TurnBack(cut, job.angles.numSteps, index);
            LookUpFactors(job.angles, index, job.bands, factors[lane]);
        }
        float *to = job.arrays.factors +
                    static_cast<std::ptrdiff_t>(first / wideLanes) * wideLanes * 2 * orders +
                    first % wideLanes;
        for (int at = 0; at < job.bands; at += lanes) {
            VecD cosines[lanes];
            VecD sines[lanes];
            for (int lane = 0; lane < lanes; ++lane) {
                cosines[lane] = Load(factors[lane].cosine + at);
                sines[lane] = Load(factors[lane].sine + at);
            }
            Transpose(cosines);
            Transpose(sines);
            for (int m = at < 1 ? 1 : at; m < at + lanes && m < job.bands; ++m) {
                float *slot = to + slotOf[m] * 2 * wideLanes;
                Store(slot, Narrow(cosines[m - at]));
                Store(slot + wideLanes, signs[m] * Narrow(sines[m - at]));
            }
        }
    }
}

inline void FindColumnIndices(const ColumnLayoutJob &job)
{
    static_assert(factorEntries == columnOrders);
    for (std::int32_t x = 0; x < job.columns; ++x) {
        alignas(64) std::int32_t index[factorEntries];
        FindAngleIndices(job.angles, static_cast<double>(job.firstColumn + x) * job.dPhi, job.bands,
                         index);
        for (int m = job.bands; m < factorEntries; ++m)
            index[m] = 0;
        __builtin_memcpy(job.arrays.indices + static_cast<std::ptrdiff_t>(x) * columnOrders, index,
                         sizeof index);
    }
}

/// Operations on as many rows as a vector holds at the most.
inline int CutCost(const ColumnLayoutJob &job, const Cut &cut)
{
    const int vectors = (cut.segmentColumns + wideLanes - 1) / wideLanes;
    return vectors * SegmentCost(cut.segments, job.bands - 1) * (maxVectorRows / cut.vectorRows);
}

void LayColumns(const ColumnLayoutJob &job, PictureColumns &columns)
{
    FindColumnIndices(job);
    Cut best = MakeCut(job, 1);
    int lone = 0;
    for (int segments = 2; segments <= maxSegments; segments *= 2) {
        if (job.imageWidth % segments != 0 || job.angles.numSteps % segments != 0)
            break;
        const Cut cut = MakeCut(job, segments);
        if (job.firstColumn % cut.segmentColumns != 0 || job.columns % cut.segmentColumns != 0 ||
            job.columns == cut.segmentColumns || CutCost(job, cut) >= CutCost(job, best))
            continue;
        const int count = FindLoneColumns(job, cut);
        if (count <= MostLoneColumns(job.columns)) {
            best = cut;
            lone = count;
        }
    }
    if (lone > 0)
        FindLoneColumns(job, best); // a finer cut that does not serve has overwritten the list
    columns.columns = job.columns;
    columns.segments = best.segments;
    columns.segmentColumns = best.segmentColumns;
    columns.firstSegment = best.firstSegment;
    columns.vectorRows = best.vectorRows;
    columns.loneColumns = lone;
    const double turn = job.angles.numSteps * job.tableStep - exactTurn;
    columns.turnError = best.segments == 1 ? 0.0 : __builtin_fabs(turn) + 0x1p-48;
    OrderByClass(best.segments, job.bands, columns);
    FillFactors(job, best, columns);
}

/// Pixels `to[j * stride]`, j < segments, of the sums of the classes: P of class 0, then P and Q of
/// each class to segments / 2 - 1, then P of class segments / 2; for one segment P alone.
///
/// The classes of even number make a transform of half the points, the same in both halves of the
/// pixels; those of odd number change sign from half to half.
template <int segments> struct SegmentTransform {
    static_assert(segments == 1);
    static void Do(const VecW *sums, int, VecW *pixels) { pixels[0] = sums[0]; }
};

constexpr float cosine8 = 0.70710678118654752440f;  // of 1/8 of a turn
constexpr float cosine16 = 0.92387953251128675613f; // of 1/16
constexpr float sine16 = 0.38268343236508977173f;

/// Index of P of a class among the sums; Q follows.
constexpr int ClassSum(int c)
{
    return c == 0 ? 0 : 2 * c - 1;
}

// `step` picks the classes: 0, step, 2 step, ..
template <> struct SegmentTransform<2> {
    static void Do(const VecW *sums, int step, VecW *pixels)
    {
        const VecW odd = sums[ClassSum(step)];
        pixels[0] = sums[0] + odd;
        pixels[1] = sums[0] - odd;
    }
};
template <int half> inline void AddHalves(const VecW *even, const VecW *odd, VecW *pixels)
{
    for (int j = 0; j < half; ++j) {
        pixels[j] = even[j] + odd[j];
        pixels[j + half] = even[j] - odd[j];
    }
}
template <> struct SegmentTransform<4> {
    static void Do(const VecW *sums, int step, VecW *pixels)
    {
        VecW even[2];
        SegmentTransform<2>::Do(sums, 2 * step, even);
        AddHalves<2>(even, sums + ClassSum(step), pixels);
    }
};
template <> struct SegmentTransform<8> {
    static void Do(const VecW *sums, int step, VecW *pixels)
    {
        VecW even[4];
        SegmentTransform<4>::Do(sums, 2 * step, even);
        const VecW *one = sums + ClassSum(step);
        const VecW *three = sums + ClassSum(3 * step);
        const VecW p = one[0] - three[0];
        const VecW q = one[1] + three[1];
        const VecW odd[4] = {one[0] + three[0], cosine8 * (q + p), one[1] - three[1],
                             cosine8 * (q - p)};
        AddHalves<4>(even, odd, pixels);
    }
};
template <> struct SegmentTransform<16> {
    static void Do(const VecW *sums, int step, VecW *pixels)
    {
        VecW even[8];
        SegmentTransform<8>::Do(sums, 2 * step, even);
        const VecW *one = sums + ClassSum(step);
        const VecW *three = sums + ClassSum(3 * step);
        const VecW *five = sums + ClassSum(5 * step);
        const VecW *seven = sums + ClassSum(7 * step);
        // For the pixels of even number, then of odd number. Pixel 8 - j has the cosines of pixel j
        // with the other sign and the same sines.
        const VecW p17 = one[0] + seven[0];
        const VecW p35 = three[0] + five[0];
        const VecW q17 = one[1] - seven[1];
        const VecW q35 = three[1] - five[1];
        const VecW cosine2 = p17 - p35;
        const VecW sine2 = q17 + q35;
        const VecW s = one[0] - seven[0];
        const VecW t = three[0] - five[0];
        const VecW u = one[1] + seven[1];
        const VecW v = three[1] + five[1];
        const VecW c16 = BroadcastWide(cosine16);
        const VecW s16 = BroadcastWide(sine16);
        const VecW cosineOf1 = MultiplyAdd(s, c16, t * s16);
        const VecW cosineOf3 = MultiplyAdd(s, s16, -t * c16);
        const VecW sineOf1 = MultiplyAdd(u, s16, v * c16);
        const VecW sineOf3 = MultiplyAdd(u, c16, -v * s16);
        const VecW odd[8] = {
            p17 + p35, cosineOf1 + sineOf1, cosine8 * (sine2 + cosine2), cosineOf3 + sineOf3,
            q17 - q35, sineOf3 - cosineOf3, cosine8 * (sine2 - cosine2), sineOf1 - cosineOf1};
        AddHalves<8>(even, odd, pixels);
    }
};
