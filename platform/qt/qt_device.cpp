#include "zenromath/qt.h"

#include <QBitmap>
#include <QImage>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <numeric>
#include <span>

#include "platform/device/arc_figure.h"
#include "platform/device/dashes.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/stroke_outline.h"
#include "runtime/uses.h"

namespace zm::qt {
namespace {

constexpr double kThinnest = 0.15 / 25.4 * 96.0;  // of a pixel of a screen: 0.15 mm
constexpr std::size_t kBatch = 4096;              // strokes that are handed over together
constexpr std::size_t kPens = 16;                 // that are kept
constexpr double kHardlyTurned = 0.75;            // square of the cosine of 30 degrees
constexpr double kShortPieces = 81.0;             // product of the squared lengths of two pieces, pixels; three each
// Beyond this a coordinate can leave Qt's fixed-point rasteriser; device coordinates stay far below.
constexpr int kFar = 1 << 20;

QColor ColorOf(COLORREF color) {
    return QColor(static_cast<int>(color & 0xFF), static_cast<int>(color >> 8 & 0xFF),
                  static_cast<int>(color >> 16 & 0xFF));
}

bool Dashed(const Stroke& stroke) {
    return !platform::DashesOf(stroke.style).empty();
}

// Whether the dash is down at a step along the longer axis.
bool DashDown(int style, unsigned step) {
    const std::span<const int> dashes = platform::DashesOf(style);
    int at = static_cast<int>(step % static_cast<unsigned>(std::accumulate(dashes.begin(), dashes.end(), 0)));
    bool down = true;
    for (const int length : dashes) {
        if (at < length) return down;
        at -= length;
        down = !down;
    }
    return false;
}

int Clamped(int value) {
    return std::clamp(value, -kFar, kFar);
}

RECT Clamped(const RECT& box) {
    return {Clamped(box.left), Clamped(box.top), Clamped(box.right), Clamped(box.bottom)};
}

QRect Normalised(const RECT& box) {
    const int left = std::min(box.left, box.right);
    const int top = std::min(box.top, box.bottom);
    return QRect(left, top, std::abs(box.right - box.left), std::abs(box.bottom - box.top));
}

}  // namespace

QtDevice::QtDevice(QPaintDevice* target, Rendering rendering, double unit, double zoom)
    : m_rendering(rendering), m_unit(unit > 0.0 ? unit : 1.0), m_shift(rendering == Rendering::smooth ? 0.5 : 0.0) {
    EnsureApplication();
    if (target == nullptr) return;
    if (rendering == Rendering::pixels || !(zoom > 0.0)) zoom = 1.0;
    // Thin strokes go straight to the pixels of an image; the pointer is taken before the painter shares it.
    if (auto* image = dynamic_cast<QImage*>(target);
        image != nullptr && rendering == Rendering::pixels &&
        (image->format() == QImage::Format_RGB32 || image->format() == QImage::Format_ARGB32)) {
        m_bits = image->bits();
        m_bytesPerLine = image->bytesPerLine();
    }
    if (!m_painter.begin(target)) return;
    m_bounds = QRect(0, 0, static_cast<int>(std::ceil(target->width() / zoom)),
                     static_cast<int>(std::ceil(target->height() / zoom)));
    m_painter.scale(zoom, zoom);
    m_painter.setRenderHint(QPainter::Antialiasing, rendering == Rendering::smooth);
    m_painter.setRenderHint(QPainter::TextAntialiasing, rendering == Rendering::smooth);
    m_painter.setBrushOrigin(0, 0);
    m_zoom = zoom;
    m_fillsOutlines = rendering == Rendering::smooth && m_painter.paintEngine()->type() == QPaintEngine::Raster;
}

QtDevice::~QtDevice() {
    Finish();
}

bool QtDevice::Finish() {
    if (!m_painter.isActive()) return false;
    Flush();
    return m_painter.end();
}

void QtDevice::EndChain() {
    m_open = false;
    if (m_chain.empty()) return;
    m_outline.clear();
    if (m_outlinePen != nullptr) OutlineChain(*m_outlinePen, m_chain, m_outline);
    if (!m_outline.empty()) {
        FillOutline();
    } else {
        Stroking();
        uses::Count(uses::strokeChained);
        const auto isFirst = [this](const QPointF& point) { return point == m_chain.front(); };
        if (std::all_of(m_chain.begin(), m_chain.end(), isFirst))
            m_painter.drawPoint(m_chain[0]);  // a wide stroke of no length is a dot
        else
            m_painter.drawPolyline(m_chain.data(), static_cast<int>(m_chain.size()));
    }
    m_chain.clear();
}

void QtDevice::FillOutline() {
    uses::Count(uses::strokeFilled);
    if (!m_filling) {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(m_pen.color());
        m_filling = true;
    }
    m_painter.drawPolygon(m_outline.data(), static_cast<int>(m_outline.size()), Qt::WindingFill);
}

// The painter's pen is that of the stroke again.
void QtDevice::Stroking() {
    if (!m_filling) return;
    m_painter.setPen(m_pen);
    m_painter.setBrush(Qt::NoBrush);
    m_filling = false;
}

void QtDevice::Flush() {
    if (!m_painter.isActive()) return;
    EndChain();
    if (m_outlinePen != nullptr && m_outlinePen->round) {
        for (const QLineF& line : m_lines) {
            OutlineChain(*m_outlinePen, {line.p1(), line.p2()}, m_outline);
            FillOutline();
        }
    } else if (!m_lines.empty()) {
        Stroking();
        uses::Count(uses::strokeSingle, m_lines.size());
        m_painter.drawLines(m_lines.data(), static_cast<int>(m_lines.size()));
    }
    m_lines.clear();
    for (QVector<QRect>* runs : {&m_gapRuns, &m_runs}) {
        if (runs->isEmpty()) continue;
        m_painter.save();
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(ColorOf(runs == &m_runs ? m_stroke.color : m_stroke.gapColor));
        m_painter.drawRects(*runs);
        m_painter.restore();
        runs->clear();
    }
}

void QtDevice::TakePen(const Stroke& stroke) {
    if (m_hasStroke && stroke == m_stroke) return;
    Flush();
    m_stroke = stroke;
    m_hasStroke = true;
    m_caps = stroke.width <= 1 && !Dashed(stroke);
    const Pen& pen = PenOf(stroke);
    m_ink = pen.ink;
    m_pen = pen.pen;
    m_outlinePen = pen.outline;
    Stroking();
    m_painter.setPen(m_pen);
}

// Figures take turns with a few pens, and a QPen costs as much to make as a short line to draw.
const QtDevice::Pen& QtDevice::PenOf(const Stroke& stroke) {
    for (const Pen& pen : m_pens) {
        if (pen.stroke != stroke) continue;
        uses::Count(uses::penKept);
        return pen;
    }
    uses::Count(uses::penMade);
    if (m_pens.size() == kPens) m_pens.clear();
    const bool wide = stroke.width > 1;
    // A pen of one pixel is the thinnest line of paper where pixels are finer than that.
    const double width = wide || m_rendering == Rendering::pixels ? stroke.width : std::max(1.0, kThinnest * m_unit);
    QPen pen(ColorOf(stroke.color), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    if (Dashed(stroke)) {
        // Qt's pattern counts in pen widths. A wide dashed pen keeps the rhythm of a thin one at its own weight.
        QList<qreal> pattern;
        for (const int length : platform::DashesOf(stroke.style)) pattern.append(length * m_unit / width);
        pen.setDashPattern(pattern);
        pen.setCapStyle(Qt::FlatCap);
    } else if (!wide) {
        pen.setCapStyle(Qt::SquareCap);
    }
    std::shared_ptr<const OutlinePen> outline;
    if (m_fillsOutlines && !Dashed(stroke) && width * m_zoom > 1.0)  // Qt has a short way up to 1
        outline = std::make_shared<OutlinePen>(width, m_zoom, wide);
    m_pens.push_back({stroke, pen, ColorOf(stroke.color).rgb(), outline});
    return m_pens.back();
}

void QtDevice::Moved(int x, int y) {
    // The position of the stroke before goes on in one chain, so that its dashes do.
    if (x != m_end.x || y != m_end.y) {
        EndChain();
        m_dashStep = 0;
    }
    m_end = {x, y};
}

int QtDevice::Line(const Stroke& stroke, int x1, int y1, int x2, int y2) {
    if (!m_painter.isActive()) return 0;
    TakePen(stroke);
    Put({Clamped(x1), Clamped(y1)}, {Clamped(x2), Clamped(y2)});
    return 1;
}

int QtDevice::Lines(const Stroke& stroke, const POINT* ends, int count) {
    if (!m_painter.isActive()) return 0;
    TakePen(stroke);
    for (const POINT* from = ends; from != ends + 2 * static_cast<std::ptrdiff_t>(count); from += 2) {
        Moved(from[0].x, from[0].y);
        Put({Clamped(from[0].x), Clamped(from[0].y)}, {Clamped(from[1].x), Clamped(from[1].y)});
    }
    return count;
}

void QtDevice::Put(POINT from, POINT to) {
    if (Thin(m_stroke))
        ThinLine(m_stroke, from.x, from.y, to.x, to.y);
    else
        Gather({At(from.x, from.y), At(to.x, to.y)});
    m_end = to;
    if (m_lines.size() >= kBatch || static_cast<std::size_t>(m_runs.size()) >= kBatch) Flush();
}

// A stroke is joined to the chain or to the single stroke before it, or is a single one itself; a dot begins a chain.
void QtDevice::Gather(const QLineF& stroke) {
    if (!m_chain.empty()) {
        if (GoesOn({m_chain[m_chain.size() - 2], m_chain.back()}, stroke)) {
            m_chain.push_back(stroke.p2());
            if (m_chain.size() >= kBatch) EndChain();
            return;
        }
        EndChain();
    } else if (m_open && GoesOn(m_lines.back(), stroke)) {
        m_chain = {m_lines.back().p1(), m_lines.back().p2(), stroke.p2()};
        m_lines.pop_back();
        return;
    }
    m_open = stroke.p1() != stroke.p2();
    if (m_open)
        m_lines.push_back(stroke);
    else
        m_chain = {stroke.p1(), stroke.p2()};
}

// Whether a stroke is joined to the one before. A thin solid one that turns off more than a little is not: the square
// ends of two strokes fill such a corner, and single strokes are drawn many times faster. What hardly turns, as the
// pieces of a curve, is joined, or each joint were a darker spot.
bool QtDevice::GoesOn(const QLineF& last, const QLineF& next) const {
    if (last.x2() != next.x1() || last.y2() != next.y1()) return false;
    if (!m_caps) return true;
    const QPointF before = last.p2() - last.p1();
    const QPointF after = next.p2() - next.p1();
    const double product = QPointF::dotProduct(before, after);
    const double lengths = QPointF::dotProduct(before, before) * QPointF::dotProduct(after, after);
    return product > 0.0 ? product * product > kHardlyTurned * lengths : lengths < kShortPieces;
}

// A solid stroke on the pixels themselves. False where it is not wholly on the image.
bool QtDevice::PlotLine(int x1, int y1, int x2, int y2) {
    if (m_bits == nullptr || !m_bounds.contains(x1, y1) || !m_bounds.contains(x2, y2)) return false;
    const std::ptrdiff_t row = m_bytesPerLine / static_cast<std::ptrdiff_t>(sizeof(QRgb));
    const std::ptrdiff_t right = x2 < x1 ? -1 : 1;
    const std::ptrdiff_t down = y2 < y1 ? -row : row;
    const int width = std::abs(x2 - x1);
    const int height = std::abs(y2 - y1);
    const bool steep = height > width;
    const std::ptrdiff_t along = steep ? down : right;
    const std::ptrdiff_t across = steep ? right : down;
    const int length = std::max(width, height);
    const int rise = std::min(width, height);
    // Half way goes to the smaller coordinate, so the two ways of rising differ by one.
    int rest = across > 0 ? length : length - 1;
    QRgb* at = reinterpret_cast<QRgb*>(m_bits) + y1 * row + x1;
    for (int left = length; left > 0; --left) {
        *at = m_ink;
        at += along;
        rest -= 2 * rise;
        if (rest < 0) {
            at += across;
            rest += 2 * length;
        }
    }
    m_dashStep += static_cast<unsigned>(length);
    uses::Count(uses::strokePlotted);
    return true;
}

// One pixel for each step of the longer axis, the last left out; half way goes to the smaller coordinate.
void QtDevice::ThinLine(const Stroke& stroke, int x1, int y1, int x2, int y2) {
    const bool dashed = Dashed(stroke);
    if (!dashed && PlotLine(x1, y1, x2, y2)) return;
    uses::Count(uses::strokeInRuns);
    const bool steep = std::abs(y2 - y1) > std::abs(x2 - x1);
    const int from = steep ? y1 : x1;
    const int to = steep ? y2 : x2;
    const int across = steep ? x1 : y1;
    const std::int64_t rise = steep ? x2 - x1 : y2 - y1;
    const std::int64_t length = std::abs(to - from);
    const int step = to > from ? 1 : -1;
    const int low = steep ? m_bounds.top() : m_bounds.left();
    const int high = steep ? m_bounds.bottom() : m_bounds.right();
    const auto add = [&](bool down, int a, int b, int place) {
        const int first = std::max(std::min(a, b), low);
        const int last = std::min(std::max(a, b), high);
        if (first > last || (!down && !stroke.opaqueGaps)) return;
        PutRun(down, steep ? QRect(place, first, 1, last - first + 1) : QRect(first, place, last - first + 1, 1));
    };
    // The place across at step i is across + ceil((2 rise i - length) / (2 length)) = across + q, where
    // q * 2 length - rest is the numerator and 0 <= rest < 2 length.
    const std::int64_t turn = 2 * length;
    int place = across;
    std::int64_t rest = length;
    std::int64_t begin = 0;
    int runPlace = place;
    bool runDown = !dashed || DashDown(stroke.style, m_dashStep);
    for (std::int64_t i = 1; i < length; ++i) {
        rest -= 2 * rise;
        if (rest < 0) {
            ++place;
            rest += turn;
        } else if (rest >= turn) {
            --place;
            rest -= turn;
        }
        const bool down = !dashed || DashDown(stroke.style, m_dashStep + static_cast<unsigned>(i));
        if (place == runPlace && down == runDown) continue;
        add(runDown, from + step * static_cast<int>(begin), from + step * static_cast<int>(i - 1), runPlace);
        begin = i;
        runPlace = place;
        runDown = down;
    }
    if (length > 0)
        add(runDown, from + step * static_cast<int>(begin), from + step * static_cast<int>(length - 1), runPlace);
    m_dashStep += static_cast<unsigned>(length);
}

void QtDevice::PutRun(bool down, const QRect& wanted) {
    const QRect run = wanted & m_bounds;
    if (run.isEmpty()) return;
    if (m_bits == nullptr) {
        (down ? m_runs : m_gapRuns).append(run);
        return;
    }
    const QRgb color = down ? m_ink : ColorOf(m_stroke.gapColor).rgb();
    for (int y = run.top(); y <= run.bottom(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(m_bits + static_cast<std::ptrdiff_t>(y) * m_bytesPerLine);
        std::fill(row + run.left(), row + run.right() + 1, color);
    }
}

COLORREF QtDevice::Dot(int x, int y, COLORREF color) {
    if (!m_painter.isActive() || !m_bounds.contains(x, y)) return CLR_INVALID;
    Flush();
    m_painter.fillRect(QRect(x, y, 1, 1), ColorOf(color));
    return color & 0xFFFFFF;
}

int QtDevice::Arc(const Stroke& stroke, const RECT& box, POINT start, POINT end) {
    if (!m_painter.isActive()) return 0;
    Flush();
    TakePen(stroke);
    if (box.left == box.right || box.top == box.bottom) return 1;
    const platform::ArcFigure arc =
        platform::FigureOfArc(Clamped(box), {Clamped(start.x), Clamped(start.y)}, {Clamped(end.x), Clamped(end.y)});
    const QRectF ellipse(arc.cx - arc.rx + m_shift, arc.cy - arc.ry + m_shift, 2.0 * arc.rx, 2.0 * arc.ry);
    if (m_outlinePen != nullptr) {
        OutlineArc(*m_outlinePen, arc, m_shift, m_outline);
        if (!m_outline.empty()) {
            FillOutline();
            return 1;
        }
    }
    constexpr double kDegrees = 180.0 / std::numbers::pi;
    const double from = arc.start * kDegrees;
    double sweep = arc.sweep * kDegrees;
    // As of a line, the last pixel is left out.
    const double radius = std::max(arc.rx, arc.ry);
    if (m_rendering == Rendering::pixels && sweep < 360.0 && radius > 0.0)
        sweep = std::max(0.0, sweep - kDegrees / radius);
    Stroking();
    QPainterPath path;
    path.arcMoveTo(ellipse, from);
    path.arcTo(ellipse, from, sweep);
    m_painter.drawPath(path);
    return 1;
}

int QtDevice::Box(const Stroke* stroke, const Fill& fill, const RECT& box) {
    if (!m_painter.isActive()) return 0;
    Flush();
    const QRect around = Normalised(Clamped(box));
    if (around.width() < 1 || around.height() < 1) return 1;
    const int inset = stroke != nullptr ? 1 : 0;
    if (fill.kind != Fill::Kind::none) {
        const QRect inside = around.adjusted(inset, inset, -inset, -inset);
        if (inside.isValid()) {
            m_painter.save();
            m_painter.setRenderHint(QPainter::Antialiasing, false);
            m_painter.fillRect(inside, BrushOf(fill));
            m_painter.restore();
        }
    }
    if (stroke == nullptr) return 1;
    if (Thin(*stroke)) {
        TakePen(*stroke);
        const int right = around.left() + around.width() - 1;
        const int bottom = around.top() + around.height() - 1;
        m_dashStep = 0;
        ThinLine(*stroke, around.left(), around.top(), right, around.top());
        ThinLine(*stroke, right, around.top(), right, bottom);
        ThinLine(*stroke, right, bottom, around.left(), bottom);
        ThinLine(*stroke, around.left(), bottom, around.left(), around.top());
        const bool onePixel = around.width() == 1 && around.height() == 1;  // draws nothing
        if (around.width() == 1 && !onePixel) PutRun(true, QRect(around.left(), bottom, 1, 1));
        if (around.height() == 1 && !onePixel) PutRun(true, QRect(right, around.top(), 1, 1));
        m_dashStep = 0;
        Flush();
        return 1;
    }
    TakePen(*stroke);
    Stroking();
    QRectF outline(around.left() + m_shift, around.top() + m_shift, around.width() - 1, around.height() - 1);
    if (stroke->style == PS_INSIDEFRAME) {
        const double half = (stroke->width - 1) / 2.0;
        outline.adjust(half, half, -half, -half);
    }
    m_painter.drawRect(outline);
    return 1;
}

QBrush QtDevice::BrushOf(const Fill& fill) const {
    if (fill.kind == Fill::Kind::solid) return QBrush(ColorOf(fill.color));
    QImage tile(8, 8, QImage::Format_ARGB32);
    const QColor ink = ColorOf(fill.color);
    // What lets the ground through has the ink's colour too: pages blend a tile's neighbours into each other.
    QColor rest = fill.opaque ? ColorOf(fill.background) : ink;
    if (!fill.opaque) rest.setAlpha(0);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) tile.setPixelColor(x, y, fill.Inked(x, y) ? ink : rest);
    // Enlarged by whole pixels so that it stays crisp, and by what is left so that it is as large on every paper.
    const int enlarged = std::max(1, static_cast<int>(std::lround(m_unit)));
    if (enlarged > 1) tile = tile.scaled(8 * enlarged, 8 * enlarged);
    QBrush brush(tile);
    const double left = m_unit / enlarged;
    brush.setTransform(QTransform::fromScale(left, left));
    return brush;
}

int QtDevice::FillRegion(const Region& region, const Fill& fill) {
    if (!m_painter.isActive()) return 0;
    Flush();
    if (fill.kind == Fill::Kind::none) return 1;
    m_painter.save();
    const QBrush brush = BrushOf(fill);
    const auto* outlines = m_rendering == Rendering::smooth ? region.Outlines() : nullptr;
    if (outlines != nullptr && !outlines->empty()) {
        QPainterPath common;
        bool first = true;
        for (const Region::Outline& outline : *outlines) {
            QPolygonF polygon;
            for (const POINT& point : outline.points) polygon.append(At(point.x, point.y));
            QPainterPath path;
            path.setFillRule(outline.winding ? Qt::WindingFill : Qt::OddEvenFill);
            path.addPolygon(polygon);
            path.closeSubpath();
            common = first ? path : common.intersected(path);
            first = false;
        }
        m_painter.fillPath(common, brush);
    } else {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(brush);
        m_painter.setRenderHint(QPainter::Antialiasing, false);
        QVector<QRect> rects;
        for (const RECT& r : region.Rectangles()) {
            const QRect rect = QRect(r.left, r.top, r.right - r.left, r.bottom - r.top) & m_bounds;
            if (!rect.isEmpty()) rects.append(rect);
        }
        m_painter.drawRects(rects);
    }
    m_painter.restore();
    return 1;
}

int QtDevice::Text(const TextStyle& style, int x, int y, std::string_view text) {
    if (!m_painter.isActive()) return 0;
    Flush();
    m_hasStroke = false;
    const FittedFont& fitted = FontFor(style.font);
    const QString characters = FromGbk(text);
    ReportBoxes(style.font, characters);
    m_painter.save();
    m_painter.translate(x, y);
    m_painter.rotate(-style.font.lfEscapement / 10.0);
    m_painter.scale(fitted.stretch, 1.0);
    m_painter.setFont(fitted.font);
    if (style.opaque) {
        const double width = QFontMetricsF(fitted.font).horizontalAdvance(characters);
        m_painter.fillRect(QRectF(0.0, 0.0, width, fitted.height), ColorOf(style.background));
    }
    m_painter.setPen(ColorOf(style.color));
    m_painter.drawText(QPointF(0.0, fitted.ascent), characters);
    m_painter.restore();
    return 1;
}

}  // namespace zm::qt
