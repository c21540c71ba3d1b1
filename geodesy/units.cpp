// Units of length and area.
#include <array>
#include <cstdint>
#include <span>

#include "zenromath/geodesy.h"

namespace zm::geodesy {
namespace {

// A length to metres is value * toFirst * toSecond / toDivisor, from metres value * fromFactor / fromFirst /
// fromSecond: one row holds every unit, in the order of operations of its definition.
struct LengthUnit {
    double toFirst = 1.0, toSecond = 1.0, toDivisor = 1.0;
    double fromFactor = 1.0, fromFirst = 1.0, fromSecond = 1.0;
};

constexpr LengthUnit Multiple(double metres) {
    return {metres, 1.0, 1.0, 1.0, metres, 1.0};
}
constexpr LengthUnit Part(double perMetre) {
    return {1.0, 1.0, perMetre, perMetre, 1.0, 1.0};
}

constexpr std::uint32_t kLengthUnits = znUnitRod + 1;

// A code without a row of its own is metres.
constexpr std::array<LengthUnit, kLengthUnits> MakeLengthUnits() {
    std::array<LengthUnit, kLengthUnits> t{};
    t[znUnitMile] = Multiple(1609.344);
    t[znUnitKilometer] = Multiple(1000.0);
    t[znUnitInch] = Multiple(0.0254);
    t[znUnitFoot] = Multiple(0.3048);
    t[znUnitYard] = Multiple(0.9144);
    t[znUnitMillimeter] = Part(1000.0);
    t[znUnitCentimeter] = Part(100.0);
    // Required: the two directions of the survey foot, twip and point use separately rounded factors.
    t[znUnitSurveyFoot] = {1200.0, 1.0, 3937.0, 1.0, 0.3048006096012192, 1.0};
    t[znUnitNauticalMile] = Multiple(1853.2);  // Required: not the international 1852 m.
    t[znUnitTwip] = {0.0254, 1.0, 1440.0, 1.0, 1.763888888888889e-05, 1.0};
    t[znUnitPoint] = {0.0254, 1.0, 72.0, 1.0, 0.00035277777777777776, 1.0};
    t[znUnitPoint2] = t[znUnitPoint];
    t[znUnitDegree] = Multiple(111319.5);
    t[znUnitLink] = {0.0254, 7.92, 1.0, 1.0, 0.0254, 7.92};
    t[znUnitChain] = Multiple(20.1168);
    t[znUnitRod] = Multiple(5.0292);
    return t;
}
constexpr std::array<LengthUnit, kLengthUnits> kLengthTable = MakeLengthUnits();
constexpr LengthUnit kMetre{};

// The code is read as unsigned, so that negative codes lie above the table.
const LengthUnit& LengthUnitOf(std::int32_t code) {
    const auto index = static_cast<std::uint32_t>(code);
    return index < kLengthUnits ? kLengthTable[index] : kMetre;
}

double ToMetres(std::int32_t code, double v) {
    const LengthUnit& u = LengthUnitOf(code);
    return v * u.toFirst * u.toSecond / u.toDivisor;
}

double FromMetres(std::int32_t code, double v) {
    const LengthUnit& u = LengthUnitOf(code);
    return v * u.fromFactor / u.fromFirst / u.fromSecond;
}

// An area to square metres is first * value * second * extra, from them value / first / second / extra.
struct AreaUnit {
    double first = 1.0, second = 1.0, extra = 1.0;
};

constexpr std::uint32_t kAreaUnits = znAreaMu + 1;

constexpr AreaUnit SquareOf(znCoordUnitConstants length) {
    const LengthUnit& u = kLengthTable[static_cast<std::uint32_t>(length)];
    const double f = 1.0 * u.toFirst * u.toSecond / u.toDivisor;
    return {f, f, 1.0};
}

constexpr double kSquareFeetOfAnAcre = 43560.0;

constexpr std::array<AreaUnit, kAreaUnits> MakeAreaUnits() {
    std::array<AreaUnit, kAreaUnits> t{};
    t[znAreaSquareMile] = SquareOf(znUnitMile);
    t[znAreaSquareKilometer] = SquareOf(znUnitKilometer);
    t[znAreaSquareInch] = SquareOf(znUnitInch);
    t[znAreaSquareFoot] = SquareOf(znUnitFoot);
    t[znAreaSquareYard] = SquareOf(znUnitYard);
    t[znAreaSquareMillimeter] = SquareOf(znUnitMillimeter);
    t[znAreaSquareCentimeter] = SquareOf(znUnitCentimeter);
    t[znAreaSquareSurveyFoot] = SquareOf(znUnitSurveyFoot);
    t[znAreaSquareNauticalMile] = SquareOf(znUnitNauticalMile);
    t[znAreaSquareTwip] = SquareOf(znUnitTwip);
    t[znAreaSquarePoint] = SquareOf(znUnitPoint);
    t[znAreaSquarePoint2] = SquareOf(znUnitPoint2);
    t[znAreaSquareDegree] = SquareOf(znUnitDegree);
    const double foot = SquareOf(znUnitFoot).first;
    t[znAreaAcre] = {foot * kSquareFeetOfAnAcre, foot, 1.0};
    t[znAreaHectare] = {100.0, 100.0, 1.0};
    t[znAreaSquareLink] = SquareOf(znUnitLink);
    t[znAreaSquareChain] = SquareOf(znUnitChain);
    t[znAreaSquareRod] = SquareOf(znUnitRod);
    t[znAreaSquareRod2] = SquareOf(znUnitRod);
    t[znAreaRood] = {foot * kSquareFeetOfAnAcre, foot, 0.25};
    t[znAreaMu] = {666.6666666666666, 1.0, 1.0};
    return t;
}
constexpr std::array<AreaUnit, kAreaUnits> kAreaTable = MakeAreaUnits();
constexpr AreaUnit kSquareMetre{};

const AreaUnit& AreaUnitOf(std::int32_t code) {
    const auto index = static_cast<std::uint32_t>(code);
    return index < kAreaUnits ? kAreaTable[index] : kSquareMetre;
}

double ToSquareMetres(std::int32_t code, double v) {
    const AreaUnit& u = AreaUnitOf(code);
    return u.first * v * u.second * u.extra;
}

double FromSquareMetres(std::int32_t code, double v) {
    const AreaUnit& u = AreaUnitOf(code);
    return v / u.first / u.second / u.extra;
}

// Quick converters: base * factor / divisor.
struct QuickRule {
    std::int32_t code;
    double factor;
    double divisor;
};

// Required: short rounded factors, different from the tables above; existing lists were printed with them.
constexpr QuickRule kQuickLengths[] = {
    {znUnitMile, 1.0, 1609.3},      {znUnitKilometer, 1.0, 1000.0}, {znUnitInch, 1.0, 0.0254},
    {znUnitFoot, 1.0, 0.3048},      {znUnitYard, 1.0, 0.9144},      {znUnitMillimeter, 1000.0, 1.0},
    {znUnitCentimeter, 100.0, 1.0}, {znUnitMeter, 1.0, 1.0},        {znUnitNauticalMile, 1.0, 1853.2},
    {znUnitChain, 1.0, 20.117},
};
constexpr QuickRule kQuickAreas[] = {
    {znAreaSquareMile, 1.0, 2590000.0},
    {znAreaSquareKilometer, 1.0, 1000000.0},
    {znAreaSquareInch, 1.0, 0.00064516},
    {znAreaSquareFoot, 1.0, 0.092903},
    {znAreaSquareYard, 1.0, 0.8361},
    {znAreaSquareMillimeter, 1000000.0, 1.0},
    {znAreaSquareCentimeter, 10000.0, 1.0},
    {znAreaSquareMeter, 1.0, 1.0},
    {znAreaAcre, 1.0, 4046.724},
    {znAreaHectare, 1.0, 10000.0},
    {znAreaMu, 1.0, 666.6667},
};

int ApplyQuickRule(std::span<const QuickRule> rules, int target, double base, double& value, std::int32_t& unit) {
    for (const QuickRule& rule : rules) {
        if (rule.code != target) continue;
        value = base * rule.factor / rule.divisor;
        unit = target;
        return 1;
    }
    return 0;
}

}  // namespace
}  // namespace zm::geodesy

