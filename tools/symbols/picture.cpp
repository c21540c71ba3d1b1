#include "tools/symbols/picture.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"
#include "tools/symbols/quiet_host.h"
#include "zenromath/draw.h"

namespace zm::tool::symbols {

namespace {

constexpr int kHalfStage = static_cast<int>(kStageMm * kPixelsPerMm / 2.0);
constexpr double kMarginMm = 1.0;

std::string ColorText(COLORREF color) {
    return numbers::Text("#%02x%02x%02x", static_cast<unsigned int>(color & 0xFFU),
                         static_cast<unsigned int>((color >> 8) & 0xFFU),
                         static_cast<unsigned int>((color >> 16) & 0xFFU));
}

/// The dashes of a pen style, in pen widths.
const char* Dashes(int style) {
    switch (style) {
        case PS_DASH:
            return "9 3";
        case PS_DOT:
            return "2 4";
        case PS_DASHDOT:
            return "9 3 2 3";
        case PS_DASHDOTDOT:
            return "9 3 2 3 2 3";
        default:
            return "";
    }
}

std::string DashAttribute(int style, int width) {
    const char* dashes = Dashes(style);
    if (*dashes == '\0') return {};
    std::string text = " stroke-dasharray=\"";
    for (const char* c = dashes; *c != '\0'; ++c)
        text += *c == ' ' ? std::string(" ") : std::to_string((*c - '0') * width);
    return text + "\"";
}

std::string PointText(int x, int y) {
    return std::to_string(x - kHalfStage) + " " + std::to_string(y - kHalfStage);
}

double Direction(POINT from, double cx, double cy) {
    return std::atan2(cy - from.y, from.x - cx);
}

}  // namespace

void PictureDevice::Cover(int x, int y, int reach) {
    if (m_empty) m_bounds = {x - reach, y - reach, x + reach, y + reach};
    m_empty = false;
    const LONG left = x - reach, top = y - reach, right = x + reach, bottom = y + reach;
    m_bounds = {std::min(m_bounds.left, left), std::min(m_bounds.top, top), std::max(m_bounds.right, right),
                std::max(m_bounds.bottom, bottom)};
}

void PictureDevice::UseStroke(const Stroke& stroke) {
    if (m_stroke == stroke) return;
    EndPath();
    m_stroke = stroke;
}

void PictureDevice::EndPath() {
    if (m_path.empty()) return;
    const int width = std::max(m_stroke.width, kThinnestStroke);
    m_body += "<path d=\"" + m_path + "\"";
    if (m_stroke.color != 0) m_body += " stroke=\"" + ColorText(m_stroke.color) + "\"";
    m_body += " stroke-width=\"" + std::to_string(width) + "\"" + DashAttribute(m_stroke.style, width) + "/>";
    m_path.clear();
}

int PictureDevice::Line(const Stroke& stroke, int x1, int y1, int x2, int y2) {
    UseStroke(stroke);
    if (m_path.empty() || m_end.x != x1 || m_end.y != y1) m_path += "M" + PointText(x1, y1);
    m_path += "L" + PointText(x2, y2);
    m_end = {x2, y2};
    const int reach = std::max(stroke.width, kThinnestStroke) / 2;
    Cover(x1, y1, reach);
    Cover(x2, y2, reach);
    return 1;
}

COLORREF PictureDevice::Dot(int x, int y, COLORREF color) {
    EndPath();
    m_body += "<circle cx=\"" + std::to_string(x - kHalfStage) + "\" cy=\"" + std::to_string(y - kHalfStage) +
              "\" r=\"" + std::to_string(kThinnestStroke) + "\" fill=\"" + ColorText(color) + "\" stroke=\"none\"/>";
    Cover(x, y, kThinnestStroke);
    return color;
}

int PictureDevice::Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) {
    UseStroke(stroke);
    const double cx = (box.left + box.right) / 2.0, cy = (box.top + box.bottom) / 2.0;
    const double rx = std::abs(box.right - box.left) / 2.0, ry = std::abs(box.bottom - box.top) / 2.0;
    const double from = Direction(start, cx, cy);
    double sweep = Direction(end, cx, cy) - from;
    if (sweep <= 0.0) sweep += 2.0 * std::numbers::pi;
    // Two halves, so that a whole circle has two different ends for each.
    std::string data;
    for (int half = 0; half <= 2; ++half) {
        const double angle = from + sweep * half / 2.0;
        const int x = static_cast<int>(std::lround(cx + rx * std::cos(angle)));
        const int y = static_cast<int>(std::lround(cy - ry * std::sin(angle)));
        data += half == 0 ? "M" : numbers::Text("A%.1f %.1f 0 0 0 ", rx, ry);
        data += PointText(x, y);
    }
    m_path += data;
    m_end = {box.left - 1, box.top - 1};  // nothing continues an arc
    const int reach = std::max(stroke.width, kThinnestStroke) / 2;
    constexpr int kSteps = 32;
    for (int i = 0; i <= kSteps; ++i) {
        const double angle = from + sweep * i / kSteps;
        Cover(static_cast<int>(cx + rx * std::cos(angle)), static_cast<int>(cy - ry * std::sin(angle)), reach);
    }
    return 1;
}

