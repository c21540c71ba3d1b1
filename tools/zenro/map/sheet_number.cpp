#include "tools/zenro/map/sheet_number.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "tools/kit/angles.h"
#include "tools/kit/exit_codes.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/zones.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

constexpr double kLargeScale = 10000.0;  // down to it maps are made in 3-degree zones, below in 6-degree zones
constexpr int kSteps = 32;               // pieces of a side

// A letter and two digits begin every number of the graticule and no corner number.
bool LooksLikeGraticule(const std::string& text) {
    const auto digit = [&](std::size_t i) { return std::isdigit(static_cast<unsigned char>(text[i])) != 0; };
    return text.size() >= 3 && std::isalpha(static_cast<unsigned char>(text[0])) != 0 && digit(1) && digit(2);
}

bool LooksLikeCorner(const std::string& text) {
    return text.find('-') != std::string::npos && std::all_of(text.begin(), text.end(), [](unsigned char c) {
               return std::isdigit(c) != 0 || c == '.' || c == '-';
           });
}

bool IsScaleOfCorners(double scale) {
    return scale == 500.0 || scale == 1000.0 || scale == 2000.0 || scale == 5000.0;
}

[[noreturn]] void NoSheet(const std::string& number, const std::string& why) {
    throw Failure(kUsage, Phrase("--number {0}: {1}. Ask for one with: zenro sheets at", number, why));
}

}  // namespace

std::optional<NamedSheet> ReadSheetNumber(const std::string& number, double scale, const std::string& division) {
    NamedSheet sheet;
    sheet.number = number;
    if (LooksLikeGraticule(number)) {
        const sheets::Refusal refusal = sheets::ReadGraticule(number, sheet.degrees);
        if (refusal != sheets::Refusal::none)
            NoSheet(number, Phrase("no sheet of the graticule ({0})", Translated(sheets::NameOf(refusal))));
        std::transform(sheet.number.begin(), sheet.number.end(), sheet.number.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        sheet.graticule = true;
        sheet.scale = sheet.degrees.scale;
        return sheet;
    }
    if (!LooksLikeCorner(number) || (division.empty() && !IsScaleOfCorners(scale))) return std::nullopt;
    sheets::Division grid;
    grid.scale = IsScaleOfCorners(scale) ? static_cast<int>(scale) : 0;
    sheets::ReadSize(!division.empty() ? division : scale == 5000.0 ? "40x40" : "50x50", grid);
    const sheets::Refusal refusal = sheets::ReadCorner(grid, number, sheet.metres);
    if (refusal == sheets::Refusal::malformed && division.empty()) return std::nullopt;
    if (refusal != sheets::Refusal::none)
        NoSheet(number,
                Phrase("no corner of a sheet of this scale and division ({0})", Translated(sheets::NameOf(refusal))));
    sheet.scale = scale;
    return sheet;
}

void TakeZoneOf(const NamedSheet& sheet, PlaneOptions& plane) {
    if (!sheet.graticule) return;
    plane.area.Add(sheet.degrees.west, sheet.degrees.south);
    plane.area.Add(sheet.degrees.east, sheet.degrees.north);
    const double middle = (sheet.degrees.west + sheet.degrees.east) / 2.0;
    if (plane.zoneWidth == 0) plane.zoneWidth = sheet.scale <= kLargeScale ? 3 : 6;
    const int zone = ZoneOfLongitude(middle, plane.zoneWidth);
    if (zone > 0)
        plane.zone = zone;
    else if (!plane.meridian)
        plane.meridian = MeridianOfZone(zone, plane.zoneWidth);
}

Chain OutlineOf(const NamedSheet& sheet, const TargetPlane& plane) {
    Chain outline;
    if (!sheet.graticule) {
        // The numbers of corners have no zone: the plane's own is before them.
        const double zone = sheet.metres.west < kZone ? plane.zone * kZone : 0.0;
        outline.x = {sheet.metres.west + zone, sheet.metres.east + zone, sheet.metres.east + zone,
                     sheet.metres.west + zone};
        outline.y = {sheet.metres.south, sheet.metres.south, sheet.metres.north, sheet.metres.north};
        return outline;
    }
    if (!plane.geodetic)
        NoSheet(sheet.number, Phrase("the data names no coordinate system, so that a sheet of the graticule has no "
                                     "place in it; give --source"));
    const auto& d = sheet.degrees;
    const double corners[5][2] = {
        {d.west, d.south}, {d.east, d.south}, {d.east, d.north}, {d.west, d.north}, {d.west, d.south}};
    for (int side = 0; side < 4; ++side)
        for (int i = 0; i < (side % 2 == 0 ? kSteps : 1); ++i) {
            const double t = static_cast<double>(i) / kSteps;
            const double longitude = corners[side][0] + t * (corners[side + 1][0] - corners[side][0]);
            double north = 0.0, east = 0.0, convergence = 0.0;
            forward(plane.selector, corners[side][1] * kDegree, (longitude - plane.meridian) * kDegree, &north, &east,
                    &convergence);
            outline.x.push_back(east + plane.eastOffset);
            outline.y.push_back(north);
        }
    if (!(std::fabs(d.west - plane.meridian) < 30.0) || !(std::fabs(d.east - plane.meridian) < 30.0))
        NoSheet(sheet.number, Phrase("it lies too far from the central meridian {0}", Fixed(plane.meridian, 4)));
    return outline;
}

GraticuleEdge EdgeOf(const NamedSheet& sheet, const Chain& outline) {
    GraticuleEdge edge;
    edge.south = sheet.degrees.south;
    edge.west = sheet.degrees.west;
    edge.north = sheet.degrees.north;
    edge.east = sheet.degrees.east;
    sheets::GraticuleNeighbours(sheet.number, edge.neighbours);
    const std::size_t ends[] = {0, kSteps, kSteps + 1, 2 * kSteps + 1, 2 * kSteps + 2};
    for (std::size_t side = 0; side < 4; ++side)
        for (std::size_t i = ends[side]; i <= ends[side + 1]; ++i) {
            edge.sides[side].x.push_back(outline.x[i % outline.size()]);
            edge.sides[side].y.push_back(outline.y[i % outline.size()]);
        }
    return edge;
}

}  // namespace zm::tool
