#include "tools/view/symbol_pane.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>

#include "tools/view/phrases.h"

namespace zm::view {
namespace {

constexpr int kRulerWidth = 18, kNameReach = 14;  // pixels
constexpr double kStep = 1.25, kLeast = 1.0, kMost = 400.0, kTickRoom = 5.0, kNumberRoom = 34.0;
constexpr double kShortest = 0.005;  // millimetres that are a distance

// The step between ticks that are this far apart at least: 1, 2 or 5 by a power of ten.
double TickStep(double perMillimetre, double room) {
    const double least = room / perMillimetre, power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= least) return factor * power;
    return 10.0 * power;
}

}  // namespace

SymbolPane::SymbolPane(const QString& sample, const QString& caption, QWidget* owner)
    : QWidget(owner), m_sample(sample), m_caption(caption) {
    setObjectName(sample);
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
    setCursor(Qt::CrossCursor);
    setToolTip(Say("Drag measures, the wheel zooms, the middle button moves, a double click shows all."));
}

void SymbolPane::SetCaption(const QString& caption) {
    m_caption = caption;
    update();
}

void SymbolPane::Clear() {
    m_picture = QImage();
    m_ruler.reset();
    m_fits = true;
    m_empty = m_whole = false;
    update();
}

QRect SymbolPane::Paper() const {
    return rect().adjusted(kRulerWidth, kRulerWidth, 0, 0);
}

QSize SymbolPane::pixels() const {
    return (QSizeF(Paper().size()) * devicePixelRatioF()).toSize().expandedTo({1, 1});
}

void SymbolPane::Take(const QImage& picture, QPointF middle, double perMillimetre) {
    m_empty = picture.isNull();
    m_whole = true;
    m_picture = picture;
    m_pictureMiddle = middle;
    m_picturePerMillimetre = perMillimetre;
    if (m_fits && !m_empty) {
        m_middle = middle;
        m_perMillimetre = perMillimetre;
    }
    update();
}

QPointF SymbolPane::ToPaper(QPointF at) const {
    const QPointF from = at - QRectF(Paper()).center();
    return {m_middle.x() + from.x() / m_perMillimetre, m_middle.y() - from.y() / m_perMillimetre};
}

QPointF SymbolPane::ToScreen(QPointF paper) const {
    const QPointF from = (paper - m_middle) * m_perMillimetre;
    return QRectF(Paper()).center() + QPointF(from.x(), -from.y());
}

std::optional<double> SymbolPane::measured() const {
    if (!m_ruler) return std::nullopt;
    return std::hypot(m_ruler->second.x() - m_ruler->first.x(), m_ruler->second.y() - m_ruler->first.y());
}

// ---- hand ----

void SymbolPane::ZoomAbout(QPointF at, double factor) {
    const QPointF fixed = ToPaper(at);
    m_perMillimetre = std::clamp(m_perMillimetre * factor, kLeast, kMost);
    m_middle += fixed - ToPaper(at);
    m_fits = false;
    update();
    emit Moved();
}

void SymbolPane::FitAgain() {
    m_fits = true;
    emit Moved();
}

void SymbolPane::wheelEvent(QWheelEvent* event) {
    if (event->angleDelta().y() != 0) ZoomAbout(event->position(), std::pow(kStep, event->angleDelta().y() / 120.0));
    event->accept();
}

void SymbolPane::mousePressEvent(QMouseEvent* event) {
    m_grabbed = event->position();
    if (event->button() != Qt::LeftButton) return;
    m_ruler = {ToPaper(event->position()), ToPaper(event->position())};
    update();
}

void SymbolPane::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) != 0 && m_ruler) {
        m_ruler->second = ToPaper(event->position());
        update();
    } else if ((event->buttons() & (Qt::MiddleButton | Qt::RightButton)) != 0) {
        m_middle += ToPaper(m_grabbed) - ToPaper(event->position());
        m_grabbed = event->position();
        m_fits = false;
        update();
        emit Moved();
    }
}

void SymbolPane::mouseDoubleClickEvent(QMouseEvent*) {
    m_ruler.reset();
    FitAgain();
}