std::string PictureDevice::FillAttribute(const Fill& fill) {
    if (fill.kind == Fill::Kind::solid) return ColorText(fill.color);
    // Named by what it holds, so that equal names on a page are equal patterns.
    std::string name =
        "p" + ColorText(fill.color).substr(1) + (fill.opaque ? ColorText(fill.background).substr(1) : "");
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; x += 4) {
            int bits = 0;
            for (int i = 0; i < 4; ++i) bits = 2 * bits + (fill.Inked(x + i, y) ? 1 : 0);
            name += "0123456789abcdef"[bits];
        }
    m_body += "<pattern id=\"" + name + "\" patternUnits=\"userSpaceOnUse\" width=\"" +
              std::to_string(8 * kPatternPixel) + "\" height=\"" + std::to_string(8 * kPatternPixel) + "\">";
    if (fill.opaque)
        m_body += "<rect width=\"" + std::to_string(8 * kPatternPixel) + "\" height=\"" +
                  std::to_string(8 * kPatternPixel) + "\" fill=\"" + ColorText(fill.background) +
                  "\" stroke=\"none\"/>";
    std::string data;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            if (fill.Inked(x, y))
                data += "M" + std::to_string(x * kPatternPixel) + " " + std::to_string(y * kPatternPixel) + "h" +
                        std::to_string(kPatternPixel) + "v" + std::to_string(kPatternPixel) + "h-" +
                        std::to_string(kPatternPixel) + "z";
    m_body += "<path d=\"" + data + "\" fill=\"" + ColorText(fill.color) + "\" stroke=\"none\"/></pattern>";
    return "url(#" + name + ")";
}

int PictureDevice::Box(const Stroke* stroke, const Fill& fill, const RECT& box) {
    FillRegion(Region::Rectangle(box.left, box.top, box.right, box.bottom), fill);
    if (stroke == nullptr) return 1;
    Line(*stroke, box.left, box.top, box.right, box.top);
    Line(*stroke, box.right, box.top, box.right, box.bottom);
    Line(*stroke, box.right, box.bottom, box.left, box.bottom);
    return Line(*stroke, box.left, box.bottom, box.left, box.top);
}

int PictureDevice::FillRegion(const Region& region, const Fill& fill) {
    if (fill.kind == Fill::Kind::none || region.Kind() == NULLREGION) return 1;
    EndPath();
    const std::string paint = FillAttribute(fill);
    std::string data;
    const std::vector<Region::Outline>* outlines = region.Outlines();
    if (outlines != nullptr && outlines->size() == 1) {
        const std::vector<POINT>& points = outlines->front().points;
        for (std::size_t i = 0; i < points.size(); ++i)
            data += (i == 0 ? "M" : "L") + PointText(points[i].x, points[i].y);
        data += "z";
    } else {
        for (const RECT& r : region.Rectangles())
            data += "M" + PointText(r.left, r.top) + "L" + PointText(r.right, r.top) + "L" +
                    PointText(r.right, r.bottom) + "L" + PointText(r.left, r.bottom) + "z";
    }
    m_body += "<path d=\"" + data + "\" fill=\"" + paint + "\" fill-rule=\"evenodd\" stroke=\"none\"/>";
    const RECT box = region.Box();
    Cover(box.left, box.top, 0);
    Cover(box.right, box.bottom, 0);
    return 1;
}

int PictureDevice::Text(const TextStyle&, int, int, std::string_view) {
    return 1;
}

std::string PictureDevice::Body() {
    EndPath();
    return m_body;
}

Picture TakePicture(double scale, double pen, const std::function<void()>& draw, COLORREF color) {
    QuietHost quiet;
    PictureDevice device;
    CTqDraw* previous = SelectWorkingTqDC(nullptr);
    const double previousScale = setgscale(scale);
    {
        CTqDraw context(0);
        const double groundPerMm = scale / 1000.0;
        // The mapping cuts to whole pixels; half a pixel to the right and down makes that rounding.
        const double perMetre = kPixelsPerMm / groundPerMm;
        const double corner = -kStageMm / 2.0 * groundPerMm, half = 0.5 / perMetre;
        context.SetViewDrawDC(&device, perMetre, corner - half, corner + half, 2 * kHalfStage, 2 * kHalfStage, 0);
        {
            const CTQPen ink(0, pen * groundPerMm, DWORD{color});
            draw();
        }
    }
    setgscale(previousScale);
    SelectWorkingTqDC(previous);

    Picture picture;
    picture.message = gbk::ToUtf8(quiet.message());
    picture.body = device.Body();
    if (device.empty()) return picture;
    const RECT bounds = device.bounds();
    picture.left = static_cast<double>(bounds.left - kHalfStage) / kPixelsPerMm;
    picture.top = static_cast<double>(kHalfStage - bounds.top) / kPixelsPerMm;
    picture.width = static_cast<double>(bounds.right - bounds.left) / kPixelsPerMm;
    picture.height = static_cast<double>(bounds.bottom - bounds.top) / kPixelsPerMm;
    return picture;
}

std::string SvgElement(const Picture& picture, const std::string& extra) {
    const double width = picture.width + 2.0 * kMarginMm, height = picture.height + 2.0 * kMarginMm;
    return numbers::Text("<svg style=\"--w:%.2f;--h:%.2f\" viewBox=\"%.0f %.0f %.0f %.0f\">", width, height,
                         (picture.left - kMarginMm) * kPixelsPerMm, (-picture.top - kMarginMm) * kPixelsPerMm,
                         width * kPixelsPerMm, height * kPixelsPerMm) +
           "<g>" + picture.body + "</g>" + extra + "</svg>";
}

}  // namespace zm::tool::symbols
