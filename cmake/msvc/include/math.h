// Wine's math.h completed with what libc++'s <cmath> names: the long-double forms and a few more. In this ABI long double
// is double, so each is the double function.
#include_next <math.h>

#ifndef ZQ_LONG_DOUBLE_MATH
#define ZQ_LONG_DOUBLE_MATH

// In the universal C runtime but not declared by Wine's header.
_ACRTIMP double __cdecl erfc(double);
_ACRTIMP float __cdecl erfcf(float);
_ACRTIMP double __cdecl fma(double, double, double);
_ACRTIMP float __cdecl nexttowardf(float, long double);

#define ZQ_MATH_1(name) static inline long double name##l(long double x) { return name((double)x); }
#define ZQ_MATH_2(name) \
    static inline long double name##l(long double x, long double y) { return name((double)x, (double)y); }
#define ZQ_MATH_TO(type, name) static inline type name##l(long double x) { return name((double)x); }

ZQ_MATH_1(acos) ZQ_MATH_1(acosh) ZQ_MATH_1(asin) ZQ_MATH_1(asinh) ZQ_MATH_1(atan) ZQ_MATH_1(atanh)
ZQ_MATH_1(cbrt) ZQ_MATH_1(ceil) ZQ_MATH_1(cos) ZQ_MATH_1(cosh) ZQ_MATH_1(erf) ZQ_MATH_1(erfc)
ZQ_MATH_1(exp) ZQ_MATH_1(exp2) ZQ_MATH_1(expm1) ZQ_MATH_1(fabs) ZQ_MATH_1(floor) ZQ_MATH_1(lgamma)
ZQ_MATH_1(log) ZQ_MATH_1(log10) ZQ_MATH_1(log1p) ZQ_MATH_1(log2) ZQ_MATH_1(logb) ZQ_MATH_1(nearbyint)
ZQ_MATH_1(rint) ZQ_MATH_1(round) ZQ_MATH_1(sin) ZQ_MATH_1(sinh) ZQ_MATH_1(sqrt) ZQ_MATH_1(tan)
ZQ_MATH_1(tanh) ZQ_MATH_1(tgamma) ZQ_MATH_1(trunc)
ZQ_MATH_2(atan2) ZQ_MATH_2(copysign) ZQ_MATH_2(fdim) ZQ_MATH_2(fmax) ZQ_MATH_2(fmin) ZQ_MATH_2(fmod)
ZQ_MATH_2(hypot) ZQ_MATH_2(nextafter) ZQ_MATH_2(pow) ZQ_MATH_2(remainder)
ZQ_MATH_TO(int, ilogb) ZQ_MATH_TO(long, lrint) ZQ_MATH_TO(long, lround) ZQ_MATH_TO(long long, llrint)
ZQ_MATH_TO(long long, llround)

static inline long double fmal(long double x, long double y, long double z) {
    return fma((double)x, (double)y, (double)z);
}
static inline long double frexpl(long double x, int* exponent) { return frexp((double)x, exponent); }
static inline long double ldexpl(long double x, int exponent) { return ldexp((double)x, exponent); }
static inline long double modfl(long double x, long double* whole) {
    double part;
    double fraction = modf((double)x, &part);
    *whole = part;
    return fraction;
}
static inline long double nexttowardl(long double x, long double y) { return nextafter((double)x, (double)y); }
static inline long double remquol(long double x, long double y, int* quotient) {
    return remquo((double)x, (double)y, quotient);
}
static inline long double scalblnl(long double x, long n) { return scalbln((double)x, n); }
static inline long double scalbnl(long double x, int n) { return scalbn((double)x, n); }

#undef ZQ_MATH_1
#undef ZQ_MATH_2
#undef ZQ_MATH_TO
#endif
