// Positions as lines of text: one point a line, the axes named, in a stated order, or by columns.
#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/zenro/coord/angle_text.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {

/// The two kinds of position that a line may hold.
enum class PointKind { geographic, plane };

/// What a column holds.
enum class Column { skip, number, code, north, east, height, latitude, longitude };

/// The columns of a list such as "no,n,e,h" or "code,lat,lon"; "-" is passed over. Throws Failure (kUsage) for an
/// unknown name and for a list without both axes of one kind.
std::vector<Column> ColumnsOf(const std::string& list);
/// The kind of position that columns hold.
PointKind KindOf(const std::vector<Column>& columns);

struct PointFormat {
    PointKind kind = PointKind::geographic;
    bool firstAxisFirst = true;  // latitude before longitude, north before east
    AngleForm angles = AngleForm::decimal;
    std::vector<Column> columns;  // empty: the two numbers first, and all else is kept as it is
    std::string encoding;         // of numbers and codes; empty: UTF-8
};

/// One line that was read. Angles are decimal degrees whatever the form on the line.
struct PointLine {
    long number = 0;      // of the line, from 1
    double first = 0.0;   // latitude, or northing
    double second = 0.0;  // longitude, or easting
    double height = NAN;  // not a number where the line has none
    std::string name;     // the point's number; empty where the line has none
    std::string code;
    std::string rest;  // without columns: what followed on the line, kept as it is
};

/// Reads points from a file, or from stdin for "-" or an empty name, and calls work for each. Lines that are empty or
/// begin with #, a byte order mark and a line of headings are passed over; headings that name the columns are used where
/// the format has none. A line that is no point, or out of range, is reported as skipped, and bad is called in its place.
/// \return the number of points that were handed on
long ReadPoints(const std::string& file, const PointFormat& format, Context& context,
                const std::function<void(const PointLine&)>& work,
                const std::function<void(const PointLine&, const std::string&)>& bad = {});

/// One line as a point, in range. \return why it is none; empty where it is one
std::string ReadPointText(std::string_view line, const PointFormat& format, PointLine& point);

/// The same for lines that may hold a longitude alone.
long ReadLongitudes(const std::string& file, const PointFormat& format, Context& context,
                    const std::function<void(const PointLine&)>& work,
                    const std::function<void(const PointLine&, const std::string&)>& bad = {});

/// The ellipsoid family by its name: 54, 80, 84 or 2000.
struct Family {
    std::string name = "2000";
    int selector() const { return name == "54" ? 54 : name == "80" ? 80 : 84; }
};
/// "ellipsoid Krassovsky 1940" and so on.
std::string FamilyTitle(const Family& family);

void AddFamilyOption(Verb verb, Family& family);
void AddAngleOption(Verb verb, AngleForm& form);

}  // namespace zm::tool
