#include "tools/view/sheet_print.h"

#include <QPainter>
#include <QPrinter>
#include <algorithm>
#include <cmath>

namespace zm::view {
namespace {

constexpr double kInch = 25.4, kMetre = 1000.0;  // millimetres
constexpr double kFinest = 600.0, kCoarsest = 72.0;
constexpr double kScreen = 150.0;  // dots an inch of what a preview shows
constexpr double kMostPixels = 64e6;
constexpr double kHair = 0.01;  // millimetres that a sheet may be larger than the page
constexpr int kMostParts = 1000;

}  // namespace

QList<QRectF> PartsOfSheet(QSizeF sheet, QSizeF page) {
    QList<QRectF> parts;
    if (sheet.isEmpty() || page.isEmpty()) return parts;
    const auto count = [](double length, double room) { return std::max(1.0, std::ceil((length - kHair) / room)); };
    const double columns = count(sheet.width(), page.width()), rows = count(sheet.height(), page.height());
    if (columns * rows > kMostParts) return parts;
    for (int row = 0; row < static_cast<int>(rows); ++row)
        for (int column = 0; column < static_cast<int>(columns); ++column)
            parts << QRectF(column * page.width(), row * page.height(), page.width(), page.height())
                         .intersected(QRectF(QPointF(0, 0), sheet));
    return parts;
}

int PrintResolution(QSizeF sheet) {
    const double inches = sheet.width() / kInch * (sheet.height() / kInch);
    return static_cast<int>(std::clamp(std::sqrt(kMostPixels / std::max(inches, 1e-6)), kCoarsest, kFinest));
}

QSizeF PaperSize(const QImage& picture) {
    return {picture.width() * kMetre / picture.dotsPerMeterX(), picture.height() * kMetre / picture.dotsPerMeterY()};
}

QImage ForScreen(const QImage& picture) {
    const double times = kScreen / (picture.dotsPerMeterX() * kInch / kMetre);
    if (picture.isNull() || times >= 1.0) return picture;
    QImage coarse =
        picture.scaled((QSizeF(picture.size()) * times).toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    coarse.setDotsPerMeterX(
        static_cast<int>(std::lround(picture.dotsPerMeterX() * double(coarse.width()) / picture.width())));
    coarse.setDotsPerMeterY(
        static_cast<int>(std::lround(picture.dotsPerMeterY() * double(coarse.height()) / picture.height())));
    return coarse;
}

void PrintSheet(const QImage& picture, QPrinter& printer) {
    const QSizeF sheet = PaperSize(picture), page = printer.pageRect(QPrinter::Millimeter).size();
    const QList<QRectF> parts = PartsOfSheet(sheet, page);
    QPainter painter(&printer);
    if (!painter.isActive()) return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::LosslessImageRendering);
    const double dots = painter.device()->logicalDpiX() / kInch;
    const double across = picture.width() / sheet.width(), down = picture.height() / sheet.height();
    for (const QRectF& part : parts) {
        if (part != parts.front()) printer.newPage();
        // Alone on its page it is in the middle; parts begin at the corner, where they are joined.
        const QPointF at = parts.size() > 1 ? QPointF(0, 0)
                                            : QPointF(std::max(0.0, (page.width() - part.width()) / 2),
                                                      std::max(0.0, (page.height() - part.height()) / 2));
        painter.drawImage(QRectF(at * dots, part.size() * dots), picture,
                          QRectF(part.x() * across, part.y() * down, part.width() * across, part.height() * down));
    }
}

}  // namespace zm::view
