// Estimated cosines between points and one direction: the points are the lanes.
//
// Both angles are brought into [-pi/2, pi/2], where short Taylor polynomials serve:
//
//   g = theta - pi/2       sin theta =  cos g           cos theta = -sin g
//   h = (phi - pi) / 2     sin phi   = -2 sin h cos h   cos phi   = 2 sin^2 h - 1
//
// For |x| <= 1.58 the next terms bound the remainders: 1.58^13/13! < 6.2e-8 for the sine up to
// x^11, 1.58^14/14! < 7.0e-9 for the cosine up to x^12. They put less than 6.2e-8 on cos theta,
// 7.0e-9 on sin theta, 1.4e-7 on sin phi and 2.5e-7 on cos phi, hence less than 5e-7 on the scalar
// product with a unit vector; rounding adds some 1e-15. cosineEstimateError is twice that.

constexpr double halfPi = pi / 2;
constexpr double polynomialLimit = 1.58;

inline VecD SinePolynomial(VecD x)
{
    const VecD q = x * x;
    VecD sum = q * (-1.0 / 39916800) + 1.0 / 362880;
    sum = sum * q - 1.0 / 5040;
    sum = sum * q + 1.0 / 120;
    sum = sum * q - 1.0 / 6;
    sum = sum * q + 1.0;
    return sum * x;
}

inline VecD CosinePolynomial(VecD x)
{
    const VecD q = x * x;
    VecD sum = q * (1.0 / 479001600) - 1.0 / 3628800;
    sum = sum * q + 1.0 / 40320;
    sum = sum * q - 1.0 / 720;
    sum = sum * q + 1.0 / 24;
    sum = sum * q - 1.0 / 2;
    return sum * q + 1.0;
}

inline VecL WithinPolynomials(VecD x)
{
    return (x <= polynomialLimit) & (x >= -polynomialLimit);
}

void EstimateCosines(const Direction &direction, CosineBlock &block)
{
    const VecD nan = Broadcast(__builtin_nan(""));
    for (int i = 0; i < cosineBlock; i += lanes) {
        const VecD g = Load(block.theta + i) - halfPi;
        const VecD h = Load(block.phi + i) * 0.5 - halfPi;
        const VecD sinH = SinePolynomial(h);
        const VecD across = (2.0 * sinH * sinH - 1.0) * direction.x -
                            2.0 * sinH * CosinePolynomial(h) * direction.z;
        const VecD cosine = CosinePolynomial(g) * across - SinePolynomial(g) * direction.y;
        Store(block.cosine + i, (WithinPolynomials(g) & WithinPolynomials(h)) ? cosine : nan);
    }
}
