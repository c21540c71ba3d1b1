// Sine, cosine, their kin and the square root of the C library, good to the last bit.
//
// What mingw-w64 links in their place are the processor's own instructions, which reduce angles by a pi of 66 bits (the
// sine of pi has five good digits, that of 1e22 none), and functions of the system, which differ between its releases.
// Results of the library must not: so they are computed here with 64 bits and rounded once, to within 0.501 of the last
// place. The linker takes these before those of the C library.
#include <cmath>
#include <cstdint>

namespace {

using Extended = long double;
__extension__ using Product = unsigned __int128;
static_assert(sizeof(double) == 8 && __LDBL_MANT_DIG__ == 64);

// While it lives, the thread computes with 64 bits. A thread of an application may have begun with 53.
class ExtendedPrecision {
 public:
    ExtendedPrecision() {
        asm volatile("fnstcw %0" : "=m"(m_before) : : "memory");
        Set(static_cast<std::uint16_t>(m_before | 0x300));
    }
    ~ExtendedPrecision() { Set(m_before); }
    ExtendedPrecision(const ExtendedPrecision&) = delete;
    ExtendedPrecision& operator=(const ExtendedPrecision&) = delete;

 private:
    static void Set(std::uint16_t word) { asm volatile("fldcw %0" : : "m"(word) : "memory"); }
    std::uint16_t m_before;
};

// f(x...) with 64 bits. Called by a pointer that the compiler does not see through, so that nothing of it is computed
// before or after.
template <class... Arguments>
double Rounded(Extended (*f)(Arguments...), Arguments... x) {
    const ExtendedPrecision precision;
    asm volatile("" : "+r"(f) : : "memory");
    return static_cast<double>(f(x...));
}

constexpr double kQuarterOfPi = 0.78539816339744828;
constexpr Extended kHalfOfPi = 1.57079632679489661923132169163975144L;

// The first 1280 bits of 2 / pi after the point.
constexpr std::uint64_t kTwoOverPi[] = {
    0xA2F9836E4E441529U, 0xFC2757D1F534DDC0U, 0xDB6295993C439041U, 0xFE5163ABDEBBC561U, 0xB7246E3A424DD2E0U,
    0x06492EEA09D1921CU, 0xFE1DEB1CB129A73EU, 0xE88235F52EBB4484U, 0xE99C7026B45F7E41U, 0x3991D639835339F4U,
    0x9C845F8BBDF9283BU, 0x1FF897FFDE05980FU, 0xEF2F118B5A0A6D1FU, 0x6D367ECF27CB09B7U, 0x4F463F669E5FEA2DU,
    0x7527BAC7EBE5F17BU, 0x3D0739F78A5292EAU, 0x6BFB5FB11F8D5D08U, 0x56033046FC7B6BABU, 0xF0CFBC209AF4361DU};

// 64 bits of 2 / pi from a bit on, 1 being the first after the point; zeros before it.
std::uint64_t BitsFrom(int first) {
    if (first <= -63) return 0;
    if (first < 1) return kTwoOverPi[0] >> (1 - first);
    const int word = (first - 1) / 64, within = (first - 1) % 64;
    const std::uint64_t high = kTwoOverPi[word] << within;
    return within == 0 ? high : high | kTwoOverPi[word + 1] >> (64 - within);
}

struct Reduced {
    Extended rest;     // radians, from -pi/4 to pi/4
    unsigned quarter;  // how many quarters of a turn to add, 0 to 3
};

// For finite angles of pi/4 and above: the product of all bits of the angle with those of 2 / pi that matter, without
// what is a multiple of four quarters. 126 bits after the point stay at least; no double comes nearer than 2^-61 to a
// multiple of pi/2.
Reduced Reduce(double angle) {
    int exponent = 0;
    const auto bits = static_cast<std::uint64_t>(std::ldexp(std::frexp(angle, &exponent), 53));
    exponent -= 53;
    std::uint64_t product[3];  // the highest word first; two bits before the point
    Product sum = 0;
    for (int i = 2; i >= 0; --i) {
        sum += static_cast<Product>(bits) * BitsFrom(exponent - 1 + 64 * i);
        product[i] = static_cast<std::uint64_t>(sum);
        sum >>= 64;
    }
    auto quarter = static_cast<unsigned>(product[0] >> 62);
    product[0] <<= 2;
    product[0] |= product[1] >> 62;
    product[1] = product[1] << 2 | product[2] >> 62;
    product[2] <<= 2;
    const bool above = product[0] >> 63 != 0;
    if (above) {
        quarter = (quarter + 1) % 4;
        for (std::uint64_t& word : product) word = ~word;  // less by one of 2^192
    }
    Extended part = std::ldexp(static_cast<Extended>(product[2]), -192);
    part += std::ldexp(static_cast<Extended>(product[1]), -128);
    part += std::ldexp(static_cast<Extended>(product[0]), -64);
    return {(above ? -part : part) * kHalfOfPi, quarter};
}

Extended SineAfter(unsigned quarters, double angle) {
    const double size = std::fabs(angle);
    Reduced reduced = {size, 0};
    if (size > kQuarterOfPi) reduced = Reduce(size);
    if (std::signbit(angle)) reduced = {-reduced.rest, (4 - reduced.quarter) % 4};
    const unsigned quarter = (reduced.quarter + quarters) % 4;
    const Extended value = quarter % 2 == 0 ? sinl(reduced.rest) : cosl(reduced.rest);
    return quarter < 2 ? value : -value;
}

Extended Sine(double angle) {
    return std::isfinite(angle) ? SineAfter(0, angle) : angle - angle;
}
Extended Cosine(double angle) {
    return std::isfinite(angle) ? SineAfter(1, angle) : angle - angle;
}
Extended Tangent(double angle) {
    return Sine(angle) / (std::isfinite(angle) ? SineAfter(1, angle) : 1.0L);
}
Extended ArcTangent(double y, double x) {
    return atan2l(y, x);
}
Extended ArcTangentOf(double slope) {
    return atanl(slope);
}
Extended ArcCosine(double x) {
    return atan2l(sqrtl((1.0L - x) * (1.0L + x)), x);
}
Extended ArcSine(double x) {
    return atan2l(x, sqrtl((1.0L - x) * (1.0L + x)));
}
Extended Hypotenuse(double x, double y) {
    if (std::isinf(x) || std::isinf(y)) return HUGE_VALL;
    return sqrtl(static_cast<Extended>(x) * x + static_cast<Extended>(y) * y);
}

}  // namespace

extern "C" {

double sin(double angle) {
    return Rounded(Sine, angle);
}
double cos(double angle) {
    return Rounded(Cosine, angle);
}
void sincos(double angle, double* sine, double* cosine) {
    *sine = Rounded(Sine, angle);
    *cosine = Rounded(Cosine, angle);
}
double tan(double angle) {
    return Rounded(Tangent, angle);
}
double acos(double x) {
    return Rounded(ArcCosine, x);
}
double asin(double x) {
    return Rounded(ArcSine, x);
}
double atan(double slope) {
    return Rounded(ArcTangentOf, slope);
}
double atan2(double y, double x) {
    return Rounded(ArcTangent, y, x);
}
double hypot(double x, double y) {
    return Rounded(Hypotenuse, x, y);
}
// The C library's rounds twice, first to 64 bits, so that it is not always what the compiler puts in its place.
double sqrt(double x) {
    double root;
    asm("sqrtsd %1, %0" : "=x"(root) : "xm"(x));
    return root;
}

}  // extern "C"
