#include "tools/view/map_view.h"

#include <QJsonObject>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "tools/view/worker_link.h"

namespace zm::view {
namespace {

constexpr double kLarger = 1.4;         // times the window's sides: a small pan needs no drawing
constexpr int kRest = 200;              // milliseconds until labels are drawn
constexpr int kPause = 600;             // milliseconds until a view counts as one that was looked at
constexpr double kWheelStep = 1.25;     // of a notch of 120
constexpr double kLeastPinch = 0.2;     // of one event
constexpr double kKeyStep = 0.15;       // of the window's sides, of an arrow key
constexpr double kTurnStep = 15.0;      // degrees of a key
constexpr int kDragFrom = 4;            // pixels until a click is a drag
constexpr double kReach = 6.0;          // pixels around a click
constexpr std::size_t kMostPast = 100;  // views
const QColor kMark(220, 30, 60);

QPen MarkPen(double width) {
    QPen pen(kMark, width);
    pen.setCosmetic(true);
    return pen;
}

// 1, 2 or 5 times a power of ten, not above a length.
double RoundBelow(double length) {
    const double power = std::pow(10.0, std::floor(std::log10(length)));
    return length >= 5.0 * power ? 5.0 * power : length >= 2.0 * power ? 2.0 * power : power;
}

}  // namespace

MapView::MapView(QWidget* owner) : QWidget(owner) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(160, 120);
    setObjectName("map");
    m_rest.setSingleShot(true);
    m_rest.setInterval(kRest);
    connect(&m_rest, &QTimer::timeout, this, [this] { Request(1); });
    m_pause.setSingleShot(true);
    m_pause.setInterval(kPause);
    connect(&m_pause, &QTimer::timeout, this, &MapView::Remember);
}

void MapView::SetLink(WorkerLink* link) {
    if (m_shown) m_shown->image = m_shown->image.copy();
    m_overview.reset();
    m_link = link;
    m_drawn = false;
    m_rest.stop();
    if (link != nullptr && m_placed) Request(-1);
}

double MapView::scale() const {
    return ScaleOfPixel(m_view.pixel, logicalDpiX());
}

void MapView::SetScale(double scale) {
    m_view.pixel = std::clamp(PixelOfScale(scale, logicalDpiX()), kSmallestPixel, kLargestPixel);
    Moved();
}

void MapView::SetSymbolScale(double scale) {
    m_symbolScale = scale;
    if (m_placed) Redraw();
}

void MapView::Show(const Viewport& viewport) {
    m_view = viewport;
    m_view.size = size();
    m_placed = true;
    Moved();
}

void MapView::Fit(const QRectF& box) {
    m_placed = true;
    m_view.size = size();
    m_view.Fit(box);
    Moved();
}

void MapView::Turn(double degrees) {
    m_view.TurnAbout(QPointF(width() / 2.0, height() / 2.0), degrees);
    Moved();
}

void MapView::ZoomBy(double factor) {
    m_view.ZoomAbout(QPointF(width() / 2.0, height() / 2.0), factor);
    Moved();
}

void MapView::Remember() {
    if (m_now < m_past.size() && m_past[m_now] == m_view) return;
    if (!m_past.empty()) m_past.resize(m_now + 1);
    m_past.push_back(m_view);
    if (m_past.size() > kMostPast) m_past.erase(m_past.begin());
    m_now = m_past.size() - 1;
}

void MapView::Back() {
    Remember();
    if (m_now == 0) return;
    const Viewport wanted = m_past[--m_now];
    Show(wanted);
    m_pause.stop();
}

void MapView::Forward() {
    if (m_now + 1 >= m_past.size()) return;
    const Viewport wanted = m_past[++m_now];
    Show(wanted);
    m_pause.stop();
}

