#include <algorithm>
#include <cmath>
#include <iterator>

#include "zenromath/sheets.h"

namespace zm::sheets {
namespace {

constexpr std::string_view kQuarters[] = {"I", "II", "III", "IV"};
constexpr Division kSquare{5000, 40, 40, 0.0, 0.0};
constexpr int kScales[] = {5000, 2000, 1000, 500};  // each a quarter of the one before

}  // namespace

Refusal QuadrantNumber(double x, double y, int scale, std::string& number) {
    const auto* last = std::ranges::find(kScales, scale);
    if (last == std::end(kScales)) return Refusal::scale;
    std::string text;
    PlaneBox box;
    Refusal refusal = CornerNumber(kSquare, x, y, text);
    if (refusal == Refusal::none) refusal = ReadCorner(kSquare, text, box);
    if (refusal != Refusal::none) return refusal;
    // To 0.1 mm, as borders are.
    const long long units = 10000;
    long long up = std::llround(x * units) - std::llround(box.south * units);
    long long right = std::llround(y * units) - std::llround(box.west * units);
    long long half = 1000 * units;
    for (const auto* step = std::begin(kScales); step != last; ++step, half /= 2) {
        const bool north = up >= half, east = right >= half;
        text.append("-").append(kQuarters[(north ? 0 : 2) + (east ? 1 : 0)]);
        up -= north ? half : 0;
        right -= east ? half : 0;
    }
    number = text;
    return Refusal::none;
}

Refusal ReadQuadrant(std::string_view number, int& scale, PlaneBox& sheet) {
    const std::size_t dash = number.find('-');
    if (dash == std::string_view::npos) return Refusal::malformed;
    std::size_t end = std::min(number.find('-', dash + 1), number.size());
    PlaneBox box;
    const Refusal refusal = ReadCorner(kSquare, number.substr(0, end), box);
    if (refusal != Refusal::none) return refusal;
    const int* step = std::begin(kScales);
    while (end < number.size()) {
        const std::size_t next = std::min(number.find('-', end + 1), number.size());
        const auto* quarter = std::ranges::find(kQuarters, number.substr(end + 1, next - end - 1));
        if (quarter == std::end(kQuarters) || ++step == std::end(kScales)) return Refusal::malformed;
        const auto which = quarter - std::begin(kQuarters);
        const double x = (box.south + box.north) / 2, y = (box.west + box.east) / 2;
        (which < 2 ? box.south : box.north) = x;
        (which % 2 == 1 ? box.west : box.east) = y;
        end = next;
    }
    scale = *step;
    sheet = box;
    return Refusal::none;
}

}  // namespace zm::sheets
