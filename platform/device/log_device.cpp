#include "zenromath/log.h"

#include "runtime/text/numbers.h"

namespace zm {

void LogDevice::Style(std::string& last, std::string line) {
    if (m_detail != Detail::styles || line == last) return;
    m_lines.push_back(line);
    last = std::move(line);
}

void LogDevice::Told(const Stroke& stroke) {
    Style(m_pen, numbers::Text("Pen %d %d %u", stroke.style, stroke.width, stroke.color));
}

void LogDevice::Told(const Fill& fill) {
    static constexpr const char* kKinds[] = {"none", "solid", "hatch", "pattern"};
    std::string line =
        numbers::Text("Brush %s %u %u", kKinds[static_cast<int>(fill.kind)], fill.color, fill.background);
    for (const std::uint8_t row : fill.rows) line += numbers::Text(" %02X", row);
    Style(m_brush, std::move(line));
}

void LogDevice::Told(const TextStyle& style) {
    const LOGFONTA& font = style.font;
    Style(m_font, numbers::Text("Font %d %d %d %d %d %u %s", font.lfHeight, font.lfWidth, font.lfEscapement,
                                font.lfWeight, font.lfItalic, style.color, font.lfFaceName));
}

void LogDevice::Moved(int x, int y) {
    m_lines.push_back(numbers::Text("MoveToEx %d %d", x, y));
}

int LogDevice::Line(const Stroke& stroke, int, int, int x2, int y2) {
    Told(stroke);
    m_lines.push_back(numbers::Text("LineTo %d %d", x2, y2));
    return 1;
}

COLORREF LogDevice::Dot(int x, int y, COLORREF color) {
    m_lines.push_back(numbers::Text("SetPixel %d %d %u", x, y, color));
    return color;
}

int LogDevice::Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) {
    Told(stroke);
    m_lines.push_back(numbers::Text("Arc %d %d %d %d %d %d %d %d", box.left, box.top, box.right, box.bottom, start.x,
                                    start.y, end.x, end.y));
    return 1;
}

int LogDevice::Box(const Stroke* stroke, const Fill& fill, const RECT& box) {
    if (stroke != nullptr) Told(*stroke);
    Told(fill);
    m_lines.push_back(numbers::Text("Rectangle %d %d %d %d", box.left, box.top, box.right, box.bottom));
    return 1;
}

int LogDevice::FillRegion(const Region& region, const Fill& fill) {
    Told(fill);
    const RECT box = region.Box();
    m_lines.push_back(numbers::Text("FillRgn %d %d %d %d %d", region.Kind(), box.left, box.top, box.right, box.bottom));
    return 1;
}

int LogDevice::Text(const TextStyle& style, int x, int y, std::string_view text) {
    Told(style);
    m_lines.push_back(numbers::Text("TextOut %d %d ", x, y) + std::string(text));
    return 1;
}

}  // namespace zm
