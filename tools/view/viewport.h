// Which part of the plane a picture shows: its middle, its scale, its turn.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QTransform>

namespace zm::view {

struct Viewport {
    double x = 0.0, y = 0.0;  // of the plane, in the middle
    double pixel = 1.0;       // ground metres of a device-independent pixel
    double rotation = 0.0;    // degrees, counter-clockwise, from the plane to the picture
    QSizeF size{1.0, 1.0};    // device-independent pixels

    QPointF ToPlane(QPointF place) const;
    QPointF ToScreen(QPointF plane) const;
    /// Makes everything factor times as large, and leaves what is at a place where it is.
    void ZoomAbout(QPointF place, double factor);
    void TurnAbout(QPointF place, double degrees);
    void Pan(QPointF by);
    /// Shows all of a box of the plane, with a margin around it. A point is moved to the middle.
    void Fit(const QRectF& box, double margin = 0.04);
    /// The same for what a rectangle of the picture shows.
    void ZoomTo(const QRectF& rectangle);
    /// From places of this picture to those of another.
    QTransform To(const Viewport& other) const;
    /// True where the picture of a viewport covers all of this one.
    bool IsCoveredBy(const Viewport& other) const;
    /// The same middle, so many times as large a picture.
    Viewport Larger(double times) const;

    bool operator==(const Viewport&) const = default;
};

/// Ground metres of a device-independent pixel at a scale, for a screen of so many pixels an inch, and back.
double PixelOfScale(double scale, double dpi);
double ScaleOfPixel(double pixel, double dpi);

/// Limits of zooming: ground metres of a pixel.
constexpr double kSmallestPixel = 1e-5, kLargestPixel = 1e5;

}  // namespace zm::view
