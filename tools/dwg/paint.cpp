#include "tools/dwg/paint.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "draw/device.h"
#include "tools/zenro/map/lettering.h"

namespace zm::tool {
namespace {

using dwg::reader::Linetype;
using dwg::reader::Look;
using dwg::reader::Point;
using dwg::reader::TextItem;

constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr std::size_t kLongestText = 256;

// Colour numbers 1 to 9 as programs for such drawings show them; 7 is black on white paper. 0x00BBGGRR.
constexpr COLORREF kColors[] = {0x000000, 0x0000FF, 0x00C8C8, 0x00B000, 0xB0B000,
                                0xFF0000, 0xC000C0, 0x000000, 0x808080, 0xC0C0C0};

// The numbers from 10: 24 hues of 15 degrees; of each five shades, full and half as strong; then six greys.
COLORREF WheelColor(int number) {
    constexpr double kShades[] = {255.0, 204.0, 153.0, 127.0, 76.0};
    constexpr int kFirst = 10, kFirstGrey = 250;
    if (number >= kFirstGrey) return 0x010101u * static_cast<COLORREF>(51.0 + (number - kFirstGrey) * 40.8);
    const double high = kShades[number % 10 / 2], low = number % 2 == 0 ? 0.0 : high / 2.0;
    const int step = (number - kFirst) / 10;
    const double hue = step * 0.25;  // of six parts of the circle: red, yellow, green ...
    COLORREF color = 0;
    for (int channel = 0; channel < 3; ++channel) {
        const double away = std::fabs(std::remainder(hue - 2.0 * channel, 6.0));
        const double part = std::clamp(2.0 - away, 0.0, 1.0);
        color |= static_cast<COLORREF>(low + (high - low) * part) << (8 * channel);
    }
    return color;
}

}  // namespace

COLORREF DrawingColour(int number) {
    const int i = std::abs(number);
    if (i < static_cast<int>(std::size(kColors))) return kColors[i];
    return i < 256 ? WheelColor(i) : kColors[8];
}

namespace {

bool IsWide(char lead) {
    return static_cast<unsigned char>(lead) > 0x80;
}

// A text cut where one-byte characters meet those of two bytes. An end byte without its lead is left out.
std::vector<std::string> PiecesOf(const std::string& gbk) {
    std::vector<std::string> pieces;
    for (std::size_t i = 0; i < gbk.size();) {
        const std::size_t size = IsWide(gbk[i]) ? 2 : 1;
        if (i + size > gbk.size()) break;
        if (pieces.empty() || IsWide(pieces.back()[0]) != IsWide(gbk[i])) pieces.emplace_back();
        pieces.back() += gbk.substr(i, size);
        i += size;
    }
    return pieces;
}

class Painter : public dwg::reader::PictureSink {
 public:
    Painter(CTqDraw& dc, int thinWidth, double minDash, const char* face)
        : m_dc(dc), m_thinWidth(thinWidth), m_minDash(minDash), m_face(face) {}

    void Stroke(const std::vector<Point>& points, const Look& look) override {
        const CTQPen pen(PS_SOLID, m_thinWidth, static_cast<DWORD>(DrawingColour(look.color)));
        const double scale = look.dashScale > 0.0 && std::isfinite(look.dashScale) ? look.dashScale : 1.0;
        if (look.linetype != nullptr && m_dc.GetPixelsByRealen(look.linetype->length * scale) >= m_minDash)
            Dashed(points, *look.linetype, scale);
        else
            for (std::size_t i = 1; i < points.size(); ++i) Line(points[i - 1], points[i]);
    }

    void Fill(const std::vector<Point>& corners, const Look& look) override {
        std::vector<double> xy;
        for (std::size_t i = 0; i <= corners.size(); ++i) {
            const Point& at = corners[i % corners.size()];
            if (!Usable(at)) return;
            xy.push_back(at.x);
            xy.push_back(at.y);
        }
        const CTQPen pen(PS_SOLID, m_thinWidth, static_cast<DWORD>(DrawingColour(look.color)));
        HBRUSH brush = device::CreateSolidBrush(DrawingColour(look.color));
        m_dc.DrawPolygon(static_cast<int>(xy.size() / 2), xy.data(), brush);
        device::DeleteObject(brush);
    }

