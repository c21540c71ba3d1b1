// A device that writes down what is asked of it, one line for each call, for tests and for looking.
#pragma once

#include <string>
#include <vector>

#include "zenromath/device.h"

namespace zm {

/// A device that writes a line for each call.
class ZM_API LogDevice : public Device {
 public:
    /// What goes into the log beside the strokes.
    enum class Detail {
        strokes,  ///< MoveToEx, LineTo, SetPixel, Arc, Rectangle, TextOut, FillRgn with their numbers
        styles    ///< also a line Pen, Brush, Font before the first stroke that takes another one
    };
    /// \param detail  what goes into the log
    explicit LogDevice(Detail detail = Detail::strokes) : m_detail(detail) {}

    /// The log so far.
    const std::vector<std::string>& lines() const { return m_lines; }
    /// Empties the log.
    void Clear() { m_lines.clear(); }

    void Moved(int x, int y) override;
    int Line(const Stroke& stroke, int x1, int y1, int x2, int y2) override;
    COLORREF Dot(int x, int y, COLORREF color) override;
    int Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) override;
    int Box(const Stroke* stroke, const Fill& fill, const RECT& box) override;
    /// FillRgn kind left top right bottom: the kind and box of the region.
    int FillRegion(const Region& region, const Fill& fill) override;
    int Text(const TextStyle& style, int x, int y, std::string_view text) override;

 private:
    void Told(const Stroke& stroke);
    void Told(const Fill& fill);
    void Told(const TextStyle& style);
    void Style(std::string& last, std::string line);

    Detail m_detail;
    std::vector<std::string> m_lines;
    std::string m_pen, m_brush, m_font;
};

}  // namespace zm
