#include "tools/dwg/paint.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "draw/device.h"

namespace zm::tool {
namespace {

using dwg::reader::Drawing;
using dwg::reader::Linetype;
using dwg::reader::Point;
using dwg::reader::Record;

constexpr int kMaxDepth = 16;
constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr int kByLayer = -1;
constexpr double kLongestText = 256;

// Colour numbers 1 to 9 as programs for such drawings show them; 7 is black on white paper. 0x00BBGGRR.
constexpr COLORREF kColors[] = {0x000000, 0x0000FF, 0x00C8C8, 0x00B000, 0xB0B000,
                                0xFF0000, 0xC000C0, 0x000000, 0x808080, 0xC0C0C0};

COLORREF ColorOf(int number) {
    const int i = std::abs(number);
    return i < static_cast<int>(std::size(kColors)) ? kColors[i] : kColors[8];
}

// x' = a x + c y + e, y' = b x + d y + f.
struct Placement {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
    Point Apply(const Point& p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f, p.z}; }
    double Scale() const { return std::sqrt(std::abs(a * d - b * c)); }
    double Angle() const { return std::atan2(b, a); }
    // This after inner.
    Placement Of(const Placement& inner) const {
        return {a * inner.a + c * inner.b, b * inner.a + d * inner.b,     a * inner.c + c * inner.d,
                b * inner.c + d * inner.d, a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
    }
};

class Painter {
 public:
    Painter(const Drawing& drawing, CTqDraw& dc, int thinWidth, double minDash, const char* face)
        : m_drawing(drawing), m_dc(dc), m_thinWidth(thinWidth), m_minDash(minDash), m_face(face) {}

    Painted Run() {
        m_drawing.ForEachEntity([&](const Record& record) { return Take(record, Placement{}, 0), true; });
        EndPolyline(Placement{});
        return m_result;
    }

 private:
    void Take(const Record& record, const Placement& placement, int depth) {
        using namespace dwg::reader;
        if (record.erased) return;
        if (m_inPolyline && record.kind != kVertex) EndPolyline(placement);
        switch (record.kind) {
            case kLine:
            case kLine3D:
                Stroke(record, placement, record.points);
                break;
            case kPoint:
                Dot(record, placement);
                break;
            case kCircle:
                Stroke(record, placement, ArcPoints(record.points.at(0), record.Number("radius", 0), 0.0, kTurn));
                break;
            case kArc:
                Stroke(record, placement,
                       ArcPoints(record.points.at(0), record.Number("radius", 0), record.Number("start", 0),
                                 record.Number("end", 0)));
                break;
            case kTrace:
            case kSolid:
                Fill(record, placement);
                break;
            case kFace3D:
                Stroke(record, placement,
                       {record.points[0], record.points[1], record.points[2], record.points[3], record.points[0]});
                break;
            case kText:
                Text(record, placement);
                break;
            case kInsert:
                Insert(record, placement, depth);
                break;
            case kPolyline:
            case kJump:
                m_inPolyline = true;
                m_polyline = record;
                m_vertices.clear();
                m_bulges.clear();
                break;
            case kVertex:
                if (!m_inPolyline) break;
                m_vertices.push_back(record.points.at(0));
                m_bulges.push_back(record.Number("bulge", 0.0));
                break;
            case kSeqEnd:
            case kBlock:
            case kEndBlock:
                break;
            default:
                ++m_result.unknown;
        }
    }