    void Dot(const Point& at, const Look& look) override {
        if (Usable(at)) m_dc.pixel(at.x, at.y, DrawingColour(look.color), 2);
    }

    void Text(const TextItem& text, const Look& look) override {
        if (!Usable(text.at)) return;
        const COLORREF before = device::SetTextColor(m_dc.GetHdc(), DrawingColour(look.color));
        device::SetBkMode(m_dc.GetHdc(), TRANSPARENT);  // what lies under a text is seen between its strokes
        // The stroke fonts of drawings have characters as wide as capitals are high, Chinese ones too.
        const double width = text.height * text.widthFactor;
        const double c = std::cos(text.angle), s = std::sin(text.angle);
        double along = 0.0;  // of the pieces of one kind before
        for (const std::string& piece : PiecesOf(text.text.substr(0, kLongestText))) {
            // The item has the lower left corner, the lettering wants the upper left one.
            DrawOnDevice(piece, {m_face, text.height, width, text.angle * kDegrees, false},
                         text.at.x + along * c - text.height * s, text.at.y + along * s + text.height * c);
            along += width * static_cast<double>(IsWide(piece[0]) ? piece.size() / 2 : piece.size());
        }
        device::SetTextColor(m_dc.GetHdc(), before);
    }

 private:
    static bool Usable(const Point& p) { return std::isfinite(p.x) && std::isfinite(p.y); }
    void Line(const Point& a, const Point& b) {
        if (Usable(a) && Usable(b)) m_dc.line(a.x, a.y, b.x, b.y);
    }

    // Walks along the points and draws the positive elements; an element of 0 is a dot.
    void Dashed(const std::vector<Point>& points, const Linetype& type, double scale) {
        std::size_t element = 0;
        double left = std::abs(type.elements[0]) * scale;
        const double whole = type.length * scale;
        const auto next = [&] {
            element = (element + 1) % static_cast<std::size_t>(type.count);
            left = std::abs(type.elements[element]) * scale;
        };
        for (std::size_t i = 1; i < points.size(); ++i) {
            const double dx = points[i].x - points[i - 1].x;
            const double dy = points[i].y - points[i - 1].y;
            const double length = std::hypot(dx, dy);
            if (!(length > 0.0) || !std::isfinite(length)) continue;
            // A segment of more patterns than anybody can see is drawn solid.
            constexpr double kMostPatterns = 10000;
            if (length / whole > kMostPatterns) {
                Line(points[i - 1], points[i]);
                continue;
            }
            double at = 0.0;
            while (at < length) {
                const double piece = std::min(left, length - at);
                const Point from{points[i - 1].x + dx * at / length, points[i - 1].y + dy * at / length, 0.0};
                if (type.elements[element] == 0.0)
                    m_dc.pixel(from.x, from.y, 0, 1);
                else if (type.elements[element] > 0.0)
                    Line(from, {from.x + dx * piece / length, from.y + dy * piece / length, 0.0});
                at += piece;
                left -= piece;
                if (left <= 1e-12 * whole) next();
            }
        }
    }

    CTqDraw& m_dc;
    int m_thinWidth;
    double m_minDash;
    std::string m_face;
};

}  // namespace

std::unique_ptr<dwg::reader::PictureSink> PaintingSink(CTqDraw& dc, int thinWidth, double minDash, const char* face) {
    return std::make_unique<Painter>(dc, thinWidth, minDash, face);
}

dwg::reader::PictureCount Paint(const dwg::reader::Drawing& drawing, CTqDraw& dc, int thinWidth, double minDash,
                                const char* face) {
    Painter painter(dc, thinWidth, minDash, face);
    return ShowPicture(drawing, painter);
}

}  // namespace zm::tool
