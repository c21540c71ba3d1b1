#include "tools/view/viewport.h"

#include "tools/kit/angles.h"

#include <QPolygonF>
#include <algorithm>
#include <cmath>

namespace zm::view {
namespace {

constexpr double kMetresPerInch = 0.0254;

QPointF Turned(QPointF p, double degrees) {
    const double s = std::sin(degrees * tool::kDegree), c = std::cos(degrees * tool::kDegree);
    return {p.x() * c - p.y() * s, p.x() * s + p.y() * c};
}

}  // namespace

QPointF Viewport::ToPlane(QPointF place) const {
    const QPointF drawn((place.x() - size.width() / 2) * pixel, (size.height() / 2 - place.y()) * pixel);
    return QPointF(x, y) + Turned(drawn, -rotation);
}

QPointF Viewport::ToScreen(QPointF plane) const {
    const QPointF drawn = Turned(plane - QPointF(x, y), rotation) / pixel;
    return {size.width() / 2 + drawn.x(), size.height() / 2 - drawn.y()};
}

void Viewport::ZoomAbout(QPointF place, double factor) {
    const QPointF fixed = ToPlane(place);
    pixel = std::clamp(pixel / factor, kSmallestPixel, kLargestPixel);
    const QPointF moved = fixed - ToPlane(place);
    x += moved.x();
    y += moved.y();
}

void Viewport::TurnAbout(QPointF place, double degrees) {
    const QPointF fixed = ToPlane(place);
    rotation = std::remainder(rotation + degrees, 360.0);
    const QPointF moved = fixed - ToPlane(place);
    x += moved.x();
    y += moved.y();
}

void Viewport::Pan(QPointF by) {
    const QPointF moved = ToPlane(QPointF(0, 0)) - ToPlane(by);
    x += moved.x();
    y += moved.y();
}

void Viewport::Fit(const QRectF& box, double margin) {
    x = box.center().x();
    y = box.center().y();
    QRectF drawn;
    for (const QPointF corner : {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()}) {
        const QPointF p = Turned(corner - QPointF(x, y), rotation);
        drawn = drawn.united(QRectF(-std::fabs(p.x()), -std::fabs(p.y()), 2 * std::fabs(p.x()), 2 * std::fabs(p.y())));
    }
    const double wanted = std::max(drawn.width() / size.width(), drawn.height() / size.height()) * (1.0 + 2 * margin);
    if (wanted > 0.0) pixel = std::clamp(wanted, kSmallestPixel, kLargestPixel);
}

void Viewport::ZoomTo(const QRectF& rectangle) {
    if (rectangle.width() < 1.0 || rectangle.height() < 1.0) return;
    const QPointF middle = ToPlane(rectangle.center());
    x = middle.x();
    y = middle.y();
    const double times = std::max(rectangle.width() / size.width(), rectangle.height() / size.height());
    pixel = std::clamp(pixel * times, kSmallestPixel, kLargestPixel);
}

QTransform Viewport::To(const Viewport& other) const {
    const auto at = [&](double px, double py) { return other.ToScreen(ToPlane(QPointF(px, py))); };
    const QPointF origin = at(0, 0), right = at(1000, 0), down = at(0, 1000);
    return {(right.x() - origin.x()) / 1000,
            (right.y() - origin.y()) / 1000,
            (down.x() - origin.x()) / 1000,
            (down.y() - origin.y()) / 1000,
            origin.x(),
            origin.y()};
}

bool Viewport::IsCoveredBy(const Viewport& other) const {
    const QRectF all = QRectF(QPointF(0, 0), other.size).adjusted(-0.5, -0.5, 0.5, 0.5);
    const QPolygonF corners = To(other).map(QPolygonF(QRectF(QPointF(0, 0), size)));
    return std::all_of(corners.begin(), corners.end(), [&](QPointF p) { return all.contains(p); });
}

Viewport Viewport::Larger(double times) const {
    Viewport larger = *this;
    larger.size *= times;
    return larger;
}

double PixelOfScale(double scale, double dpi) {
    return scale * kMetresPerInch / dpi;
}

double ScaleOfPixel(double pixel, double dpi) {
    return pixel * dpi / kMetresPerInch;
}

}  // namespace zm::view
