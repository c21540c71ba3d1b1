// The device boundary: what an application derives from to let the library draw on something of its own.
//
// An HDC is a pointer to a zm::Device; on Windows it may be a device context of the system as well, drawn on with GDI.
// Handles, selection and the current position are kept once, in the base class, for all devices; a derived device
// receives resolved strokes, fills and text, never a handle:
//
//     MoveToEx, LineTo, DrawLine           Moved, Line
//     DrawLines                            Lines
//     SetPixel                             Dot
//     Arc                                  Arc
//     Rectangle                            Box
//     FillRgn                              FillRegion
//     TextOutA, DrawTextA                  Text, Paragraph
//
// Coordinates are device pixels, y down. Texts are bytes in GBK. Fills, arcs, boxes and text are not clipped before they
// arrive; survey strokes are clipped to the view.
//
// A device may let the application in while it draws. The strokes of one hand-over were mapped before the first of them
// was drawn, so another view, rotation, clip area, working context or symbol library holds from the next hand-over on,
// and goes on there with the rest of the figure; another pen holds at once. The device itself may go: what is left of
// the hand-over is dropped. A context may go too, unless a call of its own (line, lines, drawarc ...) is under way.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "zenromath/platform.h"

namespace zm {

/// The selected pen, resolved.
struct Stroke {
    int style = 0;                 ///< PS_SOLID .. PS_INSIDEFRAME, dashed ones at any width. Never PS_NULL.
    int width = 1;                 ///< device pixels, 1 or more; a created width of 0 arrives as 1
    COLORREF color = 0;            ///< 0x00BBGGRR
    bool opaqueGaps = false;       ///< the gaps of a dashed style take the background colour
    COLORREF gapColor = 0xFFFFFF;  ///< 0x00BBGGRR
    bool operator==(const Stroke&) const = default;
};

/// A brush, resolved with the text and background colour of the moment.
struct Fill {
    /// How the inside is filled.
    enum class Kind {
        none,    ///< the null brush: nothing is filled
        solid,   ///< color everywhere
        hatch,   ///< lines of color in the style hatch, over background where opaque
        pattern  ///< the tile rows: bit 1 takes background, bit 0 takes color
    };
    Kind kind = Kind::solid;         ///< how
    COLORREF color = 0xFFFFFF;       ///< 0x00BBGGRR
    int hatch = 0;                   ///< HS_HORIZONTAL .. HS_DIAGCROSS
    bool opaque = true;              ///< what is not inked takes background
    COLORREF background = 0xFFFFFF;  ///< 0x00BBGGRR
    /// Eight rows from the top, the highest bit leftmost. The tile is fixed to the upper left corner of the device, not
    /// to the figure. For a hatch it holds the hatch's own lines as 1 bits: of HS_HORIZONTAL row 3, of HS_VERTICAL
    /// column 4 ...
    std::array<std::uint8_t, 8> rows{};
    bool operator==(const Fill&) const = default;

    /// True where the pixel (x, y) takes color; where not, it takes background, or nothing if it is not opaque. A
    /// pattern is always opaque.
    bool Inked(int x, int y) const {
        if (kind == Kind::solid) return true;
        const bool bit = ((rows[static_cast<unsigned>(y) & 7U] >> (7U - (static_cast<unsigned>(x) & 7U))) & 1U) != 0;
        return kind == Kind::pattern ? !bit : bit;
    }
};

/// The selected font with the colours of the moment.
struct TextStyle {
    /// lfHeight: the cell height in pixels (negative: the height of the characters alone; 0: the device's own choice).
    /// lfWidth: the average character width (0: as the face has it). A double-byte character is two widths wide.
    /// lfEscapement: tenths of a degree counter-clockwise on the device. lfFaceName: GBK.
    LOGFONTA font{};
    COLORREF color = 0;              ///< 0x00BBGGRR
    bool opaque = true;              ///< the cells around the characters take background
    COLORREF background = 0xFFFFFF;  ///< 0x00BBGGRR
};

/// A set of pixels: of a polygon, a rectangle, or combined from others.
///
/// A polygon holds the pixel (x, y) if the point (x, y) lies inside, with left and upper edges in and right and lower
/// edges out; so neighbours that share an edge neither overlap nor leave a gap.
class ZM_API Region {
 public:
    /// One figure by its corners; inside by the even-odd or by the winding rule.
    struct Outline {
        std::vector<POINT> points;  ///< corners, pixels; the closing edge is implied
        bool winding = false;       ///< by the winding rule, else the even-odd one
    };

