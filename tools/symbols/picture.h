// One picture of the page: what the library draws on a device of ours, as the inside of an SVG element.
#pragma once

#include <functional>
#include <string>

#include "zenromath/device.h"

namespace zm::tool::symbols {

constexpr int kPixelsPerMm = 100;    // of the picture's device; coordinates of the SVG are its pixels
constexpr double kStageMm = 160.0;   // width and height of the device, the origin in its middle
constexpr int kThinnestStroke = 10;  // pixels: a pen of one pixel is the thinnest line of a plotter, 0.1 mm
constexpr int kPatternPixel = 25;    // a pixel of a fill pattern is shown as one of a screen, 0.25 mm

/// Writes strokes, arcs, dots and fills as SVG and keeps the rectangle around them.
class PictureDevice : public Device {
 public:
    int Line(const Stroke& stroke, int x1, int y1, int x2, int y2) override;
    COLORREF Dot(int x, int y, COLORREF color) override;
    int Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) override;
    int Box(const Stroke* stroke, const Fill& fill, const RECT& box) override;
    int FillRegion(const Region& region, const Fill& fill) override;
    /// Symbols hold no text; nothing is drawn.
    int Text(const TextStyle& style, int x, int y, std::string_view text) override;

    /// The elements so far; strokes that follow each other are one path.
    std::string Body();
    bool empty() const { return m_empty; }
    /// The rectangle around all that was drawn, pixels, pens included.
    RECT bounds() const { return m_bounds; }

 private:
    void Cover(int x, int y, int reach);
    void UseStroke(const Stroke& stroke);
    void EndPath();
    std::string FillAttribute(const Fill& fill);

    std::string m_body;
    std::string m_path;  // the data of the path that is being gathered
    Stroke m_stroke;
    POINT m_end{};
    RECT m_bounds{};
    bool m_empty = true;
};

/// A finished picture.
struct Picture {
    std::string body;    ///< SVG elements, in pixels of the device, y down, the origin of the drawing at (0, 0)
    double left = 0.0;   ///< millimetres on paper from the origin of the drawing
    double top = 0.0;    ///< y up
    double width = 0.0;  ///< millimetres on paper; 0 if nothing was drawn
    double height = 0.0;
    std::string message;  ///< the last message that the library showed, UTF-8
};

/// Draws with the library on a stage of the paper size and gives what came.
/// \param scale  map scale denominator
/// \param pen    millimetres on paper
/// \param color  of the pen: red, green, blue from the lowest byte
/// \param draw   draws through TqDC, in metres on the ground about the origin
Picture TakePicture(double scale, double pen, const std::function<void()>& draw, COLORREF color = 0);

/// The picture as an SVG element at paper size, with a margin; extra is put on top of it.
std::string SvgElement(const Picture& picture, const std::string& extra);

}  // namespace zm::tool::symbols
