// The device on Qt: images, PDF pages, widgets, anything that QPainter paints on. Programs that use it link
// ZenroMath::qt.
#pragma once

#include <QPainter>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "zenromath/device.h"

namespace zm::qt {

/// Makes sure that there is a Qt application object, which text, PDF pages and windows need; one that the program made
/// itself stays. Where no display can be reached it runs on Qt's offscreen platform by itself, unless QT_QPA_PLATFORM
/// is set. A device makes sure of it at its construction; a QPdfWriter is made before, so it needs this call.
ZM_API void EnsureApplication();

/// True if windows can be shown to somebody.
ZM_API bool HasDisplay();

/// How strokes become pixels.
enum class Rendering {
    pixels,  ///< each pixel as the operations define it, no antialiasing; for screens and for exact comparison
    smooth   ///< antialiased on images, outlines on pages; for maps that people look at
};

struct OutlinePen;

/// A device on any paint device of Qt: widgets, images, pages.
class ZM_API QtDevice : public Device {
 public:
    /// Draws on target, which must outlive the device or its Finish.
    ///
    /// \param unit  device pixels that one pixel of a pen's dashes and of a brush's tile takes: 1 on a screen, dots per
    ///              inch / 96 on paper, so that a dash has the same length on both
    /// \param zoom  pixels of the target that a device pixel takes, for smooth rendering: with fine device pixels a
    ///              stroke has its true width at any resolution of the target
    explicit QtDevice(QPaintDevice* target, Rendering rendering = Rendering::smooth, double unit = 1.0,
                      double zoom = 1.0);
    ~QtDevice() override;

    /// Hands over what is gathered and ends the painter. False if the target could not be painted on. Nothing is drawn
    /// afterwards.
    bool Finish();
    /// Hands over the strokes gathered so far.
    void Flush();

    void Moved(int x, int y) override;
    int Line(const Stroke& stroke, int x1, int y1, int x2, int y2) override;
    int Lines(const Stroke& stroke, const POINT* ends, int count) override;
    COLORREF Dot(int x, int y, COLORREF color) override;
    int Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) override;
    int Box(const Stroke* stroke, const Fill& fill, const RECT& box) override;
    int FillRegion(const Region& region, const Fill& fill) override;
    int Text(const TextStyle& style, int x, int y, std::string_view text) override;

 private:
    bool Thin(const Stroke& stroke) const { return m_rendering == Rendering::pixels && stroke.width <= 1; }
    struct Pen {
        Stroke stroke;
        QPen pen;
        QRgb ink;
        std::shared_ptr<const OutlinePen> outline;  // where outlines are filled
    };
    void TakePen(const Stroke& stroke);
    const Pen& PenOf(const Stroke& stroke);
    void Put(POINT from, POINT to);
    void Gather(const QLineF& stroke);
    bool GoesOn(const QLineF& last, const QLineF& next) const;
    bool PlotLine(int x1, int y1, int x2, int y2);
    void ThinLine(const Stroke& stroke, int x1, int y1, int x2, int y2);
    void PutRun(bool down, const QRect& wanted);
    void EndChain();
    void FillOutline();
    void Stroking();
    QPointF At(double x, double y) const { return QPointF(x + m_shift, y + m_shift); }
    QBrush BrushOf(const Fill& fill) const;

    QPainter m_painter;
    uchar* m_bits = nullptr;  // of an image, for thin strokes; null: through the painter
    std::ptrdiff_t m_bytesPerLine = 0;
    QRect m_bounds;
    Rendering m_rendering;
    double m_unit;
    double m_shift;  // to the middle of a pixel where strokes are antialiased
    Stroke m_stroke;
    bool m_hasStroke = false;
    std::vector<Pen> m_pens;       // of the strokes so far, the latest ones
    QRgb m_ink = 0;                // of m_stroke
    bool m_caps = false;           // m_stroke is thin and solid: its ends are square
    std::vector<QLineF> m_lines;   // single strokes of m_stroke
    bool m_open = false;           // the last of m_lines may be gone on from
    std::vector<QPointF> m_chain;  // connected strokes of m_stroke
    bool m_fillsOutlines = false;  // on smooth pixels outlines of solid strokes are filled, which takes less time
    std::shared_ptr<const OutlinePen> m_outlinePen;  // of m_stroke; null where it is stroked
    bool m_filling = false;                          // the painter has m_stroke's brush and no pen
    QPen m_pen;                                      // of m_stroke
    double m_zoom = 1.0;
    std::vector<QPointF> m_outline;
    QVector<QRect> m_runs;     // pixel runs of m_stroke's colour
    QVector<QRect> m_gapRuns;  // pixel runs of its gaps
    POINT m_end{0, 0};
    unsigned m_dashStep = 0;
};

/// Sets what is called once for each face that is not installed, with the face asked for and the one used instead, in
/// UTF-8; and once for each face with a text of which some characters are in no installed face, and are drawn as boxes,
/// with the face and an empty text. By default a line on stderr. An empty function is silence.
ZM_API void SetMissingFaceReport(std::function<void(const std::string& asked, const std::string& used)> report);

}  // namespace zm::qt