    Region();  ///< empty
    Region(const Region&);
    Region(Region&&) noexcept;
    Region& operator=(const Region&);
    Region& operator=(Region&&) noexcept;
    ~Region();

    /// count corners; the closing edge is implied. mode: ALTERNATE or WINDING.
    static Region Polygon(const POINT* points, int count, int mode);
    /// Corners in any order; the right column and the lower row are out.
    static Region Rectangle(int left, int top, int right, int bottom);
    /// mode: RGN_AND, RGN_OR, RGN_XOR, RGN_DIFF (first without second), RGN_COPY (first alone).
    static Region Combined(const Region& first, const Region& second, int mode);

    /// NULLREGION, SIMPLEREGION (one rectangle) or COMPLEXREGION.
    int Kind() const;
    /// The smallest rectangle around all pixels, right and bottom out; all 0 if empty.
    RECT Box() const;
    /// True if the pixel (x, y) is in it.
    bool Contains(int x, int y) const;
    /// The pixels as rectangles that do not overlap, from top to bottom in bands of equal top and bottom, each band
    /// from left to right.
    const std::vector<RECT>& Rectangles() const;
    /// The outlines whose common part the region is, for devices that draw figures and not pixels; null where it was
    /// combined in another way, then it is known by its rectangles alone.
    const std::vector<Outline>* Outlines() const;

 private:
    struct Data;
    explicit Region(std::shared_ptr<const Data> data);
    std::shared_ptr<const Data> m_data;
};

#if defined(_WIN32)
/// What makes the address of a device one of the system's types. Its handles are numbers of 32 bits and no addresses;
/// the library knows which of the two it was given.
using DeviceContext = HDC__;
constexpr int ERROR_REGION = 0;
#else
struct DeviceContext {};
#endif

/// Something to draw on. On Windows its pens, fonts, brushes and regions are GDI's objects.
///
/// A device lives as long as anything is drawn on it; operations on an HDC whose device is gone do nothing and report
/// failure. A fresh device has a black pen of width 1, a white brush, the system font, black text on opaque white, and
/// the current position (0, 0).
class ZM_API Device : public DeviceContext {
 public:
    Device();
    virtual ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    /// The current position was set. For devices that write down what is asked of them.
    virtual void Moved(int x, int y);
    /// A straight stroke. The first pixel is drawn, the last left out.
    /// \return non-zero if done; so for all that follow
    virtual int Line(const Stroke& stroke, int x1, int y1, int x2, int y2) = 0;
    /// A run of strokes: from the first point to the second, from the third to the fourth ... For devices that draw
    /// many at a time faster than one by one: the library hands over its survey strokes so, up to 64 at a time, all of
    /// one symbol or line. Moves between them are not reported. The base class has Moved and Line for each, by the pen
    /// of the moment.
    ///
    /// \param ends   two points for each stroke, device pixels
    /// \param count  strokes, 1 or more
    /// \return       the sum of the results that Line has for each
    virtual int Lines(const Stroke& stroke, const POINT* ends, int count);
    /// One pixel; the colour set, CLR_INVALID where there is no such pixel.
    virtual COLORREF Dot(int x, int y, COLORREF color) = 0;
    /// A piece of the ellipse in box (its corners in any order), counter-clockwise on the device from the radial line
    /// through start to the radial line through end; the whole ellipse if the two are the same direction.
    virtual int Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) = 0;
    /// An outline with a filled interior; the right column and the lower row of box are out. Corners in any order.
    /// stroke is null under the null pen.
    virtual int Box(const Stroke* stroke, const Fill& fill, const RECT& box) = 0;
    /// The pixels of a region, without an outline.
    virtual int FillRegion(const Region& region, const Fill& fill) = 0;
    /// Characters with the top left corner of the first cell at (x, y), turned about that point by the escapement.
    virtual int Text(const TextStyle& style, int x, int y, std::string_view text) = 0;
    /// Text in a box: flags are the DT_ values. The height of the text in pixels, 0 if nothing was done.
    /// \param[in,out] box  with DT_CALCRECT it is set to what the text needs and nothing is drawn
    /// The base class breaks at line ends, estimates widths by the font's lfWidth, and uses Text.
    virtual int Paragraph(const TextStyle& style, std::string_view text, RECT& box, unsigned int flags);

    /// What the handle layer keeps for each device.
    struct Selection;
    /// For the handle layer alone.
    Selection& selection() { return *m_selection; }

 private:
    std::unique_ptr<Selection> m_selection;
};

/// Whether a device context still exists.
ZM_API bool IsDevice(const Device* device);

}  // namespace zm
