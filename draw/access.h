// The inner values of the exported classes, for the sinks and for tests. Nothing else reaches behind the interface.
#pragma once

#include "zenromath/draw.h"

namespace zm::draw {

class PolygonIndex;

struct Access {
    static int OutCode(const CCutArea& area, double x, double y) { return area.incode(x, y); }
    /// The index of the polygon, null where the plain order of edges is used.
    static const PolygonIndex* Index(const CCutArea& area);

    /// Whether the switch is off: cutline lets everything through.
    static bool IsUnclipped(const CCutArea& area) { return area.m_docut == 0; }
    static double ClipXMin(const CCutArea& area) { return area.m_xmin; }
    static double ClipYMin(const CCutArea& area) { return area.m_ymin; }
    static double ClipXMax(const CCutArea& area) { return area.m_xmax; }
    static double ClipYMax(const CCutArea& area) { return area.m_ymax; }
    static bool IsPolygon(const CCutArea& area) { return area.IsPolygon(); }

    static bool IsRotated(const CTqDraw& dc) { return dc.m_rotateActive != 0; }
    static int Type(const CTqDraw& dc) { return dc.m_type; }
    static HDC Device(const CTqDraw& dc) { return dc.m_hdc; }
    static double Scale(const CTqDraw& dc) { return dc.m_scale; }
    static int ViewWidth(const CTqDraw& dc) { return dc.m_viewWidth; }
    static int ViewHeight(const CTqDraw& dc) { return dc.m_viewHeight; }
    static double OriginX(const CTqDraw& dc) { return dc.m_originX; }
    static double OriginY(const CTqDraw& dc) { return dc.m_originY; }
    static bool IsFlipped(const CTqDraw& dc) { return dc.m_flip != 0; }
    static CStringArray& Commands(CTqDraw& dc) { return dc.m_commands; }

    static double TextHeight(const CTqDraw& dc) { return dc.m_textHeight; }
    static double TextWidth(const CTqDraw& dc) { return dc.m_textWidth; }
    static double TextAngle(const CTqDraw& dc) { return dc.m_textAngle; }
    static double TextSin(const CTqDraw& dc) { return dc.m_textSin; }
    static double TextCos(const CTqDraw& dc) { return dc.m_textCos; }
    static int FontHeight(const CTqDraw& dc) { return dc.m_fontHeight; }
    static int FontWidth(const CTqDraw& dc) { return dc.m_fontWidth; }
    static int FontEscapement(const CTqDraw& dc) { return dc.m_fontEscapement; }

    static HPEN Pen(const CTQPen& pen) { return pen.m_pen; }
    static HFONT Font(const CTQFont& font) { return font.m_font; }
};

}  // namespace zm::draw
