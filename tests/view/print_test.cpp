// Printing in true size: the preview of the window, its pages, and what comes out as a PDF file.
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProcess>
#include <cmath>

#include "tests/view/window_fixture.h"
#include "tools/view/sheet_print.h"

namespace {

using namespace zm::test;
using namespace zm::view;

class WindowPrint : public WindowTest {
 protected:
    /// Prints by an action to a PDF file, whatever the paper; how many pages the preview has.
    int Print(const char* action, const QString& file, QPageSize paper) {
        int pages = 0;
        EXPECT_TRUE(InDialog<QPrintPreviewDialog>(action, [&](QPrintPreviewDialog& dialog) {
            dialog.printer()->setOutputFormat(QPrinter::PdfFormat);
            dialog.printer()->setOutputFileName(file);
            dialog.printer()->setPageSize(paper);
            auto* preview = dialog.findChild<QPrintPreviewWidget*>();
            preview->updatePreview();
            pages = preview->pageCount();
            preview->print();
            dialog.reject();
        }));
        return pages;
    }
    static QString Run(const QString& program, const QStringList& arguments) {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(kPatience)) << program.toStdString();
        return QString::fromUtf8(process.readAllStandardOutput());
    }
    /// The first page as pixels, four for a millimetre.
    QImage Page(const QString& file) const {
        Run("pdftoppm", {"-png", "-r", "101.6", "-singlefile", file, Path("page")});
        return QImage(Path("page.png"));
    }
};

// The road is 100 m long: 200 mm of paper at 1:500.
TEST_F(WindowPrint, ALineOnThePaperHasItsTrueLength) {
    Open({}, {"--sheet=40499990,3400000,40500110,3400080"});
    const QString file = Path("print.pdf");
    const auto& view = map().viewport();
    ASSERT_LT(view.size.width() * view.pixel, 500.0);  // 1 m of paper
    EXPECT_EQ(Print("&Print the view...", file, QPageSize(QPageSize::A0)), 1);
    const QString info = Run("pdfinfo", {file});
    EXPECT_TRUE(info.contains("Pages:           1")) << info.toStdString();
    const QImage page = Page(file);
    const bool across = view.size.width() > view.size.height();
    EXPECT_NEAR(page.width(), (across ? 1189 : 841) * 4, 4);  // A0, turned as the sheet is
    int longest = 0;
    for (int y = 0; y < page.height(); ++y) {
        int first = -1, last = -1;
        for (int x = 0; x < page.width(); ++x)
            if (qGray(page.pixel(x, y)) < 235) {  // thin lines are grey
                if (first < 0) first = x;
                last = x;
            }
        if (first >= 0) longest = std::max(longest, last - first + 1);
    }
    EXPECT_NEAR(longest / 4.0, 200.0, 1.0) << ReadFile(zenro / "log");
}

TEST_F(WindowPrint, ASheetWithItsFrameThatIsTooLargeIsPrintedInParts) {
    Open({}, {"--sheet=40499990,3400000,40500110,3400080"});
    const QString file = Path("sheet.pdf");
    const int pages = Print("Print as a sheet with &frame...", file, QPageSize(QPageSize::A4));
    EXPECT_GT(pages, 1);
    EXPECT_TRUE(Run("pdfinfo", {file}).contains("Pages:           " + QString::number(pages)));
    EXPECT_TRUE(Run("pdfinfo", {file}).contains("(A4)")) << Run("pdfinfo", {file}).toStdString();
}

TEST(SheetPrint, OnTheScreenALineOfOneDotIsWholeAndThePaperAsLarge) {
    QImage sheet(3000, 2000, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    sheet.setDotsPerMeterX(23622);  // 600 dots an inch
    sheet.setDotsPerMeterY(23622);
    for (int x = 0; x < sheet.width(); ++x) sheet.setPixel(x, 1001, qRgb(0, 0, 0));
    const QImage seen = ForScreen(sheet);
    EXPECT_EQ(seen.size(), QSize(750, 500));
    EXPECT_NEAR(PaperSize(seen).width(), PaperSize(sheet).width(), 0.05);
    for (int x = 0; x < seen.width(); ++x) ASSERT_LT(qGray(seen.pixel(x, 250)), 210) << x;
    EXPECT_EQ(ForScreen(seen).size(), seen.size());
}

TEST(SheetPrint, PartsCoverTheSheetOnceAndKeepItsSize) {
    const QSizeF sheet(500, 300), page(190, 277);
    const QList<QRectF> parts = PartsOfSheet(sheet, page);
    ASSERT_EQ(parts.size(), 6);
    double area = 0.0;
    for (const QRectF& part : parts) {
        area += part.width() * part.height();
        EXPECT_LE(part.width(), page.width());
        EXPECT_LE(part.height(), page.height());
    }
    EXPECT_NEAR(area, 500.0 * 300.0, 1e-6);
    EXPECT_EQ(parts.back(), QRectF(380, 277, 120, 23));
}

TEST(SheetPrint, WhatFitsIsOnePageAndNoSizeIsNone) {
    EXPECT_EQ(PartsOfSheet({190, 277}, {190, 277}).size(), 1);
    EXPECT_EQ(PartsOfSheet({190.005, 277}, {190, 277}).size(), 1);  // rounding of the page
    EXPECT_TRUE(PartsOfSheet({0, 10}, {190, 277}).isEmpty());
    EXPECT_TRUE(PartsOfSheet({1e9, 1e9}, {190, 277}).isEmpty());
}

TEST(SheetPrint, TheResolutionIsThatOfPrintersAsLongAsMemoryBearsIt) {
    EXPECT_EQ(PrintResolution({180, 270}), 600);
    const int large = PrintResolution({900, 600});
    EXPECT_GE(large, 200);
    EXPECT_LE(900 / 25.4 * large * 600 / 25.4 * large, 64.5e6);
    EXPECT_EQ(PrintResolution({1e6, 1e6}), 72);
}

}  // namespace
