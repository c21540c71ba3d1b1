#include "tools/zenro/view/positions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <regex>
#include <utility>
#include <vector>

#include "tools/kit/text.h"
#include "tools/zenro/coord/plane_system.h"
#include "tools/zenro/coord/zones.h"

namespace zm::tool {
namespace {

constexpr double kNear = 1000.0;      // metres around the data, and half of their size
constexpr double kSame = 0.001;       // metres between two readings that are one position
constexpr double kOfAnAngle = 400.0;  // a number below is one of degrees

// How a line of the clipboard may name a point: two bare numbers, or columns as `coord --columns` names them, with 1 and
// 2 for the two axes.
constexpr const char* kColumns[] = {"", "1,2,h", "no,1,2", "no,1,2,h", "no,code,1,2", "no,code,1,2,h"};

struct Position {
    double x = 0.0, y = 0.0;  // in the plane of the map, metres
};

class Reading {
 public:
    Reading(const TargetPlane& plane, const Box& data)
        : m_plane(plane),
          m_near(data.empty() ? data : data.Widened(kNear + std::max(data.x2 - data.x1, data.y2 - data.y1) / 2.0)) {}

    void Read(const std::string& text) {
        for (const char* columns : kColumns)
            for (const PointKind kind : {PointKind::geographic, PointKind::plane}) {
                if (kind == PointKind::geographic && !m_plane.geodetic) continue;
                for (const bool firstAxisFirst : {true, false}) ReadAs(text, kind, firstAxisFirst, columns);
            }
    }
    /// Those at the data; else the first of the others.
    std::vector<Position> Found() const {
        if (!m_here.empty()) return m_here;
        return m_elsewhere.empty() ? m_elsewhere : std::vector<Position>{m_elsewhere.front()};
    }

 private:
    void ReadAs(const std::string& text, PointKind kind, bool firstAxisFirst, const std::string& columns) {
        PointFormat format;
        format.kind = kind;
        format.firstAxisFirst = firstAxisFirst;
        if (!columns.empty()) {
            std::array<const char*, 2> axes = {"n", "e"};
            if (kind == PointKind::geographic) axes = {"lat", "lon"};
            if (!firstAxisFirst) std::swap(axes[0], axes[1]);
            std::string named = columns;
            named.replace(named.find('1'), 1, axes[0]);
            named.replace(named.find('2'), 1, axes[1]);
            format.columns = ColumnsOf(named);
        }
        m_plain = columns.empty();
        PointLine point;
        if (kind == PointKind::plane) {
            if (ReadPointText(text, format, point).empty()) AddPlane(point.first, point.second);
            return;
        }
        for (const AngleForm form : {AngleForm::decimal, AngleForm::dms, AngleForm::packed}) {
            format.angles = form;
            if (ReadPointText(text, format, point).empty() && (!m_plain || point.rest.empty()))
                AddDegrees(point.first, point.second, form == AngleForm::packed);
        }
    }
    void AddDegrees(double latitude, double longitude, bool unlikely = false) {
        PlaneSystem system = System(m_plane.zoneWidth);
        system.meridian = m_plane.meridian;
        system.easting = Easting::natural;
        double north = 0.0, east = 0.0;
        if (std::fabs(longitude - m_plane.meridian) > 180.0) longitude -= std::copysign(360.0, longitude);
        if (DegreesToPlane(system, latitude, longitude, north, east).empty())
            Add(east + m_plane.eastOffset, north, unlikely);
    }
    // An easting is that of the map first, then of a zone that it names; without one it is counted from the meridian of
    // the map, or from 500 km west of it.
    void AddPlane(double north, double east) {
        if (!m_plane.geodetic) return Add(east, north, false);
        if (std::fabs(north) < kOfAnAngle && std::fabs(east) < kOfAnAngle) return Add(east, north, true);
        Add(east, north, std::fabs(east - m_plane.eastOffset) > kFalseEasting);
        for (const int width : {m_plane.zoneWidth, 9 - m_plane.zoneWidth}) {
            double natural = 0.0, meridian = 0.0, latitude = 0.0, longitude = 0.0;
            if (!SplitEasting(System(width), east, natural, meridian).empty()) continue;
            if (meridian == m_plane.meridian)
                Add(natural + m_plane.eastOffset, north, false);
            else if (PlaneToDegrees(System(width), north, east, latitude, longitude).empty())
                AddDegrees(latitude, longitude);
        }
        if (std::fabs(east) >= kZone) return;
        Add(east - kFalseEasting + m_plane.eastOffset, north, east < 0.0);
        Add(east + m_plane.eastOffset, north, true);
    }
    PlaneSystem System(int width) const {
        PlaneSystem system;
        system.family.name = m_plane.selector == 54 ? "54" : m_plane.selector == 80 ? "80" : "2000";
        system.zoneWidth = width;
        return system;
    }
    // What is unlikely, or has more than two numbers, counts at the data alone.
    void Add(double x, double y, bool unlikely) {
        const auto add = [&](std::vector<Position>& to) {
            for (const Position& one : to)
                if (std::hypot(one.x - x, one.y - y) < kSame) return;
            to.push_back({x, y});
        };
        if (Box{x, y, x, y}.Meets(m_near))
            add(m_here);
        else if (m_plain && !unlikely)
            add(m_elsewhere);
    }

    const TargetPlane& m_plane;
    Box m_near;
    bool m_plain = true;
    std::vector<Position> m_here, m_elsewhere;
};

// As typed on a Chinese keyboard, and with the letters that the line below the map has.
std::string Plain(std::string text) {
    constexpr std::pair<const char*, const char*> kMarks[] = {{"，", ","}, {"；", ";"}, {"、", ","},
                                                              {"：", ":"}, {"＝", "="}, {"　", " "}};
    for (const auto& [mark, plain] : kMarks)
        for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos;)
            text.replace(at, std::string(mark).size(), plain);
    // N 3456246.00, e=40512247.5, and x for the northing as surveyors in China have it.
    static const std::regex north("(^|[ ,;\\t])[NnXx] *[=:]? *(-?[0-9]{4})");
    static const std::regex east("(^|[ ,;\\t])[EeYy] *[=:]? *(-?[0-9]{4})");
    text = std::regex_replace(text, north, "$1north=$2");
    return std::regex_replace(text, east, "$1east=$2");
}

}  // namespace

nlohmann::json FindPositions(const std::string& text, const TargetPlane& plane, const Box& data) {
    nlohmann::json found = nlohmann::json::array();
    if (text.find_first_of("0123456789") == std::string::npos) return found;
    Reading reading(plane, data);
    reading.Read(Plain(text));
    for (const auto& [x, y] : reading.Found())
        found.push_back({{"kind", "position"},
                         {"title", text + " - E " + Fixed(x, 3) + "  N " + Fixed(y, 3)},
                         {"box", {x, y, x, y}}});
    return found;
}

}  // namespace zm::tool
