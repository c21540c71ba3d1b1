#include "zenromath/svg.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>

#include "platform/device/arc_figure.h"
#include "platform/device/dashes.h"
#include "platform/device/faces.h"
#include "runtime/text/gbk.h"
#include "runtime/text/markup.h"
#include "runtime/text/numbers.h"

namespace zm {
namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kScreenDotsPerInch = 96.0;
constexpr double kThinnest = 0.15 / 25.4 * 96.0;  // of a pixel of a screen: 0.15 mm
constexpr int kDecimals = 3;
constexpr int kDefaultHeight = 16;              // pixels, of a font that leaves its height to the device
constexpr POINT kNowhere = {INT_MIN, INT_MIN};  // no line ends there
constexpr std::size_t kLongestPath = 1 << 14;   // bytes; some viewers are slow on paths of megabytes

std::string Color(COLORREF color) {
    return numbers::Text("#%02x%02x%02x", color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

// A number with at most three decimals and no more digits than it needs.
std::string Number(double value) {
    char digits[320];  // of the largest double
    std::string text(digits,
                     std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, kDecimals).ptr);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

// A command of a path: its letter and a pixel.
void AddPoint(std::string& path, char command, const POINT& to) {
    char x[24], y[24];
    path += command;
    path.append(x, std::to_chars(x, x + sizeof x, to.x).ptr);
    path += ' ';
    path.append(y, std::to_chars(y, y + sizeof y, to.y).ptr);
}

std::string PathOf(const Region::Outline& outline) {
    std::string path;
    for (std::size_t i = 0; i < outline.points.size(); ++i) AddPoint(path, i == 0 ? 'M' : 'L', outline.points[i]);
    return path + "z";
}

// Pixels as figures: a pixel's centre is a whole number.
std::string PathOf(const std::vector<RECT>& rectangles) {
    std::string path;
    for (const RECT& r : rectangles)
        path += "M" + Number(r.left - 0.5) + " " + Number(r.top - 0.5) + "h" + Number(1.0 * r.right - r.left) + "v" +
                Number(1.0 * r.bottom - r.top) + "h" + Number(1.0 * r.left - r.right) + "z";
    return path;
}

bool IsUprightRectangle(const Region::Outline& outline, RECT& box) {
    const auto& p = outline.points;
    if (p.size() != 4) return false;
    const bool upright = (p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x) ||
                         (p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y);
    box = {std::min(p[0].x, p[2].x), std::min(p[0].y, p[2].y), std::max(p[0].x, p[2].x), std::max(p[0].y, p[2].y)};
    return upright;
}

bool Holds(const RECT& box, const Region::Outline& outline) {
    return std::all_of(outline.points.begin(), outline.points.end(), [&](const POINT& p) {
        return p.x >= box.left && p.x <= box.right && p.y >= box.top && p.y <= box.bottom;
    });
}

// The lines of a hatch as one path over a tile of 8 by 8 pixels, with what reaches in from the neighbours.
const char* HatchPath(int hatch) {
    switch (hatch) {
        case HS_HORIZONTAL:
            return "M-1 3H9";
        case HS_VERTICAL:
            return "M4 -1V9";
        case HS_FDIAGONAL:
            return "M-2 -2L10 10M-2 6L2 10M6 -2L10 2";
        case HS_BDIAGONAL:
            return "M-2 9L9 -2M-2 1L1 -2M6 9L9 6";
        case HS_CROSS:
            return "M-1 3H9M4 -1V9";
        default:
            return "M-2 -2L10 10M-2 6L2 10M6 -2L10 2M-2 9L9 -2M-2 1L1 -2M6 9L9 6";
    }
}

std::string TilePath(const Fill& fill) {
    std::vector<RECT> pixels;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            if (fill.Inked(x, y)) pixels.push_back({x, y, x + 1, y + 1});
    return PathOf(pixels);
}

}  // namespace

SvgDevice::SvgDevice(int width, int height, double widthMm, double heightMm)
    : m_width(std::max(width, 1)),
      m_height(std::max(height, 1)),
      m_widthMm(widthMm),
      m_heightMm(heightMm),
      m_unit(1.0) {
    if (widthMm > 0.0) m_unit = std::max(m_width / widthMm * kMillimetresPerInch / kScreenDotsPerInch, 1.0);
}

// The attributes of a stroke.
std::string SvgDevice::StyleOf(const Stroke& stroke) const {
    std::string style = " stroke=\"" + Color(stroke.color) + "\"";
    // A pen of one pixel is the thinnest line of paper where pixels are finer than that.
    const double width = stroke.width > 1 ? stroke.width : std::max(1.0, kThinnest * m_unit);
    if (width != 1.0) style += " stroke-width=\"" + Number(width) + "\"";
    const auto dashes = platform::DashesOf(stroke.style);
    if (dashes.empty()) return style;
    style += " stroke-linecap=\"butt\" stroke-dasharray=\"";
    for (std::size_t i = 0; i < dashes.size(); ++i) style += (i == 0 ? "" : " ") + Number(dashes[i] * m_unit);
    return style + "\"";
}

std::string SvgDevice::Document() const {
    const bool onPaper = m_widthMm > 0.0 && m_heightMm > 0.0;
    std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"";
    head += onPaper ? Number(m_widthMm) + "mm\" height=\"" + Number(m_heightMm) + "mm"
                    : numbers::Text("%d\" height=\"%d", m_width, m_height);
    head += numbers::Text("\" viewBox=\"0 0 %d %d\">\n", m_width, m_height);
    head += numbers::Text("<rect width=\"%d\" height=\"%d\" fill=\"#ffffff\"/>\n", m_width, m_height);
    // A whole number is the centre of a pixel.
    head += "<g transform=\"translate(0.5 0.5)\" fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\">\n";
    return head + m_body + OpenPath() + "</g>\n</svg>\n";
}

// The path that is being gathered as an element; under opaque gaps a line in their colour lies below the dashes.
std::string SvgDevice::OpenPath() const {
    if (m_path.empty()) return {};
    const auto element = [this](const std::string& style) { return "<path" + style + " d=\"" + m_path + "\"/>\n"; };
    if (!m_pathIsLine || !m_lastStroke.opaqueGaps || platform::DashesOf(m_lastStroke.style).empty())
        return element(m_pathStyle);
    Stroke under = m_lastStroke;
    under.style = PS_SOLID;
    under.color = m_lastStroke.gapColor;
    return element(StyleOf(under)) + element(m_pathStyle);
}

void SvgDevice::EndPath() {
    m_body += OpenPath();
    m_path.clear();
}

void SvgDevice::Put(const std::string& element) {
    EndPath();
    m_body += element;
    m_body += '\n';
}

// Strokes with one pen are gathered in one path. The path to add to.
std::string& SvgDevice::LinePath(const Stroke& stroke) {
    if (!m_path.empty() && (!m_pathIsLine || m_path.size() > kLongestPath || !(stroke == m_lastStroke))) EndPath();
    if (m_path.empty()) {
        m_pathStyle = StyleOf(stroke);
        m_lastStroke = stroke;
        m_pathIsLine = true;
        m_pathEnd = kNowhere;
    }
    return m_path;
}

int SvgDevice::Line(const Stroke& stroke, int x1, int y1, int x2, int y2) {
    const POINT ends[] = {{x1, y1}, {x2, y2}};
    return Lines(stroke, ends, 1);
}

// Lines that go on where the last one ended stay connected, so that dashes run on along a curve of short pieces.
int SvgDevice::Lines(const Stroke& stroke, const POINT* ends, int count) {
    for (const POINT* from = ends; from != ends + 2 * static_cast<std::ptrdiff_t>(count); from += 2) {
        std::string& path = LinePath(stroke);
        if (m_pathEnd.x != from[0].x || m_pathEnd.y != from[0].y) AddPoint(path, 'M', from[0]);
        AddPoint(path, 'L', from[1]);
        m_pathEnd = from[1];
    }
    return count;
}

COLORREF SvgDevice::Dot(int x, int y, COLORREF color) {
    if (x < 0 || y < 0 || x >= m_width || y >= m_height) return CLR_INVALID;
    const std::string style = " fill=\"" + Color(color) + "\"";
    if (!m_path.empty() && (m_pathIsLine || m_pathStyle != style || m_path.size() > kLongestPath)) EndPath();
    m_pathStyle = style;
    m_pathIsLine = false;
    m_path += "M" + Number(x - 0.5) + " " + Number(y - 0.5) + "h1v1h-1z";
    return color;
}

int SvgDevice::Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) {
    const platform::ArcFigure arc = platform::FigureOfArc(box, start, end);
    // An arc of the format is less than a whole ellipse, so every arc is drawn in halves.
    const std::string radii = "A" + Number(arc.rx) + " " + Number(arc.ry) + " 0 0 0 ";
    const auto point = [&arc](double angle) { return Number(arc.X(angle)) + " " + Number(arc.Y(angle)); };
    LinePath(stroke) +=
        "M" + point(arc.start) + radii + point(arc.start + arc.sweep / 2.0) + radii + point(arc.start + arc.sweep);
    m_pathEnd = kNowhere;
    return 1;
}

int SvgDevice::Box(const Stroke* stroke, const Fill& fill, const RECT& box) {
    const RECT r = {std::min(box.left, box.right), std::min(box.top, box.bottom), std::max(box.left, box.right),
                    std::max(box.top, box.bottom)};
    if (r.left == r.right || r.top == r.bottom) return 1;
    if (fill.kind != Fill::Kind::none) FillRegion(Region::Rectangle(r.left, r.top, r.right, r.bottom), fill);
    if (stroke == nullptr) return 1;
    const double inset = stroke->style == PS_INSIDEFRAME ? (stroke->width - 1) / 2.0 : 0.0;
    Put("<rect" + StyleOf(*stroke) + " x=\"" + Number(r.left + inset) + "\" y=\"" + Number(r.top + inset) +
        "\" width=\"" + Number(std::max(r.right - 1.0 - r.left - 2.0 * inset, 0.0)) + "\" height=\"" +
        Number(std::max(r.bottom - 1.0 - r.top - 2.0 * inset, 0.0)) + "\"/>");
    return 1;
}

// The attribute that limits a figure to an outline.
std::string SvgDevice::ClippedTo(const Region::Outline& outline) {
    const std::string id = numbers::Text("c%d", ++m_ids);
    Put("<clipPath id=\"" + id + "\"><path" + (outline.winding ? "" : " clip-rule=\"evenodd\"") + " d=\"" +
        PathOf(outline) + "\"/></clipPath>");
    return " clip-path=\"url(#" + id + ")\"";
}

std::string SvgDevice::FillElement(const Region& region, const std::string& paint) {
    const auto* outlines = region.Outlines();
    if (outlines == nullptr || outlines->empty())
        return "<path fill=\"" + paint + "\" d=\"" + PathOf(region.Rectangles()) + "\"/>";
    // A rectangle around the figure clips nothing.
    std::string open;
    std::string close;
    for (std::size_t i = 1; i < outlines->size(); ++i) {
        RECT box{};
        if (IsUprightRectangle((*outlines)[i], box) && Holds(box, outlines->front())) continue;
        open += "<g" + ClippedTo((*outlines)[i]) + ">";
        close += "</g>";
    }
    const Region::Outline& figure = outlines->front();
    return open + "<path fill=\"" + paint + "\"" + (figure.winding ? "" : " fill-rule=\"evenodd\"") + " d=\"" +
           PathOf(figure) + "\"/>" + close;
}

// The paint of a hatch or pattern: its tile becomes a definition, once for each look.
std::string SvgDevice::PaintOf(const Fill& fill) {
    if (fill.kind == Fill::Kind::solid) return Color(fill.color);
    std::string content;
    if (fill.opaque) content += "<path fill=\"" + Color(fill.background) + "\" d=\"M-0.5 -0.5h8v8h-8z\"/>";
    if (fill.kind == Fill::Kind::hatch)
        content += "<path stroke=\"" + Color(fill.color) + "\" d=\"" + HatchPath(fill.hatch) + "\"/>";
    else
        content += "<path fill=\"" + Color(fill.color) + "\" d=\"" + TilePath(fill) + "\"/>";
    auto& id = m_paints[content];
    if (id.empty()) {
        id = numbers::Text("p%d", ++m_ids);
        const std::string side = Number(8.0 * m_unit);
        Put("<pattern id=\"" + id + "\" patternUnits=\"userSpaceOnUse\" x=\"-0.5\" y=\"-0.5\" width=\"" + side +
            "\" height=\"" + side + "\" viewBox=\"-0.5 -0.5 8 8\">" + content + "</pattern>");
    }
    return "url(#" + id + ")";
}

int SvgDevice::FillRegion(const Region& region, const Fill& fill) {
    if (fill.kind == Fill::Kind::none) return 1;
    const std::string paint = PaintOf(fill);
    const std::string element = FillElement(region, paint);
    Put(element);
    return 1;
}

int SvgDevice::Text(const TextStyle& style, int x, int y, std::string_view text) {
    const LOGFONTA& font = style.font;
    const double height = font.lfHeight != 0 ? std::fabs(1.0 * font.lfHeight) : kDefaultHeight;
    const std::string face(font.lfFaceName, strnlen(font.lfFaceName, sizeof font.lfFaceName));
    const platform::Face& metrics = platform::FaceOf(face);
    // A positive height is that of the cell, a negative one that of the characters, which is the size itself.
    const double size = font.lfHeight < 0 ? height : height / metrics.cell();
    const double natural = size * metrics.averageWidth;
    const double width = font.lfWidth != 0 ? std::fabs(1.0 * font.lfWidth) : natural;
    std::string transform = numbers::Text("translate(%d %d)", x, y);
    if (font.lfEscapement % 3600 != 0) transform += " rotate(" + Number(font.lfEscapement / -10.0) + ")";
    if (style.opaque)
        Put("<rect fill=\"" + Color(style.background) + "\" transform=\"" + transform + "\" width=\"" +
            Number(width * static_cast<double>(text.size())) + "\" height=\"" + Number(size * metrics.cell()) + "\"/>");
    const double stretch = width / natural;
    if (std::fabs(stretch - 1.0) > 0.001) transform += " scale(" + Number(stretch) + " 1)";
    std::string look = " font-size=\"" + Number(size) + "\"";
    // The face as it is named, then whatever the reader has; the first two are common for Chinese.
    look += " font-family=\"";
    if (!face.empty()) look += "'" + EscapedMarkup(gbk::ToUtf8(face), ' ') + "', ";
    look += "'SimSun', 'WenQuanYi Zen Hei', sans-serif\"";
    if (font.lfWeight >= 600) look += " font-weight=\"bold\"";
    if (font.lfItalic != 0) look += " font-style=\"italic\"";
    std::string lines;
    if (font.lfUnderline != 0) lines += "underline";
    if (font.lfStrikeOut != 0) lines += lines.empty() ? "line-through" : " line-through";
    if (!lines.empty()) look += " text-decoration=\"" + lines + "\"";
    Put("<text fill=\"" + Color(style.color) + "\" transform=\"" + transform + "\" y=\"" +
        Number(size * metrics.ascent) + "\"" + look + " xml:space=\"preserve\">" +
        EscapedMarkup(gbk::ToUtf8(text), ' ') + "</text>");
    return 1;
}

}  // namespace zm
