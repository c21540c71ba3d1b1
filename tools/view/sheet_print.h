// A picture of a sheet on paper, in its true size: on one page where it fits, else on as many as it needs.
#pragma once

#include <QImage>
#include <QList>
#include <QRectF>
#include <QSizeF>

class QPrinter;

namespace zm::view {

/// The parts of a sheet that pages show, row by row, millimetres from its upper left corner. All sizes in millimetres;
/// no part where a size is not above 0.
QList<QRectF> PartsOfSheet(QSizeF sheet, QSizeF page);

/// Pixels an inch for the picture of a sheet in millimetres: as fine as printers are, and no larger than memory bears.
int PrintResolution(QSizeF sheet);

/// The size of a picture by its own pixels a metre, millimetres.
QSizeF PaperSize(const QImage& picture);

/// The picture as coarse as a screen shows it, of the same size on paper: fine lines stay whole where it is made small.
QImage ForScreen(const QImage& picture);
/// Prints a picture of a sheet: what fits on a page in its middle, what does not part by part.
void PrintSheet(const QImage& picture, QPrinter& printer);

}  // namespace zm::view