void MapView::Moved() {
    m_pause.start();
    update();
    emit ViewChanged();
    if (m_shown && m_drawn && m_shown->view.pixel == m_view.pixel && m_shown->view.rotation == m_view.rotation &&
        m_view.IsCoveredBy(m_shown->view))
        return;  // the picture has it
    Request(-1);
}

void MapView::Redraw() {
    m_overview.reset();
    Request(-1);
}

void MapView::Request(int labels) {
    m_rest.stop();
    if (m_link == nullptr || !m_placed || width() < 2 || height() < 2) return;
    const double ratio = m_ratio = devicePixelRatioF();
    double larger = kLarger;
    const double most = static_cast<double>(tool::kMostPixels) * 0.9;
    larger = std::min(larger, std::sqrt(most / (width() * ratio * height() * ratio)));
    m_asked = m_view.Larger(larger);
    // Whole device pixels, so that the picture lies on those of the screen.
    m_askedPixels = QSize(2 * static_cast<int>(m_asked.size.width() * ratio / 2) + (qRound(width() * ratio) & 1),
                          2 * static_cast<int>(m_asked.size.height() * ratio / 2) + (qRound(height() * ratio) & 1));
    m_asked.size = QSizeF(m_askedPixels) / ratio;
    ++m_number;
    m_drawn = false;
    m_link->WantNumber(m_number);
    m_link->Send({{"do", "draw"},
                  {"number", static_cast<qint64>(m_number)},
                  {"slot", 1 - m_front},
                  {"width", m_askedPixels.width()},
                  {"height", m_askedPixels.height()},
                  {"x", m_asked.x},
                  {"y", m_asked.y},
                  {"pixel", m_asked.pixel / ratio},
                  {"rotation", m_asked.rotation},
                  {"scale", m_symbolScale > 0.0 ? m_symbolScale : scale()},
                  {"labels", labels}});
    emit PictureChanged(false);
}

void MapView::TakePainted(const QJsonObject& message) {
    if (message.contains("error")) emit Failed(message["error"].toString());
    if (static_cast<quint32>(message["number"].toDouble()) != m_number || !message["whole"].toBool()) return;
    m_front = message["slot"].toInt();
    m_shown = Picture{m_asked, m_link->Picture(m_front, m_askedPixels)};
    if (!m_overview && message["labels"].toBool()) m_overview = Picture{m_asked, m_shown->image.copy()};
    m_drawn = message["labels"].toBool();
    if (!m_drawn) m_rest.start();
    update();
    emit PictureChanged(m_drawn);
}

QImage MapView::Seen() const {
    return const_cast<MapView*>(this)->grab().toImage();
}

// ---- the look ----

void MapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_placed && m_ratio != devicePixelRatioF()) QTimer::singleShot(0, this, &MapView::Redraw);  // another screen
    painter.fillRect(rect(), Qt::white);  // paper, whatever the colours of the frame
    for (const auto* picture : {&m_overview, &m_shown}) {
        if (!*picture) continue;
        const Viewport& view = (*picture)->view;
        const bool same = view.pixel == m_view.pixel && view.rotation == m_view.rotation;
        if (picture == &m_overview && m_shown && m_view.IsCoveredBy(m_shown->view)) continue;
        painter.save();
        if (picture == &m_shown && m_overview) {
            QPainterPath path;  // what is below must not look through the paper of what is above
            path.addPolygon(view.To(m_view).map(QPolygonF(QRectF(QPointF(0, 0), view.size))));
            painter.fillPath(path, Qt::white);
        }
        const double ratio = (*picture)->image.width() / view.size.width();
        QTransform transform = view.To(m_view);
        if (same)  // to whole device pixels
            transform = QTransform::fromTranslate(std::round(transform.dx() * ratio) / ratio,
                                                  std::round(transform.dy() * ratio) / ratio);
        painter.setTransform(transform, true);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, !same);
        painter.drawImage(QRectF(QPointF(0, 0), view.size), (*picture)->image);
        painter.restore();
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(MarkPen(2.5));
    for (const QPolygonF& outline : m_highlight) {
        QPolygonF seen;
        for (const QPointF& p : outline) seen << m_view.ToScreen(p);
        if (seen.size() == 1)
            painter.drawEllipse(seen.front(), 9, 9);
        else
            painter.drawPolyline(seen);
    }
    PaintMeasured(painter);
    PaintBar(painter);
    if (m_band && m_pressed) {
        painter.setPen(MarkPen(1.0));
        painter.setBrush(QColor(220, 30, 60, 30));
        painter.drawRect(QRectF(*m_pressed, *m_band));
    }
    if (m_readout.isEmpty()) return;
    constexpr int kLook = static_cast<int>(Qt::AlignLeft) | static_cast<int>(Qt::TextWordWrap);
    const QRect text = fontMetrics().boundingRect(QRect(0, 0, width() - 40, height()), kLook, m_readout);
    const QRect box = text.translated(12, 12).adjusted(-6, -4, 6, 4);
    painter.setPen(QColor(120, 120, 120));
    painter.setBrush(QColor(255, 255, 245, 235));
    painter.drawRoundedRect(box, 3, 3);
    painter.setPen(Qt::black);
    painter.drawText(box.adjusted(6, 4, -6, -4), kLook, m_readout);
}

