#include <algorithm>

#include "sheets/whole.h"
#include "zenromath/sheets.h"

namespace zm::sheets {
namespace {

constexpr Whole kUnits = 360000000;  // of a degree: 1e-5 seconds of arc
constexpr Whole kZoneHeight = 4 * kUnits, kZoneWidth = 6 * kUnits;
constexpr Whole kColumnsOfZones = 60;
constexpr Whole kRowsOfZones = 15;  // A to O, up to 60 degrees
constexpr int kLetters = 22;        // A to V, up to 88 degrees

// Divisions of the 1:1,000,000 sheet. Source: GB/T 13989-2012.
struct Scale {
    int denominator;
    char letter;  // 0: none in the number
    Whole parts;  // rows, and columns, in a 1:1,000,000 sheet
    std::size_t digits;
    Whole height() const { return kZoneHeight / parts; }
    Whole width() const { return kZoneWidth / parts; }
};
constexpr Scale kScales[] = {
    {1000000, 0, 1, 0},  {500000, 'B', 2, 3},  {250000, 'C', 4, 3}, {100000, 'D', 12, 3},
    {50000, 'E', 24, 3}, {25000, 'F', 48, 3},  {10000, 'G', 96, 3}, {5000, 'H', 192, 3},
    {2000, 'I', 576, 3}, {1000, 'J', 1152, 4}, {500, 'K', 2304, 4},
};
static_assert(std::ranges::all_of(kScales, [](const Scale& s) { return kZoneWidth % s.parts == 0; }));
static_assert(std::ranges::all_of(kScales, [](const Scale& s) { return kZoneHeight % s.parts == 0; }));

const Scale* ScaleOf(int denominator) {
    const auto* found = std::ranges::find(kScales, denominator, &Scale::denominator);
    return found != std::end(kScales) ? found : nullptr;
}

// A sheet by its place among all of its scale: row from the equator, column from 180 degrees west.
struct Cell {
    const Scale* scale;
    Whole row, column;
    bool ninth = false;  // the style that its number has
};

std::string NumberOf(const Cell& cell) {
    const Scale& s = *cell.scale;
    const Whole zoneRow = cell.row / s.parts, zoneColumn = cell.column / s.parts;
    const Whole row = s.parts - cell.row % s.parts, column = cell.column % s.parts + 1;
    std::string number(1, static_cast<char>('A' + zoneRow));
    number += Padded(zoneColumn + 1, 2);
    if (s.letter == 0) return number;
    if (!cell.ninth) return number + s.letter + Padded(row, s.digits) + Padded(column, s.digits);
    const Whole ninth = (row - 1) % 3 * 3 + (column - 1) % 3 + 1;
    return number + 'H' + Padded((row - 1) / 3 + 1, 3) + Padded((column - 1) / 3 + 1, 3) + "-" + std::to_string(ninth);
}

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Row and column within the 1:1,000,000 sheet, and what the suffix says.
struct Inner {
    const Scale* scale = &kScales[0];
    Whole row = 1, column = 1;
    bool ninth = false;
};

Refusal ReadInner(std::string_view text, Inner& inner) {
    if (text.empty()) return Refusal::none;
    const char letter = Upper(text.front());
    const auto* scale = std::ranges::find(kScales, letter, &Scale::letter);
    if (letter == 0 || scale == std::end(kScales)) return Refusal::malformed;
    text.remove_prefix(1);
    const std::size_t digits = scale->digits;
    inner.ninth = letter == 'H' && text.size() == 2 * digits + 2 && text[2 * digits] == '-';
    if (text.size() != 2 * digits + (inner.ninth ? 2 : 0)) return Refusal::malformed;
    inner.row = DigitsOf(text.substr(0, digits));
    inner.column = DigitsOf(text.substr(digits, digits));
    const Whole suffix = inner.ninth ? DigitsOf(text.substr(2 * digits + 1)) : 1;
    if (inner.row < 0 || inner.column < 0 || suffix < 1) return Refusal::malformed;
    if (inner.row < 1 || inner.row > scale->parts || inner.column < 1 || inner.column > scale->parts)
        return Refusal::range;
    inner.scale = scale;
    if (!inner.ninth) return Refusal::none;
    inner.scale = ScaleOf(2000);
    inner.row = (inner.row - 1) * 3 + (suffix - 1) / 3 + 1;
    inner.column = (inner.column - 1) * 3 + (suffix - 1) % 3 + 1;
    return Refusal::none;
}

Refusal ReadCell(std::string_view number, Cell& cell, Inner& inner) {
    if (number.size() < 3) return Refusal::malformed;
    const int zoneRow = Upper(number[0]) - 'A';
    const Whole zoneColumn = DigitsOf(number.substr(1, 2));
    if (zoneRow < 0 || zoneRow > 25 || zoneColumn < 0) return Refusal::malformed;
    const Refusal refusal = ReadInner(number.substr(3), inner);
    if (refusal != Refusal::none) return refusal;
    if (zoneRow >= kLetters || zoneColumn < 1 || zoneColumn > kColumnsOfZones) return Refusal::range;
    if (zoneRow >= kRowsOfZones) return Refusal::outside;
    const Whole parts = inner.scale->parts;
    cell = {inner.scale, (zoneRow + 1) * parts - inner.row, (zoneColumn - 1) * parts + inner.column - 1, inner.ninth};
    return Refusal::none;
}

// Units from the equator and from 180 degrees west.
bool PlaceOf(double latitude, double longitude, Whole& up, Whole& right) {
    if (!ToUnits(latitude, kUnits, 360.0, up) || !ToUnits(longitude, kUnits, 360.0, right)) return false;
    right += 180 * kUnits;
    return true;
}

constexpr Whole kTop = kRowsOfZones * kZoneHeight, kRound = kColumnsOfZones * kZoneWidth;

double Degrees(Whole units) {
    return static_cast<double>(units) / static_cast<double>(kUnits);
}

}  // namespace

Refusal GraticuleNumber(double latitude, double longitude, int scale, Style style, std::string& number) {
    const Scale* s = ScaleOf(scale);
    if (s == nullptr) return Refusal::scale;
    Whole up = 0, right = 0;
    if (!PlaceOf(latitude, longitude, up, right)) return Refusal::outside;
    if (up < 0 || up >= kTop || right < 0 || right >= kRound) return Refusal::outside;
    number = NumberOf({s, up / s->height(), right / s->width(), style == Style::ninth && scale == 2000});
    return Refusal::none;
}

Refusal ReadGraticule(std::string_view number, GraticuleSheet& sheet) {
    Cell cell{};
    Inner inner;
    const Refusal refusal = ReadCell(number, cell, inner);
    if (refusal != Refusal::none) return refusal;
    const Whole height = cell.scale->height(), width = cell.scale->width();
    sheet.scale = cell.scale->denominator;
    sheet.row = static_cast<int>(inner.row);
    sheet.column = static_cast<int>(inner.column);
    sheet.south = Degrees(cell.row * height);
    sheet.north = Degrees((cell.row + 1) * height);
    sheet.west = Degrees(cell.column * width - 180 * kUnits);
    sheet.east = Degrees((cell.column + 1) * width - 180 * kUnits);
    return Refusal::none;
}

Refusal GraticuleNeighbours(std::string_view number, Neighbours& numbers) {
    Cell cell{};
    Inner inner;
    const Refusal refusal = ReadCell(number, cell, inner);
    if (refusal != Refusal::none) return refusal;
    const Whole rows = kRowsOfZones * cell.scale->parts, columns = kColumnsOfZones * cell.scale->parts;
    std::size_t at = 0;
    for (const Whole up : {1, 0, -1})
        for (const Whole right : {-1, 0, 1}) {
            if (up == 0 && right == 0) continue;
            Cell next = cell;
            next.row += up;
            next.column = (next.column + right + columns) % columns;
            numbers[at++] = next.row < 0 || next.row >= rows ? std::string() : NumberOf(next);
        }
    return Refusal::none;
}

Refusal GraticuleCover(double south, double west, double north, double east, int scale, Style style,
                       std::vector<std::string>& numbers) {
    const Scale* s = ScaleOf(scale);
    if (s == nullptr) return Refusal::scale;
    Whole down = 0, left = 0, up = 0, right = 0;
    if (!PlaceOf(south, west, down, left) || !PlaceOf(north, east, up, right)) return Refusal::outside;
    if (down > up || left > right) return Refusal::box;
    const Whole row1 = FloorDiv(down, s->height()), row2 = LastCell(down, up, s->height());
    const Whole column1 = FloorDiv(left, s->width()), column2 = LastCell(left, right, s->width());
    if (row1 < 0 || row2 >= kRowsOfZones * s->parts || column1 < 0 || column2 >= kColumnsOfZones * s->parts)
        return Refusal::outside;
    if ((row2 - row1 + 1) * (column2 - column1 + 1) > kMostSheets) return Refusal::tooMany;
    numbers.clear();
    for (Whole row = row2; row >= row1; --row)
        for (Whole column = column1; column <= column2; ++column)
            numbers.push_back(NumberOf({s, row, column, style == Style::ninth && scale == 2000}));
    return Refusal::none;
}

Refusal ConvertGraticule(std::string_view number, Style style, std::string& converted) {
    Cell cell{};
    Inner inner;
    const Refusal refusal = ReadCell(number, cell, inner);
    if (refusal != Refusal::none) return refusal;
    if (cell.scale->denominator != 2000) return Refusal::scale;
    cell.ninth = style == Style::ninth;
    converted = NumberOf(cell);
    return Refusal::none;
}

}  // namespace zm::sheets