    static std::vector<Point> ArcPoints(const Point& centre, double radius, double from, double to) {
        double sweep = std::fmod(to - from, kTurn);
        if (!(sweep > 0.0)) sweep += kTurn;
        const int steps = std::clamp(static_cast<int>(std::ceil(sweep / kTurn * 180)), 2, 360);
        std::vector<Point> points;
        for (int i = 0; i <= steps; ++i) {
            const double angle = from + sweep * i / steps;
            points.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle), centre.z});
        }
        return points;
    }

    // The points of the arc from a to b whose bulge is the tangent of a quarter of its sweep; a left out.
    static void AddBulge(std::vector<Point>& points, const Point& a, const Point& b, double bulge) {
        if (std::abs(bulge) < 1e-9 || !std::isfinite(bulge)) {
            points.push_back(b);
            return;
        }
        const double sweep = 4.0 * std::atan(bulge);
        const double height = (1.0 - bulge * bulge) / (4.0 * bulge);  // of the centre over the chord, in chords
        const Point centre{(a.x + b.x) / 2 - height * (b.y - a.y), (a.y + b.y) / 2 + height * (b.x - a.x), a.z};
        const double radius = std::hypot(a.x - centre.x, a.y - centre.y);
        const double from = std::atan2(a.y - centre.y, a.x - centre.x);
        const int steps = std::clamp(static_cast<int>(std::ceil(std::abs(sweep) / kTurn * 180)), 2, 360);
        for (int i = 1; i < steps; ++i) {
            const double angle = from + sweep * i / steps;
            points.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle), a.z});
        }
        points.push_back(b);
    }

    void EndPolyline(const Placement& placement) {
        m_inPolyline = false;
        if (m_vertices.empty()) return;
        std::vector<Point> points{m_vertices.front()};
        for (std::size_t i = 1; i < m_vertices.size(); ++i)
            AddBulge(points, m_vertices[i - 1], m_vertices[i], m_bulges[i - 1]);
        if (static_cast<int>(m_polyline.Number("closed", 0.0)) & 1)
            AddBulge(points, m_vertices.back(), m_vertices.front(), m_bulges.back());
        const Record polyline = m_polyline;
        m_vertices.clear();
        Stroke(polyline, placement, points);
    }

    COLORREF Color(const Record& record) const {
        int number = record.color.value_or(kByLayer);
        if (number == kByLayer)
            number = record.layer < m_drawing.layers.size() ? m_drawing.layers[record.layer].color : 7;
        return ColorOf(number);
    }

    // The linetype with dashes that are long enough to be seen; null for a solid line.
    const Linetype* Dashes(const Record& record) const {
        int index = record.linetype.value_or(kByLayer);
        if (index < 0 || index == 256)
            index = record.layer < m_drawing.layers.size() ? m_drawing.layers[record.layer].linetype : 0;
        if (index < 0 || static_cast<std::size_t>(index) >= m_drawing.linetypes.size()) return nullptr;
        const Linetype& type = m_drawing.linetypes[static_cast<std::size_t>(index)];
        const bool usable = type.count > 1 && static_cast<std::size_t>(type.count) <= type.elements.size() &&
                            type.length > 0.0 && std::isfinite(type.length) &&
                            m_dc.GetPixelsByRealen(type.length) >= m_minDash;
        return usable ? &type : nullptr;
    }

    void Stroke(const Record& record, const Placement& placement, std::vector<Point> points) {
        for (Point& point : points) point = placement.Apply(point);
        const CTQPen pen(PS_SOLID, m_thinWidth, static_cast<DWORD>(Color(record)));
        if (const Linetype* type = Dashes(record))
            Dashed(points, *type);
        else
            for (std::size_t i = 1; i < points.size(); ++i)
                m_dc.line(points[i - 1].x, points[i - 1].y, points[i].x, points[i].y);
        ++m_result.drawn;
    }

    // Walks along the points and draws the positive elements; an element of 0 is a dot.
    void Dashed(const std::vector<Point>& points, const Linetype& type) {
        std::size_t element = 0;
        double left = std::abs(type.elements[0]);
        const auto next = [&] {
            element = (element + 1) % static_cast<std::size_t>(type.count);
            left = std::abs(type.elements[element]);
        };
        for (std::size_t i = 1; i < points.size(); ++i) {
            const double dx = points[i].x - points[i - 1].x;
            const double dy = points[i].y - points[i - 1].y;
            const double length = std::hypot(dx, dy);
            if (!(length > 0.0) || !std::isfinite(length)) continue;
            // A segment of more patterns than anybody can see is drawn solid.
            constexpr double kMostPatterns = 100000;
            if (length / type.length > kMostPatterns) {
                m_dc.line(points[i - 1].x, points[i - 1].y, points[i].x, points[i].y);
                continue;
            }
            double at = 0.0;
            while (at < length) {
                const double piece = std::min(left, length - at);
                const double x = points[i - 1].x + dx * at / length;
                const double y = points[i - 1].y + dy * at / length;
                if (type.elements[element] == 0.0)
                    m_dc.pixel(x, y, 0, 1);
                else if (type.elements[element] > 0.0)
                    m_dc.line(x, y, x + dx * piece / length, y + dy * piece / length);
                at += piece;
                left -= piece;
                if (left <= 1e-12 * type.length) next();
            }
        }
    }

    void Dot(const Record& record, const Placement& placement) {
        const Point at = placement.Apply(record.points.at(0));
        m_dc.pixel(at.x, at.y, Color(record), 2);
        ++m_result.drawn;
    }

    void Fill(const Record& record, const Placement& placement) {
        std::vector<double> xy;
        for (const std::size_t i : {0u, 1u, 3u, 2u, 0u}) {  // the corners go zigzag
            const Point at = placement.Apply(record.points.at(i));
            xy.push_back(at.x);
            xy.push_back(at.y);
        }
        const CTQPen pen(PS_SOLID, m_thinWidth, static_cast<DWORD>(Color(record)));
        HBRUSH brush = device::CreateSolidBrush(Color(record));
        m_dc.DrawPolygon(5, xy.data(), brush);
        device::DeleteObject(brush);
        ++m_result.drawn;
    }

    void Text(const Record& record, const Placement& placement) {
        const dwg::reader::Field* text = record.Find("text");
        const double height = record.Number("height", 0.0) * placement.Scale();
        if (text == nullptr || text->text.empty() || !(height > 0.0) || !std::isfinite(height)) return;
        std::string bytes = text->text.substr(0, static_cast<std::size_t>(kLongestText));
        const double angle = record.Number("rotation", 0.0) + placement.Angle();
        const double width = height * std::abs(record.Number("width", 1.0));
        const Point at = placement.Apply(record.points.at(0));
        HFONT old = nullptr;
        std::string face = m_face;
        HFONT font = m_dc.SetFont(height, width, face.data(), angle * kDegrees, 0, old);
        const COLORREF before = device::SetTextColor(m_dc.GetHdc(), Color(record));
        // The record has the lower left corner, the context wants the upper left one.
        m_dc.textout(at.x - height * std::sin(angle), at.y + height * std::cos(angle), bytes.data(), 0, 0);
        device::SetTextColor(m_dc.GetHdc(), before);
        m_dc.ResetFont(old);
        device::DeleteObject(font);
        ++m_result.drawn;
    }

    void Insert(const Record& record, const Placement& placement, int depth) {
        const auto block = static_cast<std::size_t>(record.Number("block", 0.0));
        if (depth >= kMaxDepth || block >= m_drawing.blocks.size()) return;
        const double sx = record.Number("scale_x", 1.0);
        const double sy = record.Number("scale_y", 1.0);
        const double angle = record.Number("rotation", 0.0);
        const Point at = record.points.at(0);
        const Placement inner{
            sx * std::cos(angle), sx * std::sin(angle), -sy * std::sin(angle), sy * std::cos(angle), at.x, at.y};
        const Placement whole = placement.Of(inner);
        m_drawing.ForEachInBlock(block, [&](const Record& part) { return Take(part, whole, depth + 1), true; });
        if (m_inPolyline) EndPolyline(whole);
    }

    const Drawing& m_drawing;
    CTqDraw& m_dc;
    int m_thinWidth;
    double m_minDash;
    std::string m_face;
    Painted m_result;
    bool m_inPolyline = false;
    Record m_polyline;
    std::vector<Point> m_vertices;
    std::vector<double> m_bulges;
};

}  // namespace

Painted Paint(const Drawing& drawing, CTqDraw& dc, int thinWidth, double minDash, const char* face) {
    return Painter(drawing, dc, thinWidth, minDash, face).Run();
}

}  // namespace zm::tool
