// Positions as lines of text: one point a line, the axes named or in a stated order.
#pragma once

#include <functional>
#include <string>

#include "tools/zenro/verbs.h"

namespace zm::tool {

/// How an angle is written.
enum class AngleForm { decimal, packed };

/// The two kinds of position that a line may hold.
enum class PointKind { geographic, plane };

struct PointFormat {
    PointKind kind = PointKind::geographic;
    bool firstAxisFirst = true;  // latitude before longitude, north before east
    AngleForm angles = AngleForm::decimal;
};

/// One line that was read. Angles are decimal degrees whatever the form on the line.
struct PointLine {
    long number = 0;      // of the line, from 1
    double first = 0.0;   // latitude, or northing
    double second = 0.0;  // longitude, or easting
    std::string rest;     // what followed on the line, kept as it is
};

/// Reads points from a file, or from stdin for "-" or an empty name, and calls work for each. Lines that are empty or
/// begin with # are passed over; a line that is no point, or out of range, is reported as skipped.
/// \return the number of points that were handed on
long ReadPoints(const std::string& file, const PointFormat& format, Context& context,
                const std::function<void(const PointLine&)>& work);

/// The same for lines that may hold a longitude alone.
long ReadLongitudes(const std::string& file, const PointFormat& format, Context& context,
                    const std::function<void(const PointLine&)>& work);

/// The ellipsoid family by its name: 54, 80, 84 or 2000.
struct Family {
    std::string name = "2000";
    int selector() const { return name == "54" ? 54 : name == "80" ? 80 : 84; }
};
/// "ellipsoid Krassovsky 1940" and so on.
std::string FamilyTitle(const Family& family);

void AddFamilyOption(CLI::App& verb, Family& family);
void AddAngleOption(CLI::App& verb, AngleForm& form);

}  // namespace zm::tool