void SymbolPane::keyPressEvent(QKeyEvent* event) {
    const QPointF middle = QRectF(Paper()).center();
    if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal) return ZoomAbout(middle, kStep);
    if (event->key() == Qt::Key_Minus) return ZoomAbout(middle, 1.0 / kStep);
    if (event->key() == Qt::Key_F || event->key() == Qt::Key_Home) return FitAgain();
    if (event->key() == Qt::Key_Escape && m_ruler) {
        m_ruler.reset();
        return update();
    }
    QWidget::keyPressEvent(event);
}

void SymbolPane::resizeEvent(QResizeEvent*) {
    emit Moved();
}

// ---- picture ----

void SymbolPane::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    painter.fillRect(Paper(), Qt::white);  // paper, whatever the colours of the desktop
    painter.setClipRect(Paper());
    if (!m_picture.isNull()) {
        const double times = m_perMillimetre / m_picturePerMillimetre / devicePixelRatioF();
        const QSizeF size = QSizeF(m_picture.size()) * times;
        QRectF at(QPointF(), size);
        at.moveCenter(ToScreen(m_pictureMiddle));
        painter.setRenderHint(QPainter::SmoothPixmapTransform, std::fabs(times * devicePixelRatioF() - 1.0) > 1e-9);
        painter.drawImage(at, m_picture);
    }
    painter.setPen(QColor(110, 110, 110));
    painter.drawText(Paper().adjusted(6, 4, -6, -4), Qt::AlignLeft | Qt::AlignBottom,
                     m_empty ? m_caption + ": " + Say("draws nothing") : m_caption);
    DrawMeasured(painter);
    painter.setClipping(false);
    DrawRulers(painter);
}

void SymbolPane::DrawRulers(QPainter& painter) const {
    const QRect paper = Paper();
    const double tick = TickStep(m_perMillimetre, kTickRoom), number = TickStep(m_perMillimetre, kNumberRoom);
    QFont font = painter.font();
    font.setPixelSize(9);
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::WindowText));
    const auto mark = [&](double value, bool across) {
        const QPointF at = ToScreen(across ? QPointF(value, 0) : QPointF(0, value));
        const bool named = std::fabs(std::remainder(value, number)) < tick / 4.0;
        const int length = named ? 7 : 3;
        const QString text = named ? QString::number(std::fabs(value) < tick / 4.0 ? 0.0 : value, 'g', 4) : QString();
        if (across) {
            if (at.x() < kRulerWidth + kNameReach && named) return;  // beside "mm"
            painter.drawLine(QPointF(at.x(), kRulerWidth - length), QPointF(at.x(), kRulerWidth - 1));
            painter.drawText(QRectF(at.x() - 20, 0, 40, 10), Qt::AlignCenter, text);
        } else {
            painter.drawLine(QPointF(kRulerWidth - length, at.y()), QPointF(kRulerWidth - 1, at.y()));
            painter.save();
            painter.translate(5, at.y());
            painter.rotate(-90);
            painter.drawText(QRectF(-20, -5, 40, 10), Qt::AlignCenter, text);
            painter.restore();
        }
    };
    const QPointF low = ToPaper(paper.bottomLeft()), high = ToPaper(paper.topRight());
    for (double v = std::ceil(low.x() / tick) * tick; v <= high.x(); v += tick) mark(v, true);
    for (double v = std::ceil(low.y() / tick) * tick; v <= high.y(); v += tick) mark(v, false);
    painter.drawText(QRect(0, 0, kRulerWidth, kRulerWidth), Qt::AlignCenter, "mm");
}

void SymbolPane::DrawMeasured(QPainter& painter) const {
    const auto length = measured();
    if (!length || *length < kShortest) return;
    const QPointF a = ToScreen(m_ruler->first), b = ToScreen(m_ruler->second);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(200, 0, 0), 1.5));
    painter.drawLine(a, b);
    for (const QPointF& end : {a, b}) painter.drawEllipse(end, 3, 3);
    const QString text = QString::number(*length, 'f', 2) + " mm";
    const QSize size = painter.fontMetrics().size(0, text) + QSize(8, 4);
    QRectF box((a + b) / 2.0 + QPointF(8, 8), size);
    box.moveRight(std::min(box.right(), double(width()) - 2.0));
    box.moveBottom(std::min(box.bottom(), double(height()) - 2.0));
    painter.fillRect(box, QColor(255, 255, 255, 220));
    painter.drawText(box, Qt::AlignCenter, text);
}

}  // namespace zm::view
