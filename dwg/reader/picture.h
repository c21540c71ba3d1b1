// What a drawing shows: its records as strokes, fills, texts and dots in drawing units, seen from above. Layers that
// are off or frozen, arrays of inserts, base points of blocks, colours by block, attributes and dimensions by their
// block are resolved here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dwg/reader/drawing.h"
#include "zenromath/export.h"

namespace zm::dwg::reader {

/// How an item looks.
struct Look {
    unsigned layer = 0;                  // its place among the layers of the drawing
    int color = 7;                       // 1 to 255
    const Linetype* linetype = nullptr;  // null: a solid line
    double dashScale = 1.0;              // of the linetype's elements
};

struct TextItem {
    Point at;             // lower left corner
    double height = 0.0;  // drawing units, above 0
    double angle = 0.0;   // radians
    double widthFactor = 1.0;
    std::string text;  // GBK; the marks for degrees, plus-minus and diameter are resolved
};

class PictureSink {
 public:
    virtual ~PictureSink() = default;
    virtual void Stroke(const std::vector<Point>& points, const Look& look) = 0;
    virtual void Fill(const std::vector<Point>& corners, const Look& look) = 0;  // around it, without the first again
    virtual void Text(const TextItem& text, const Look& look) = 0;
    virtual void Dot(const Point& at, const Look& look) = 0;
};

struct PictureCount {
    long drawn = 0;    // records that were shown
    long unknown = 0;  // records of kinds that are not drawn
    long shapes = 0;   // shapes: their strokes are in a file of their own, so that a square is in their place
    long paper = 0;    // records of paper space, left out
    bool cut = false;  // the rest was left out: inserts of inserts would never end
};

/// Shows the drawing to a sink. Blocks that contain themselves are left out where they would begin again.
ZM_API PictureCount ShowPicture(const Drawing& drawing, PictureSink& sink);

/// Bounds of what ShowPicture shows, texts included. False if there is nothing.
ZM_API bool Extents(const Drawing& drawing, Point& low, Point& high);

}  // namespace zm::dwg::reader
