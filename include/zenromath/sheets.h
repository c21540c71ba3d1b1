// Standard map sheets: the graticule's trapezoids from 1:1,000,000 to 1:500 and the rectangular sheets of large scales,
// with their numbers, both ways, their neighbours, and the sheets that cover an area.
//
// All functions may be called from any thread. They throw nothing but what memory throws, show no message and keep no
// state. What they cannot do they refuse: the result is the reason, and the outputs are left as they were.
// Inside, positions are whole numbers (1e-5 seconds of arc, 0.1 mm in the plane), so that no border depends on the
// rounding of a double. A sheet owns its south and its west border, not its north and east one.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "zenromath/export.h"

namespace zm::sheets {

/// Why a call was refused.
enum class Refusal {
    none,       // it was not: the outputs are set
    malformed,  // the text has not the form of a number: wrong letters, count of digits, blanks, decimals
    range,    // the form is right, a part is not: column 00 or above 60, row letter beyond V, a row or column too large
    outside,  // south of the equator, at or north of 60 degrees, longitude not in [-180, 180); not in the area asked
    scale,    // no scale of such sheets
    size,     // no size of sheets at this scale
    style,    // no way to write the number of a sheet of this scale
    origin,   // the decimals of the scale cannot write corners counted from this origin
    offGrid,  // a plane number that is not the corner of a sheet
    box,      // south above north, or west above east
    negative,  // a plane number would have a negative coordinate
    tooMany,   // more than kMostSheets sheets, or more than 26 rows with letters
};
/// The reason as one word: "malformed", "off-grid", "too-many" ...; "" for none.
ZM_API const char* NameOf(Refusal refusal);

/// The most sheets that a cover or an area with running numbers may have.
constexpr long long kMostSheets = 10000;

/// The numbers around a sheet: NW, N, NE, W, E, SW, S, SE; empty where there is no sheet.
using Neighbours = std::array<std::string, 8>;

// ---------------------------------------------------------------------------------------------------------------
// Sheets of the graticule
// ---------------------------------------------------------------------------------------------------------------

/// How the number of a 1:2000 sheet is written.
enum class Style {
    code,   // J50I090055
    ninth,  // J50H030019-7: its 1:5000 sheet, then 1 to 9 from the north-west, left to right, then down
};

/// A sheet between two parallels and two meridians.
struct GraticuleSheet {
    int scale = 0;       ///< denominator
    int row = 1;         ///< within the 1:1,000,000 sheet, 1 at the north and at the west
    int column = 1;      ///< within the 1:1,000,000 sheet, 1 at the north and at the west
    double south = 0.0;  ///< degrees, north and east positive
    double west = 0.0;   ///< degrees, north and east positive
    double north = 0.0;  ///< degrees, north and east positive
    double east = 0.0;   ///< degrees, north and east positive
};

/// The number of the sheet that owns a position.
/// \param latitude, longitude  degrees, 0 up to 60 and -180 up to 180; rounded to 1e-5 seconds (0.3 mm)
/// \param scale   1000000, 500000, 250000, 100000, 50000, 25000, 10000, 5000, 2000, 1000 or 500
/// \param style   of 1:2000 sheets; other scales have one style
/// \return  none, scale, outside
/// Source: GB/T 13989-2012
ZM_API Refusal GraticuleNumber(double latitude, double longitude, int scale, Style style, std::string& number);
/// The sheet of a number, in either style and letters of either case.
/// \return  none, malformed, range, outside
ZM_API Refusal ReadGraticule(std::string_view number, GraticuleSheet& sheet);
/// The numbers around a sheet, in the style of its number. East of zone 60 lies zone 1; south of the equator and north of
/// 60 degrees there is none.
/// \return  as ReadGraticule
ZM_API Refusal GraticuleNeighbours(std::string_view number, Neighbours& numbers);
/// The sheets that share ground with a box, north row first, each row from the west. A north or east edge on a border
/// takes in nothing beyond it; a box without extent gives the sheet that owns the point.
/// \param south, west, north, east  degrees
/// \return  none, scale, box, outside, tooMany
ZM_API Refusal GraticuleCover(double south, double west, double north, double east, int scale, Style style,
                              std::vector<std::string>& numbers);
/// The number of a 1:2000 sheet in the other style, or the same.
/// \return  as ReadGraticule; scale for a sheet of another scale
ZM_API Refusal ConvertGraticule(std::string_view number, Style style, std::string& converted);

// ---------------------------------------------------------------------------------------------------------------
// Rectangular sheets in the plane. x is north and y is east, metres.
// ---------------------------------------------------------------------------------------------------------------

/// How the plane is divided.
struct Division {
    int scale = 500;       ///< 500, 1000, 2000 or 5000
    int height = 50;       ///< centimetres of paper, north-south: 50 or 40; at 1:5000 40
    int width = 50;        ///< centimetres of paper, east-west: 50; at 1:5000 40
    double originX = 0.0;  ///< metres north; sheets begin at whole multiples of their size from here
    double originY = 0.0;  ///< metres east
};
/// "50x50", "40x50" or "40x40"; false for anything else.
ZM_API bool ReadSize(std::string_view text, Division& division);

/// A rectangle of the plane.
struct PlaneBox {
    double south = 0.0;  ///< metres
    double west = 0.0;   ///< metres
    double north = 0.0;  ///< metres
    double east = 0.0;   ///< metres
};

/// The number of the sheet that holds a point: kilometres of its south-west corner, north first, with the decimals of the
/// scale: "4845.50-614.75".
/// \return  none, scale, size, origin, outside (not a number, or beyond 1e9 m), negative
/// Source: GB/T 20257.1
ZM_API Refusal CornerNumber(const Division& division, double x, double y, std::string& number);
/// The box of a sheet by its corner number.
/// \return  none, scale, size, origin, malformed, offGrid
ZM_API Refusal ReadCorner(const Division& division, std::string_view number, PlaneBox& sheet);
/// The numbers around a sheet; empty where a coordinate would be negative.
/// \return  as ReadCorner
ZM_API Refusal CornerNeighbours(const Division& division, std::string_view number, Neighbours& numbers);
/// The sheets that share ground with a box, north row first, each row from the west; edges as in GraticuleCover.
/// \return  none, scale, size, origin, box, outside, negative, tooMany
ZM_API Refusal CornerCover(const Division& division, const PlaneBox& box, std::vector<std::string>& numbers);

/// Running number of the sheet that holds a point among those that cover an area, left to right, then down: "XX-8"; without
/// a prefix the number alone.
/// \return  as CornerCover; outside where none of the area's sheets holds the point
ZM_API Refusal RunningNumber(const Division& division, const PlaneBox& area, double x, double y,
                             std::string_view prefix, std::string& number);
/// Letter of the row from the top and number of the column from the left: "A-4".
/// \return  as RunningNumber; tooMany for more than 26 rows
ZM_API Refusal RowColumnNumber(const Division& division, const PlaneBox& area, double x, double y, std::string& number);

/// The older number from the 1:5000 square of 2 km, its quarters I north-west, II north-east, III south-west, IV
/// south-east, in ASCII letters: "20-60-IV-II" at 1:1000.
/// \param scale  5000, 2000, 1000 or 500
/// \return  none, scale, outside, negative
ZM_API Refusal QuadrantNumber(double x, double y, int scale, std::string& number);
/// \return  none, malformed, offGrid
ZM_API Refusal ReadQuadrant(std::string_view number, int& scale, PlaneBox& sheet);

}  // namespace zm::sheets
