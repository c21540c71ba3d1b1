#include "tools/zenro/demo/demo_canvas.h"

#include <algorithm>

#include "tools/kit/text.h"
#include "tools/zenro/demo/demo_data.h"

namespace zm::tool::demo {
namespace {

std::string Coordinate(Pt p) {
    return "[" + Fixed(kDemoX1 + p.x, 3) + "," + Fixed(kDemoY1 + p.y, 3) + "]";
}

std::string Coordinates(const Line& line) {
    std::string text = "[";
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (i > 0) text += ',';
        text += Coordinate(line[i]);
    }
    return text += ']';
}

Line Closed(Line ring) {
    ring.push_back(ring.front());
    return ring;
}

double Distance(Pt p, Pt a, Pt b) {
    const double dx = b.x - a.x, dy = b.y - a.y, d2 = dx * dx + dy * dy;
    const double t = d2 > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / d2, 0.0, 1.0) : 0.0;
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

bool Cross(Pt a, Pt b, Pt c, Pt d) {
    const auto side = [](Pt p, Pt q, Pt r) { return (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x); };
    return (side(a, b, c) > 0) != (side(a, b, d) > 0) && (side(c, d, a) > 0) != (side(c, d, b) > 0);
}

// Whether two areas come nearer than a distance.
bool Near(const Line& a, const Line& b, double distance) {
    if (Inside(a, b.front()) || Inside(b, a.front())) return true;
    for (std::size_t i = 0; i < a.size(); ++i)
        for (std::size_t k = 0; k < b.size(); ++k) {
            const Pt a1 = a[i], a2 = a[(i + 1) % a.size()], b1 = b[k], b2 = b[(k + 1) % b.size()];
            if (Cross(a1, a2, b1, b2) || Distance(a1, b1, b2) < distance || Distance(b1, a1, a2) < distance)
                return true;
        }
    return false;
}

}  // namespace

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string Number(double value, int decimals) {
    return Fixed(value, decimals);
}

void Canvas::Add(const std::string& file, const std::string& kind, const std::string& geometry,
                 const Attributes& more) {
    std::string text = "{\"type\":\"Feature\",\"properties\":{\"kind\":" + Quoted(kind);
    for (const auto& [key, value] : more) text += "," + Quoted(key) + ":" + value;
    m_features[file].push_back(text + "},\"geometry\":" + geometry + "}");
}

void Canvas::Point(const std::string& file, const std::string& kind, Pt p, const Attributes& more) {
    Add(file, kind, "{\"type\":\"Point\",\"coordinates\":" + Coordinate(p) + "}", more);
}

void Canvas::Polyline(const std::string& file, const std::string& kind, const Line& line, const Attributes& more) {
    if (line.size() > 1) Add(file, kind, "{\"type\":\"LineString\",\"coordinates\":" + Coordinates(line) + "}", more);
}

void Canvas::Area(const std::string& file, const std::string& kind, const Line& ring, const Attributes& more,
                  const std::vector<Line>& holes) {
    std::string rings = Coordinates(Closed(ring));
    for (const Line& hole : holes) rings += "," + Coordinates(Closed(hole));
    Add(file, kind, "{\"type\":\"Polygon\",\"coordinates\":[" + rings + "]}", more);
}

std::map<std::string, std::string> Canvas::Documents() const {
    std::map<std::string, std::string> documents;
    for (const auto& [file, features] : m_features) {
        std::string text = "{\"type\":\"FeatureCollection\",\"name\":" + Quoted(file) +
                           ",\n\"crs\":{\"type\":\"name\",\"properties\":{\"name\":\"urn:ogc:def:crs:EPSG::4528\"}},\n"
                           "\"features\":[\n";
        for (std::size_t i = 0; i < features.size(); ++i)
            text += features[i] + (i + 1 < features.size() ? ",\n" : "\n");
        documents[file] = text + "]}\n";
    }
    return documents;
}

bool Canvas::IsFree(const Line& ring, double distance) const {
    return std::none_of(m_reserved.begin(), m_reserved.end(),
                        [&](const Line& taken) { return Near(ring, taken, distance); });
}

Line Rectangle(double x1, double y1, double x2, double y2) {
    return {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
}

Line Turned(Pt m, double length, double width, double degrees) {
    const double a = degrees * 3.141592653589793 / 180.0, c = std::cos(a), s = std::sin(a);
    Line ring;
    for (const auto& [u, v] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}})
        ring.push_back({m.x + u * length / 2 * c - v * width / 2 * s, m.y + u * length / 2 * s + v * width / 2 * c});
    return ring;
}

Line Moved(const Line& line, double dx, double dy) {
    Line moved;
    for (const Pt& p : line) moved.push_back({p.x + dx, p.y + dy});
    return moved;
}

bool Inside(const Line& ring, Pt p) {
    bool inside = false;
    for (std::size_t i = 0, k = ring.size() - 1; i < ring.size(); k = i++)
        if ((ring[i].y > p.y) != (ring[k].y > p.y) &&
            p.x < (ring[k].x - ring[i].x) * (p.y - ring[i].y) / (ring[k].y - ring[i].y) + ring[i].x)
            inside = !inside;
    return inside;
}

Line Beside(const Line& line, double distance) {
    Line result;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const Pt before = line[i > 0 ? i - 1 : i], behind = line[i + 1 < line.size() ? i + 1 : i];
        const double dx = behind.x - before.x, dy = behind.y - before.y, d = std::hypot(dx, dy);
        result.push_back({line[i].x - dy / d * distance, line[i].y + dx / d * distance});
    }
    return result;
}

std::vector<Line> Clipped(const Line& line, double x1, double y1, double x2, double y2) {
    std::vector<Line> pieces;
    Line piece;
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        // Liang and Barsky's cut of a segment at a rectangle.
        const Pt a = line[i], b = line[i + 1];
        double t0 = 0.0, t1 = 1.0;
        const double dx = b.x - a.x, dy = b.y - a.y;
        const double p[] = {-dx, dx, -dy, dy}, q[] = {a.x - x1, x2 - a.x, a.y - y1, y2 - a.y};
        bool out = false;
        for (int k = 0; k < 4 && !out; ++k) {
            if (p[k] == 0.0)
                out = q[k] < 0.0;
            else if (p[k] < 0.0)
                t0 = std::max(t0, q[k] / p[k]);
            else
                t1 = std::min(t1, q[k] / p[k]);
        }
        if (out || t0 >= t1) {
            if (piece.size() > 1) pieces.push_back(piece);
            piece.clear();
            continue;
        }
        if (piece.empty()) piece.push_back({a.x + t0 * dx, a.y + t0 * dy});
        piece.push_back({a.x + t1 * dx, a.y + t1 * dy});
        if (t1 < 1.0) {
            pieces.push_back(piece);
            piece.clear();
        }
    }
    if (piece.size() > 1) pieces.push_back(piece);
    return pieces;
}

}  // namespace zm::tool::demo
