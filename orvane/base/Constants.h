#pragma once

// Pi and what is made of it. The constants that end in _F are single-precision numbers widened to
// double, not the nearest doubles to what they stand for: every angle, table and weight is defined
// over exactly their bits.

namespace orvane {

inline constexpr double pi = 0x1.921fb54442d18p+1; ///< the nearest double: 3.141592653589793

inline constexpr double TWO_PI_F = 0x1.921fb6p+2;      ///< 2 pi: 6.2831854820251465
inline constexpr double PI_F = 0x1.921fb6p+1;          ///< pi: 3.1415927410125732
inline constexpr double HALF_PI_F = 0x1.921fb6p+0;     ///< pi / 2: 1.5707963705062866
inline constexpr double FOUR_PI_F = 0x1.921fb6p+3;     ///< 4 pi: 12.566370964050293
inline constexpr double SQRT_TWO_PI_F = 0x1.40d932p+1; ///< sqrt(2 pi): 2.5066282749176025
inline constexpr double INV_TWO_PI_F = 0x1.45f306p-3;  ///< 1 / (2 pi): 0.15915493667125702

static_assert(TWO_PI_F == 6.2831854820251465 && TWO_PI_F == double{6.2831855f});
static_assert(PI_F == 3.1415927410125732 && PI_F == double{3.1415927f});
static_assert(HALF_PI_F == 1.5707963705062866 && HALF_PI_F == double{1.5707964f});
static_assert(FOUR_PI_F == 12.566370964050293 && FOUR_PI_F == double{12.566371f});
static_assert(SQRT_TWO_PI_F == 2.5066282749176025 && SQRT_TWO_PI_F == double{2.5066283f});
static_assert(INV_TWO_PI_F == 0.15915493667125702 && INV_TWO_PI_F == double{0.15915494f});

} // namespace orvane
