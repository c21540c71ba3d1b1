// Pens of the map: by feature code with the width of its layer, or of a stated width.
#pragma once

#include <memory>

#include "tools/zenro/map/page.h"
#include "zenromath/draw.h"

namespace zm::tool {

/// The pen of a feature code while it lives. Drawing files get the code's layer in the sheet's colour, recordings the
/// exact width beside the rounded one.
class MapPen {
 public:
    /// \param style, value  as CTQPen takes them
    explicit MapPen(int code, int style = 0, int value = 0);

 private:
    CTQPen m_pen;
};

/// A pen of a stated width in millimetres of paper in the colour of a feature code's layer.
class WidthPen {
 public:
    WidthPen(const Page& page, double millimetres, int code);

 private:
    MapPen m_layer;
    CTQPen m_pen;
};

}  // namespace zm::tool
