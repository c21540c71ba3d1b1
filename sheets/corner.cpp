#include "sheets/whole.h"
#include "zenromath/sheets.h"

namespace zm::sheets {
namespace {

constexpr Whole kUnits = 10000;  // of a metre: 0.1 mm
constexpr Whole kKilometre = 1000 * kUnits;
constexpr double kFarthest = 1e9;       // metres
constexpr std::size_t kMostDigits = 6;  // of the whole kilometres of a number
constexpr Whole kMostLetters = 26;

// A division in units.
struct Grid {
    Whole height = 0, width = 0, originX = 0, originY = 0;
    int decimals = 0;  // of kilometres in a number
    Whole step = 0;    // what the last decimal counts
    Whole RowOf(Whole x) const { return FloorDiv(x - originX, height); }
    Whole ColumnOf(Whole y) const { return FloorDiv(y - originY, width); }
    Whole South(Whole row) const { return originX + row * height; }
    Whole West(Whole column) const { return originY + column * width; }
};

Refusal GridOf(const Division& d, Grid& grid) {
    if (d.scale != 500 && d.scale != 1000 && d.scale != 2000 && d.scale != 5000) return Refusal::scale;
    const bool fits =
        d.scale == 5000 ? d.height == 40 && d.width == 40 : (d.height == 50 || d.height == 40) && d.width == 50;
    if (!fits) return Refusal::size;
    grid.decimals = d.scale == 500 ? 2 : d.scale == 5000 ? 0 : 1;
    grid.step = grid.decimals == 2 ? kKilometre / 100 : grid.decimals == 1 ? kKilometre / 10 : kKilometre;
    grid.height = d.height * d.scale * kUnits / 100;
    grid.width = d.width * d.scale * kUnits / 100;
    if (!ToUnits(d.originX, kUnits, kFarthest, grid.originX) || !ToUnits(d.originY, kUnits, kFarthest, grid.originY))
        return Refusal::origin;
    return grid.originX % grid.step == 0 && grid.originY % grid.step == 0 ? Refusal::none : Refusal::origin;
}

std::string Kilometres(Whole units, int decimals) {
    std::string text = std::to_string(units / kKilometre);
    if (decimals == 0) return text;
    return text + "." +
           Padded(units % kKilometre / (kKilometre / (decimals == 2 ? 100 : 10)), static_cast<std::size_t>(decimals));
}

Refusal CornerText(const Grid& grid, Whole row, Whole column, std::string& number) {
    const Whole south = grid.South(row), west = grid.West(column);
    if (south < 0 || west < 0) return Refusal::negative;
    number = Kilometres(south, grid.decimals) + "-" + Kilometres(west, grid.decimals);
    return Refusal::none;
}

// "4845.50" in units, -1 where the text is not so.
Whole ReadKilometres(std::string_view text, const Grid& grid) {
    const std::size_t dot = text.find('.');
    if ((dot == std::string_view::npos) != (grid.decimals == 0)) return -1;
    const std::string_view whole = text.substr(0, dot);
    if (whole.size() > kMostDigits || (whole.size() > 1 && whole.front() == '0')) return -1;
    const Whole kilometres = DigitsOf(whole);
    if (kilometres < 0 || grid.decimals == 0) return kilometres < 0 ? -1 : kilometres * kKilometre;
    const std::string_view fraction = text.substr(dot + 1);
    const Whole parts = DigitsOf(fraction);
    if (fraction.size() != static_cast<std::size_t>(grid.decimals) || parts < 0) return -1;
    return kilometres * kKilometre + parts * grid.step;
}

Refusal ReadPlace(const Division& division, std::string_view number, Grid& grid, Whole& row, Whole& column) {
    const Refusal refusal = GridOf(division, grid);
    if (refusal != Refusal::none) return refusal;
    const std::size_t dash = number.find('-');
    if (dash == std::string_view::npos) return Refusal::malformed;
    const Whole south = ReadKilometres(number.substr(0, dash), grid);
    const Whole west = ReadKilometres(number.substr(dash + 1), grid);
    if (south < 0 || west < 0) return Refusal::malformed;
    row = grid.RowOf(south);
    column = grid.ColumnOf(west);
    return grid.South(row) == south && grid.West(column) == west ? Refusal::none : Refusal::offGrid;
}

double Metres(Whole units) {
    return static_cast<double>(units) / static_cast<double>(kUnits);
}

// The rows and columns of an area.
struct Span {
    Whole row1 = 0, row2 = 0, column1 = 0, column2 = 0;
    Whole columns() const { return column2 - column1 + 1; }
    Whole rows() const { return row2 - row1 + 1; }
};

Refusal SpanOf(const Grid& grid, const PlaneBox& box, Span& span) {
    Whole south = 0, west = 0, north = 0, east = 0;
    if (!ToUnits(box.south, kUnits, kFarthest, south) || !ToUnits(box.west, kUnits, kFarthest, west) ||
        !ToUnits(box.north, kUnits, kFarthest, north) || !ToUnits(box.east, kUnits, kFarthest, east))
        return Refusal::outside;
    if (south > north || west > east) return Refusal::box;
    span.row1 = grid.RowOf(south);
    span.row2 = LastCell(south - grid.originX, north - grid.originX, grid.height);
    span.column1 = grid.ColumnOf(west);
    span.column2 = LastCell(west - grid.originY, east - grid.originY, grid.width);
    if (grid.South(span.row1) < 0 || grid.West(span.column1) < 0) return Refusal::negative;
    return span.rows() > kMostSheets / span.columns() ? Refusal::tooMany : Refusal::none;
}

// The row and column of a point among those of an area, 0 at the top and at the left.
Refusal PlaceInArea(const Division& division, const PlaneBox& area, double x, double y, Span& span, Whole& down,
                    Whole& right) {
    Grid grid;
    Refusal refusal = GridOf(division, grid);
    if (refusal == Refusal::none) refusal = SpanOf(grid, area, span);
    if (refusal != Refusal::none) return refusal;
    Whole north = 0, east = 0;
    if (!ToUnits(x, kUnits, kFarthest, north) || !ToUnits(y, kUnits, kFarthest, east)) return Refusal::outside;
    down = span.row2 - grid.RowOf(north);
    right = grid.ColumnOf(east) - span.column1;
    return down < 0 || down >= span.rows() || right < 0 || right >= span.columns() ? Refusal::outside : Refusal::none;
}

}  // namespace

bool ReadSize(std::string_view text, Division& division) {
    if (text != "50x50" && text != "40x50" && text != "40x40") return false;
    division.height = text[0] == '5' ? 50 : 40;
    division.width = text[3] == '5' ? 50 : 40;
    return true;
}

Refusal CornerNumber(const Division& division, double x, double y, std::string& number) {
    Grid grid;
    const Refusal refusal = GridOf(division, grid);
    if (refusal != Refusal::none) return refusal;
    Whole north = 0, east = 0;
    if (!ToUnits(x, kUnits, kFarthest, north) || !ToUnits(y, kUnits, kFarthest, east)) return Refusal::outside;
    return CornerText(grid, grid.RowOf(north), grid.ColumnOf(east), number);
}

Refusal ReadCorner(const Division& division, std::string_view number, PlaneBox& sheet) {
    Grid grid;
    Whole row = 0, column = 0;
    const Refusal refusal = ReadPlace(division, number, grid, row, column);
    if (refusal != Refusal::none) return refusal;
    sheet = {Metres(grid.South(row)), Metres(grid.West(column)), Metres(grid.South(row + 1)),
             Metres(grid.West(column + 1))};
    return Refusal::none;
}

Refusal CornerNeighbours(const Division& division, std::string_view number, Neighbours& numbers) {
    Grid grid;
    Whole row = 0, column = 0;
    const Refusal refusal = ReadPlace(division, number, grid, row, column);
    if (refusal != Refusal::none) return refusal;
    std::size_t at = 0;
    for (const Whole up : {1, 0, -1})
        for (const Whole right : {-1, 0, 1}) {
            if (up == 0 && right == 0) continue;
            std::string& next = numbers[at++];
            if (CornerText(grid, row + up, column + right, next) != Refusal::none) next.clear();
        }
    return Refusal::none;
}

Refusal CornerCover(const Division& division, const PlaneBox& box, std::vector<std::string>& numbers) {
    Grid grid;
    Span span;
    Refusal refusal = GridOf(division, grid);
    if (refusal == Refusal::none) refusal = SpanOf(grid, box, span);
    if (refusal != Refusal::none) return refusal;
    numbers.clear();
    for (Whole row = span.row2; row >= span.row1; --row)
        for (Whole column = span.column1; column <= span.column2; ++column)
            CornerText(grid, row, column, numbers.emplace_back());
    return Refusal::none;
}

Refusal RunningNumber(const Division& division, const PlaneBox& area, double x, double y, std::string_view prefix,
                      std::string& number) {
    Span span;
    Whole down = 0, right = 0;
    const Refusal refusal = PlaceInArea(division, area, x, y, span, down, right);
    if (refusal != Refusal::none) return refusal;
    number = std::string(prefix) + (prefix.empty() ? "" : "-") + std::to_string(down * span.columns() + right + 1);
    return Refusal::none;
}

Refusal RowColumnNumber(const Division& division, const PlaneBox& area, double x, double y, std::string& number) {
    Span span;
    Whole down = 0, right = 0;
    const Refusal refusal = PlaceInArea(division, area, x, y, span, down, right);
    if (refusal != Refusal::none) return refusal;
    if (span.rows() > kMostLetters) return Refusal::tooMany;
    number = std::string(1, static_cast<char>('A' + down)) + "-" + std::to_string(right + 1);
    return Refusal::none;
}

}  // namespace zm::sheets
