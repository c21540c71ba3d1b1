#include "dwg/reader/polyline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zm::dwg::reader {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kStraight = 1e-9;  // a bulge below it shows no arc

int StepsOf(double sweep) {
    return std::clamp(static_cast<int>(std::ceil(std::abs(sweep) / kTurn * 180)), 2, 360);
}

// The points of the arc from a to b whose bulge is the tangent of a quarter of its sweep; a left out.
void AddBulge(std::vector<Point>& points, const Point& a, const Point& b, double bulge) {
    if (std::abs(bulge) >= kStraight && std::isfinite(bulge)) {
        const double sweep = 4.0 * std::atan(bulge);
        const double height = (1.0 - bulge * bulge) / (4.0 * bulge);  // of the centre over the chord, in chords
        const Point centre{(a.x + b.x) / 2 - height * (b.y - a.y), (a.y + b.y) / 2 + height * (b.x - a.x), a.z};
        const double radius = std::hypot(a.x - centre.x, a.y - centre.y);
        const double from = std::atan2(a.y - centre.y, a.x - centre.x);
        const int steps = StepsOf(sweep);
        for (int i = 1; i < steps; ++i) {
            const double angle = from + sweep * i / steps;
            points.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle), a.z});
        }
    }
    points.push_back(b);
}

int FlagsOf(const Record& vertex) {
    return static_cast<int>(vertex.Number("vertex_flags", 0.0));
}

// Rows and columns of a mesh of m by n points; a fitted one has the densities in their place.
std::vector<std::vector<Point>> MeshLines(const Record& head, const std::vector<Point>& points, int flags) {
    const bool fitted = (flags & kSplineFitted) != 0;
    const auto size = [&](const char* plain, const char* dense) {
        const double number = fitted && head.Number(dense, 0.0) > 1.0 ? head.Number(dense, 0.0) : head.Number(plain, 0);
        return static_cast<std::size_t>(std::max(number, 0.0));
    };
    const std::size_t m = size("m", "m_density"), n = size("n", "n_density");
    if (m < 2 || n < 2 || m * n > points.size()) return {points};
    std::vector<std::vector<Point>> lines;
    for (std::size_t i = 0; i < m; ++i) {
        auto& line = lines.emplace_back();
        for (std::size_t j = 0; j < n; ++j) line.push_back(points[i * n + j]);
        if (flags & kMeshClosedInN) line.push_back(points[i * n]);
    }
    for (std::size_t j = 0; j < n; ++j) {
        auto& line = lines.emplace_back();
        for (std::size_t i = 0; i < m; ++i) line.push_back(points[i * n + j]);
        if (flags & kClosedPolyline) line.push_back(points[j]);
    }
    return lines;
}

// Faces name their corners by numbers from 1; a negative one begins an edge that is not shown.
std::vector<std::vector<Point>> FaceLines(const std::vector<Record>& vertices) {
    std::vector<Point> corners;
    std::vector<std::vector<Point>> lines;
    for (const Record& vertex : vertices)
        if ((FlagsOf(vertex) & kFacePoint) != 0) corners.push_back(vertex.points.front());
    for (const Record& vertex : vertices) {
        if ((FlagsOf(vertex) & (kFaceVertex | kFacePoint)) != kFaceVertex) continue;
        std::vector<int> face;
        for (const char* name : {"corner_1", "corner_2", "corner_3", "corner_4"})
            if (const auto number = static_cast<std::int16_t>(vertex.Number(name, 0.0)); number != 0)
                face.push_back(number);
        for (std::size_t i = 0; i < face.size(); ++i) {
            const auto a = static_cast<std::size_t>(std::abs(face[i]));
            const auto b = static_cast<std::size_t>(std::abs(face[(i + 1) % face.size()]));
            if (face[i] > 0 && a <= corners.size() && b <= corners.size())
                lines.push_back({corners[a - 1], corners[b - 1]});
        }
    }
    return lines;
}

}  // namespace

std::vector<Point> ArcPoints(const Point& centre, double radius, double from, double to) {
    double sweep = std::fmod(to - from, kTurn);
    if (!(sweep > 0.0)) sweep += kTurn;
    const int steps = std::isfinite(sweep) ? StepsOf(sweep) : 2;
    std::vector<Point> points;
    for (int i = 0; i <= steps; ++i) {
        const double angle = from + sweep * i / steps;
        points.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle), centre.z});
    }
    return points;
}

std::vector<std::vector<Point>> LinesOf(const Polyline& polyline, bool withFrame) {
    const int flags = static_cast<int>(polyline.head.Number("closed", 0.0));
    if (flags & kFaces) return FaceLines(polyline.vertices);
    std::vector<Point> corners;
    std::vector<double> bulges;
    for (const Record& vertex : polyline.vertices) {
        if ((FlagsOf(vertex) & kFramePoint) != 0 && (flags & kSplineFitted) != 0 && !withFrame) continue;
        if (vertex.points.empty()) continue;
        corners.push_back(vertex.points.front());
        bulges.push_back(vertex.Number("bulge", 0.0));
    }
    if (flags & kMesh) return MeshLines(polyline.head, corners, flags);
    if (corners.empty()) return {};
    std::vector<Point> points{corners.front()};
    for (std::size_t i = 1; i < corners.size(); ++i) AddBulge(points, corners[i - 1], corners[i], bulges[i - 1]);
    if (flags & kClosedPolyline) AddBulge(points, corners.back(), corners.front(), bulges.back());
    return {points};
}

}  // namespace zm::dwg::reader
