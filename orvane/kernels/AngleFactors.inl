// The angle factors of one azimuth: the orders m are the lanes.
//
//   m * phi   -> fold into [0, T] -> * angleScale, truncate, bound -> cosLut[.], sinLut[.]
//   vector       vector              vector                           one load each
//
// T = TWO_PI_F = 13176795 * 2^-21. Folding subtracts (or adds) T until the angle is in range; every
// such step is exact but the last addition to a negative angle. Hence, with a = |m * phi|:
//
//   r = a - k T, the k that puts r into (0, T] (0 for a = 0); T - r, rounded once, for a negative
//   angle.
//
// The vector code finds k as trunc(a / T) from a rounded quotient. For a < 2^31 the quotient is
// below 2^29 and off by far less than 1, so k is right or one off; k T is exact (24 + 29 bits); so
// is a - k T, which for a >= 4 is a multiple of 2^-50 and below 8, while under 4 k is 0. One
// correction by T, exact for the same reason, puts r into range. Larger angles take the exact
// remainder of the C library.

constexpr double vectorFoldLimit = 0x1p31;

constexpr int factorEntries = 32;

alignas(64) constexpr double orderValues[factorEntries] = {
    0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
    16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31};

inline VecD FoldAngles(VecD angle)
{
    const VecD turn = Broadcast(TWO_PI_F);
    const VecD magnitude = angle < 0.0 ? -angle : angle;
    const VecD turns = Widen(Truncate(magnitude * (1.0 / TWO_PI_F)));
    VecD rest = magnitude - turns * turn;
    rest = rest > turn ? rest - turn : rest;
    rest = ((rest <= 0.0) & (turns > 0.0)) ? rest + turn : rest;
    return angle < 0.0 ? turn - rest : rest;
}

/// As WrapAngle, whose steps from 2^32 on are explained where it stands.
inline double FoldLargeAngle(double angle)
{
    double magnitude = __builtin_fabs(angle);
    while (magnitude >= 0x1p32) {
        double next = magnitude - TWO_PI_F;
        if (next == magnitude)
            break;
        const double after = next - TWO_PI_F;
        const int exponent = __builtin_ilogb(magnitude);
        if (__builtin_ilogb(after) == exponent) {
            const double lowest = __builtin_ldexp(1.0, exponent);
            next = lowest + __builtin_fmod(next - lowest, next - after);
        }
        magnitude = next;
    }
    const double remainder = __builtin_fmod(magnitude, TWO_PI_F);
    const double rest = remainder == 0.0 ? TWO_PI_F : remainder;
    return angle < 0.0 ? TWO_PI_F - rest : rest;
}

/// The bounded table indices of the orders 0 to orders - 1.
inline void FindAngleIndices(const AngleTables &tables, double phi, int orders,
                             int (&index)[factorEntries])
{
    alignas(64) double folded[factorEntries];
    if (__builtin_fabs(phi) * factorEntries < vectorFoldLimit)
        for (int m = 0; m < orders; m += lanes)
            Store(folded + m, FoldAngles(Load(orderValues + m) * phi));
    else
        for (int m = 0; m < factorEntries; ++m)
            folded[m] = m < orders ? FoldLargeAngle(m * phi) : 0.0;

    const double last = tables.numSteps - 1;
    for (int m = 0; m < orders; m += lanes) {
        const VecD step = Load(folded + m) * tables.angleScale;
        Store(index + m, Truncate(step < last ? step : Broadcast(last)));
    }
}

/// Cosine and sine of m * phi, indexed by the order m = 0..29. Order 0, which takes no angle factor, has cosine 1 and sine 0:
/// a product with 1.0 is the other factor, bit for bit.
struct alignas(64) AngleFactors {
    double cosine[factorEntries];
    double sine[factorEntries];
};

/// The factors of the orders 0 to orders - 1; the others are left alone.
inline void LookUpFactors(const AngleTables &tables, const int (&index)[factorEntries], int orders,
                          AngleFactors &factors)
{
    factors.cosine[0] = 1.0;
    factors.sine[0] = 0.0;
    for (int m = 1; m < orders; ++m) {
        factors.cosine[m] = tables.cosLut[index[m]];
        factors.sine[m] = tables.sinLut[index[m]];
    }
}