void MapView::PaintMeasured(QPainter& painter) const {
    if (m_measured.isEmpty()) return;
    QPolygonF seen;
    for (const QPointF& p : m_measured) seen << m_view.ToScreen(p);
    painter.setPen(MarkPen(2.0));
    painter.setBrush(m_tool == Tool::area ? QColor(220, 30, 60, 40) : QColor(Qt::transparent));
    if (m_tool == Tool::area)
        painter.drawPolygon(seen);
    else
        painter.drawPolyline(seen);
    painter.setBrush(Qt::white);
    for (const QPointF& p : seen) painter.drawEllipse(p, 3, 3);
}

// The length of a round number of metres.
void MapView::PaintBar(QPainter& painter) const {
    if (!m_placed) return;
    const double metres = RoundBelow(m_view.pixel * std::min(140, width() / 4));
    const double length = metres / m_view.pixel;
    const QPointF at(14, height() - 14);
    const QString text = metres >= 1000.0 ? QString::number(metres / 1000.0) + " km" : QString::number(metres) + " m";
    const QRectF ground(at.x() - 6, at.y() - 22, length + 12, 28);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 210));
    painter.drawRect(ground);
    painter.setPen(QPen(Qt::black, 1.5));
    painter.drawPolyline(QPolygonF{at + QPointF(0, -5), at, at + QPointF(length, 0), at + QPointF(length, -5)});
    painter.drawText(QRectF(at.x() - 20, at.y() - 21, length + 40, 16), Qt::AlignHCenter | Qt::AlignTop, text);
}

// ---- the hand ----

void MapView::resizeEvent(QResizeEvent*) {
    m_view.size = size();
    if (m_placed) Moved();
}

bool MapView::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto& gesture = *static_cast<QNativeGestureEvent*>(event);
        if (gesture.gestureType() == Qt::ZoomNativeGesture) {
            m_view.ZoomAbout(gesture.position(), std::max(kLeastPinch, 1.0 + gesture.value()));
            Moved();
            return true;
        }
    }
    return QWidget::event(event);
}

void MapView::wheelEvent(QWheelEvent* event) {
    event->accept();
    // Two fingers on a touchpad move the map, with Ctrl they zoom; a wheel zooms by as much as it turns.
    const bool fingers = !event->pixelDelta().isNull() && event->phase() != Qt::NoScrollPhase;
    if (fingers && (event->modifiers() & Qt::ControlModifier) == 0) {
        m_view.Pan(event->pixelDelta());
    } else {
        const int turned = event->angleDelta().y();
        if (turned == 0) return;
        m_view.ZoomAbout(event->position(), std::pow(kWheelStep, turned / 120.0));
    }
    Moved();
    m_cursor = m_view.ToPlane(event->position());
    emit CursorMoved(*m_cursor);
}

