// A device that makes an SVG document: paths, real text, clipped figures. The same calls give the same bytes.
#pragma once

#include <map>
#include <string>

#include "zenromath/device.h"

namespace zm {

/// A device that makes an SVG picture.
class ZM_API SvgDevice : public Device {
 public:
    /// \param width, height      pixels, the extent of the picture; below 1 counts as 1
    /// \param widthMm, heightMm  its size on paper in millimetres; 0 leaves it to the reader, one unit for each pixel.
    ///                           On paper of more than 96 dots an inch a pixel of a dash or of a brush's tile takes so
    ///                           many more dots, and is as large as on a screen.
    SvgDevice(int width, int height, double widthMm = 0.0, double heightMm = 0.0);

    /// The whole document in UTF-8, of what was drawn so far on white paper.
    std::string Document() const;

    int Line(const Stroke& stroke, int x1, int y1, int x2, int y2) override;
    int Lines(const Stroke& stroke, const POINT* ends, int count) override;
    COLORREF Dot(int x, int y, COLORREF color) override;
    int Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) override;
    int Box(const Stroke* stroke, const Fill& fill, const RECT& box) override;
    int FillRegion(const Region& region, const Fill& fill) override;
    /// In the named face at the cell height, stretched to the average width, turned by the escapement.
    int Text(const TextStyle& style, int x, int y, std::string_view text) override;

 private:
    std::string StyleOf(const Stroke& stroke) const;
    std::string& LinePath(const Stroke& stroke);
    void Put(const std::string& element);
    std::string OpenPath() const;
    void EndPath();
    std::string ClippedTo(const Region::Outline& outline);
    std::string PaintOf(const Fill& fill);
    std::string FillElement(const Region& region, const std::string& paint);

    int m_width, m_height;
    double m_widthMm, m_heightMm;
    double m_unit;  // device pixels that one pixel of a dash or a tile takes
    std::string m_body;
    // The path that lines are still being added to, and the stroke or dot colour that it has.
    std::string m_path;
    std::string m_pathStyle;
    Stroke m_lastStroke;
    bool m_pathIsLine = false;
    POINT m_pathEnd{0, 0};
    std::map<std::string, std::string> m_paints;  // the content of a pattern and its id
    int m_ids = 0;
};

}  // namespace zm
