// draw_sheet: draws the sheet to SVG, turned SVG, monochrome SVG, DWG and recording in a directory, to be looked at.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "draw/device.h"
#include "platform/headless/svg_device.h"
#include "runtime/gbk.h"
#include "runtime/numbers.h"
#include "runtime/project.h"
#include "tests/draw/sheet.h"
#include "tests/support/scratch.h"
#include "tools/make_template/template_drawing.h"
#include "zenromath/config.h"
#include "zenromath/dwg.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace {

constexpr double kPixelsPerMetre = 5.0;

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
    context.SetViewDrawDC(dc, kPixelsPerMetre, 0.0, 0.0, static_cast<int>(zm::test::kSheetWidth * kPixelsPerMetre),
                          static_cast<int>(zm::test::kSheetHeight * kPixelsPerMetre), flip);
    zm::test::DrawSheet(context);
    if (!recording.empty()) {
        std::ofstream out(recording, std::ios::binary);
        for (int i = 0; i < context.GetTqDCString()->GetSize(); ++i)
            out << context.GetTqDCString()->GetAt(i).GetString() << "\n";
    }
    SelectWorkingTqDC(nullptr);
}

void DrawSvg(int type, int flip, const fs::path& file) {
    zm::platform::SvgDevice device(static_cast<int>(zm::test::kSheetWidth * kPixelsPerMetre),
                                   static_cast<int>(zm::test::kSheetHeight * kPixelsPerMetre), zm::test::kSheetWidth,
                                   zm::test::kSheetHeight);
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
    zm::test::WriteFile(directory / "acad.dwg", zm::tools::TemplateDrawing());
    TqNoteLayBase notes;

    DrawSvg(0, 0, directory / "sheet.svg");
    DrawSvg(0, 1, directory / "sheet_turned.svg");
    DrawSvg(2, 0, directory / "sheet_mono.svg");
    zm::platform::SvgDevice unused(10, 10);
    Draw(3, 0, &unused, directory / "sheet.rec");
    std::string drawing = "sheet.dwg";
    _LDBopendwg(drawing.data());
    Draw(1, 0, &unused, {});
    _LDBclosedwg();
    return 0;
}