using namespace zm::geodesy;

int ScaleUnitConvert(znCoordUnitConstants from, znCoordUnitConstants to, double value, double& result) {
    result = FromMetres(to, ToMetres(from, value));
    return 1;
}

double ScaleUnitCase(int from, int to, double value) {
    double result = 0.0;
    ScaleUnitConvert(static_cast<znCoordUnitConstants>(from), static_cast<znCoordUnitConstants>(to), value, result);
    return result;
}

int AreaUnitConvert(znAreaUnitConstants from, znAreaUnitConstants to, double value, double& result) {
    result = FromSquareMetres(to, ToSquareMetres(from, value));
    return 1;
}

LengthValue::LengthValue(double v, int u) : value(v), unit(u), metres(ToMetres(u, v)) {}

void LengthValue::SetValue(double v) {
    value = v;
    metres = ToMetres(unit, v);
}

int LengthValue::QuickConvert(int target) {
    return ApplyQuickRule(kQuickLengths, target, metres, value, unit);
}

AreaValue::AreaValue(double v, int u) : value(v), unit(u), metres(ToSquareMetres(u, v)) {}

void AreaValue::SetValue(double v) {
    value = v;
    metres = ToSquareMetres(unit, v);
}

int AreaValue::QuickConvert(int target) {
    return ApplyQuickRule(kQuickAreas, target, metres, value, unit);
}
