// Draws the sheet on a device context of Windows and writes it as PNG, and to SVG beside it.   usage: gdi_sheet DIRECTORY
#include <windows.h>
#include <zenromath.h>
#include <zenromath/svg.h>

#include <algorithm>

// After windows.h and without its macros for these.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "sheet_scene.h"

namespace {

constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

bool WritePng(const std::wstring& path) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, kPixels, -kPixels, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(dc, bitmap);
    PatBlt(dc, 0, 0, kPixels, kPixels, WHITENESS);
    Draw(dc);
    GdiFlush();
    Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) return false;
    Gdiplus::Status status = Gdiplus::Ok;
    {
        Gdiplus::Bitmap picture(kPixels, kPixels, kPixels * 4, PixelFormat32bppRGB, static_cast<BYTE*>(bits));
        status = picture.Save(path.c_str(), &kPngEncoder, nullptr);
    }
    Gdiplus::GdiplusShutdown(token);
    SelectObject(dc, before);
    DeleteObject(bitmap);
    DeleteDC(dc);
    return status == Gdiplus::Ok;
}

bool WriteSvg(const std::string& path) {
    zm::SvgDevice svg(kPixels, kPixels, kSheetMm, kSheetMm);
    Draw(&svg);
    std::ofstream file(path, std::ios::binary);
    file << svg.Document();
    return file.good();
}

}  // namespace

int main(int argc, char** argv) {
    const std::string directory = argc > 1 ? argv[1] : ".";
    const TqNoteLayBase notes;
    if (TsymbolInit(nullptr) == 0) {
        std::fputs("gdi_sheet: the symbol library beside the installed library cannot be read\n", stderr);
        return 1;
    }
    if (!WriteSvg(directory + "/sheet.svg") ||
        !WritePng(std::wstring(directory.begin(), directory.end()) + L"/sheet.png")) {
        std::fprintf(stderr, "gdi_sheet: %s: a picture cannot be written\n", directory.c_str());
        return 1;
    }
    TsymbolClose();
    std::puts("drawn");
    return 0;
}
