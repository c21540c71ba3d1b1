// Printing: draw makes a picture of the page, which a preview shows in its true size and brings to paper.
#include <QCoreApplication>
#include <QImageReader>
#include <QJsonArray>
#include <QPageLayout>
#include <QPaintEngine>
#include <QPointer>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTemporaryDir>
#include <QThreadPool>
#include <memory>

#include "tools/view/phrases.h"
#include "tools/view/sheet_print.h"
#include "tools/view/view_window.h"

namespace zm::view {
namespace {

constexpr double kMillimetres = 1000.0;
constexpr int kDrawnResolution = 300;  // pixels an inch, of drawings and recordings, whose paper is not known here
constexpr int kMostMegabytes = 400;    // of the picture of a sheet
constexpr double kFrameRoom = 80.0;    // millimetres that a frame with its margins adds, about

}  // namespace

void ViewWindow::Print(bool sheet) {
    if (m_about.isEmpty()) return;
    const Viewport& v = m_map->viewport();
    const double scale = m_map->symbolScale() > 0.0 ? m_map->symbolScale() : m_map->scale();
    const double room = sheet ? kFrameRoom : 0.0;
    const QSizeF paper = v.size * (v.pixel / scale * kMillimetres) + QSizeF(room, room);
    QImageReader::setAllocationLimit(kMostMegabytes);
    const auto folder = std::make_shared<QTemporaryDir>();
    const QString file = folder->filePath("sheet.png");
    const int dpi = m_about["drawn"].toBool() ? kDrawnResolution : PrintResolution(paper);
    RunDraw(sheet, {"--dpi=" + QString::number(dpi)}, file, [this, folder, file] {
        Doing(Say("reading"));
        // A picture of a sheet is large; the window goes on meanwhile.
        QThreadPool::globalInstance()->start([window = QPointer<ViewWindow>(this), folder, file] {
            QImageReader reader(file);
            const QImage picture = reader.read(), coarse = ForScreen(picture);
            QMetaObject::invokeMethod(QCoreApplication::instance(), [window, folder, picture, coarse] {
                if (window) window->ShowPrint(picture, coarse);
            });
        });
    });
}

void ViewWindow::ShowPrint(const QImage& picture, const QImage& coarse) {
    Doing(Say("ready"));
    if (picture.isNull()) return Note(Say("the picture of the sheet cannot be read"));
    const QSizeF paper = PaperSize(picture);
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(paper.width() > paper.height() ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setDocName(windowTitle());
    QPrintPreviewDialog preview(&printer, this);
    preview.setObjectName("preview");
    preview.setWindowTitle(Say("Print") +
                           QString(": %1 × %2 ").arg(paper.width(), 0, 'f', 1).arg(paper.height(), 0, 'f', 1) +
                           Say("mm of paper"));
    connect(&preview, &QPrintPreviewDialog::paintRequested, this, [&](QPrinter* to) {
        const bool shown = to->paintEngine()->type() == QPaintEngine::Picture;  // the preview keeps it to be played
        PrintSheet(shown ? coarse : picture, *to);
        Log({{"printed", PartsOfSheet(paper, to->pageRect(QPrinter::Millimeter).size()).size()},
             {"millimetres", QJsonArray{paper.width(), paper.height()}}});
    });
    preview.resize(size());
    preview.exec();
}

}  // namespace zm::view
