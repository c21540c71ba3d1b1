// draw_sheet: draws the sheet to SVG, turned SVG, monochrome SVG, DWG and recording in a directory, with Qt also to PNG
// and PDF, to be looked at side by side.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "draw/device.h"
#include "runtime/profile/project.h"
#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"
#include "tests/draw/sheet.h"
#include "tests/support/scratch.h"
#include "tools/make_template/template_drawing.h"
#include "zenromath/config.h"
#include "zenromath/dwg.h"
#include "zenromath/runtime.h"
#include "zenromath/svg.h"

#if defined(ZM_HAVE_QT)
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>

#include "zenromath/qt.h"
#endif

namespace fs = std::filesystem;

namespace {

constexpr double kPixelsPerMetre = 5.0;
constexpr int kWidth = static_cast<int>(zm::test::kSheetWidth * kPixelsPerMetre);
constexpr int kHeight = static_cast<int>(zm::test::kSheetHeight * kPixelsPerMetre);

std::string PathText(const fs::path& path) {
    std::string text = zm::gbk::FromUtf8(fs::absolute(path).string());
    for (char& c : text)
        if (c == '/') c = '\\';
    return text;
}

// Draws with a context of a type.
void Draw(int type, int flip, HDC dc, const fs::path& recording) {
    SelectWorkingTqDC(nullptr);
    CTqDraw context(type);
    ReadCengCi();
    context.SetViewDrawDC(dc, kPixelsPerMetre, 0.0, 0.0, kWidth, kHeight, flip);
    zm::test::DrawSheet(context);
    if (!recording.empty()) {
        std::ofstream out(recording, std::ios::binary);
        for (int i = 0; i < context.GetTqDCString()->GetSize(); ++i)
            out << context.GetTqDCString()->GetAt(i).GetString() << "\n";
    }
    SelectWorkingTqDC(nullptr);
}

#if defined(ZM_HAVE_QT)
void DrawQt(const fs::path& directory) {
    zm::qt::EnsureApplication();
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    zm::qt::QtDevice onImage(&image);
    zm::device::SetBkMode(&onImage, TRANSPARENT);
    Draw(0, 0, &onImage, {});
    onImage.Finish();
    image.save(QString::fromStdString((directory / "sheet.png").string()));

    QPdfWriter writer(QString::fromStdString((directory / "sheet.pdf").string()));
    writer.setPageSize(QPageSize(QSizeF(zm::test::kSheetWidth, zm::test::kSheetHeight), QPageSize::Millimeter));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setResolution(static_cast<int>(kPixelsPerMetre * 25.4));  // at 1:1000 a metre is a millimetre
    zm::qt::QtDevice onPage(&writer, zm::qt::Rendering::smooth, kPixelsPerMetre * 25.4 / 96.0);
    zm::device::SetBkMode(&onPage, TRANSPARENT);
    Draw(0, 0, &onPage, {});
    onPage.Finish();
}
#endif

void DrawSvg(int type, int flip, const fs::path& file) {
    zm::SvgDevice device(kWidth, kHeight, zm::test::kSheetWidth, zm::test::kSheetHeight);
    zm::device::SetBkMode(&device, TRANSPARENT);
    Draw(type, flip, &device, {});
    zm::test::WriteFile(file, device.Document());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: draw_sheet DIRECTORY\nDraws the test sheet there, once for each sink.\n");
        return 2;
    }
    const fs::path directory = fs::absolute(argv[1]);
    fs::create_directories(directory);
    zm::runtime::Project();
    const std::string module = PathText(ZM_DATA_DIR);
    zm::numbers::Print(zm::runtime::Project().moduleDirectory, 256, "%s", module.c_str());
    std::string name = PathText(directory / "sheet");
    std::string ext = "ini";
    _LFInit(name.data(), ext.data(), nullptr);
    zm::test::WriteFile(directory / "acad.dwg", zm::tool::TemplateDrawing());
    TqNoteLayBase notes;

    DrawSvg(0, 0, directory / "sheet.svg");
    DrawSvg(0, 1, directory / "sheet_turned.svg");
    DrawSvg(2, 0, directory / "sheet_mono.svg");
#if defined(ZM_HAVE_QT)
    DrawQt(directory);
#endif
    zm::SvgDevice unused(10, 10);
    Draw(3, 0, &unused, directory / "sheet.rec");
    std::string drawing = "sheet.dwg";
    _LDBopendwg(drawing.data());
    Draw(1, 0, &unused, {});
    _LDBclosedwg();
    return 0;
}