void MapView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton) return;
    m_pressed = m_last = event->position();
    m_dragged = false;
    const bool band =
        event->button() == Qt::LeftButton && (m_tool == Tool::zoom || (event->modifiers() & Qt::ShiftModifier) != 0);
    m_band = band ? std::optional<QPointF>(event->position()) : std::nullopt;
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    if (m_pressed) {
        m_dragged = m_dragged || (at - *m_pressed).manhattanLength() > kDragFrom;
        if (m_band) {
            m_band = at;
            update();
        } else if (m_dragged) {
            setCursor(Qt::ClosedHandCursor);
            m_view.Pan(at - m_last);
            m_last = at;
            Moved();
        }
    }
    m_cursor = m_view.ToPlane(at);
    emit CursorMoved(*m_cursor);
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_pressed) return;
    const QPointF from = *m_pressed, at = event->position();
    const bool band = m_band.has_value();
    m_pressed.reset();
    m_band.reset();
    ShowCursor();
    update();
    if (band && m_dragged) {
        m_view.ZoomTo(QRectF(from, at).normalized());
        return Moved();
    }
    if (!m_dragged && event->button() == Qt::LeftButton) Click(at);
}

void MapView::Click(QPointF at) {
    const QPointF plane = m_view.ToPlane(at);
    if (m_tool == Tool::zoom) {
        m_view.ZoomAbout(at, 2.0);
        return Moved();
    }
    if (m_tool == Tool::look) return emit Clicked(plane, kReach * m_view.pixel);
    m_measured << plane;
    update();
    emit Measured(true);
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton && !m_whole.isNull()) Fit(m_whole);
}

void MapView::leaveEvent(QEvent*) {
    if (m_cursor) emit CursorMoved(*m_cursor);
}

void MapView::keyPressEvent(QKeyEvent* event) {
    const double w = width() * kKeyStep, h = height() * kKeyStep;
    switch (event->key()) {
        case Qt::Key_Left:
            m_view.Pan(QPointF(w, 0));
            return Moved();
        case Qt::Key_Right:
            m_view.Pan(QPointF(-w, 0));
            return Moved();
        case Qt::Key_Up:
            m_view.Pan(QPointF(0, h));
            return Moved();
        case Qt::Key_Down:
            m_view.Pan(QPointF(0, -h));
            return Moved();
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            return ZoomBy(kWheelStep);
        case Qt::Key_Minus:
            return ZoomBy(1.0 / kWheelStep);
        case Qt::Key_R:
            return Turn((event->modifiers() & Qt::ShiftModifier) != 0 ? -kTurnStep : kTurnStep);
        case Qt::Key_Backspace:
            if (!m_measured.isEmpty()) {
                m_measured.removeLast();
                update();
                emit Measured(false);
            }
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return Click(QPointF(width() / 2.0, height() / 2.0));
        case Qt::Key_Escape:
            m_band.reset();
            ClearMeasured();
            SetHighlight({});
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void MapView::ShowCursor() {
    setCursor(m_tool == Tool::look ? Qt::ArrowCursor : Qt::CrossCursor);
}

void MapView::SetTool(Tool tool) {
    m_tool = tool;
    ClearMeasured();
    ShowCursor();
}

void MapView::ClearMeasured() {
    m_measured.clear();
    SetReadout({});
}

void MapView::SnapLast(QPointF plane) {
    if (m_measured.isEmpty()) return;
    m_measured.last() = plane;
    update();
}

void MapView::SetHighlight(std::vector<QPolygonF> outline) {
    m_highlight = std::move(outline);
    update();
}

void MapView::SetReadout(const QString& text) {
    m_readout = text;
    update();
}

}  // namespace zm::view
