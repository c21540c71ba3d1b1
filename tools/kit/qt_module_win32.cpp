// PNG pictures by GDI, in the place of the Qt module: a page is a bitmap in memory, and the system packs it.
#include <windows.h>

// After windows.h.
#include <objidl.h>
#include <propidl.h>
// After both.
#include <gdiplus.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>

#include "platform/win32/missing_glyphs.h"
#include "platform/win32/wide.h"
#include "tools/kit/exit_codes.h"
#include "tools/kit/process.h"
#include "tools/kit/qt_module.h"
#include "tools/kit/translation.h"
#include "zenromath/host.h"

namespace zm::tool {
namespace {

constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

class Page {
 public:
    explicit Page(const ZenroQtPage& page)
        : m_path(win32::FromUtf8(page.path)),
          m_dpi(page.imageDpi),
          m_width(Pixels(page, page.width)),
          m_height(Pixels(page, page.height)),
          m_stride(m_width * 4) {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = m_width;
        info.bmiHeader.biHeight = -m_height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        m_dc = CreateCompatibleDC(nullptr);
        m_bitmap = CreateDIBSection(m_dc, &info, DIB_RGB_COLORS, &m_bits, nullptr, 0);
        if (m_bitmap == nullptr) return;
        m_before = SelectObject(m_dc, m_bitmap);
        PatBlt(m_dc, 0, 0, m_width, m_height, WHITENESS);
        SetMapMode(m_dc, MM_ANISOTROPIC);  // what is drawn comes in the page's units
        SetWindowExtEx(m_dc, page.width, page.height, nullptr);
        SetViewportExtEx(m_dc, m_width, m_height, nullptr);
    }
    ~Page() {
        if (m_before != nullptr) SelectObject(m_dc, m_before);
        if (m_bitmap != nullptr) DeleteObject(m_bitmap);
        DeleteDC(m_dc);
    }
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    HDC dc() const { return m_bitmap != nullptr ? m_dc : nullptr; }

    /// What went wrong; empty where the file is written.
    std::string Write() const {
        GdiFlush();
        Gdiplus::GdiplusStartupInput input;
        ULONG_PTR token = 0;
        if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) return Phrase("the system has no GDI+");
        Gdiplus::Status status = Gdiplus::Ok;
        {
            Gdiplus::Bitmap picture(m_width, m_height, m_stride, PixelFormat32bppRGB, static_cast<BYTE*>(m_bits));
            picture.SetResolution(static_cast<Gdiplus::REAL>(m_dpi), static_cast<Gdiplus::REAL>(m_dpi));
            status = picture.Save(m_path.c_str(), &kPngEncoder, nullptr);
        }
        Gdiplus::GdiplusShutdown(token);
        return status == Gdiplus::Ok ? std::string()
                                     : Phrase("GDI+ cannot write it (status {0})", static_cast<int>(status));
    }

 private:
    static int Pixels(const ZenroQtPage& page, int units) {
        return std::max(1, static_cast<int>(std::lround(units * page.imageDpi / page.dpi)));
    }

    std::wstring m_path;
    double m_dpi;
    int m_width, m_height, m_stride;
    void* m_bits = nullptr;
    HDC m_dc = nullptr;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_before = nullptr;
};

std::unique_ptr<Page> g_page;  // one at a time, as the library has one working context

void Say(const std::string& why, char* error, std::size_t errorSize) {
    if (error == nullptr || errorSize == 0) return;
    const std::size_t count = std::min(why.size(), errorSize - 1);
    std::memcpy(error, why.data(), count);
    error[count] = '\0';
}

HDC Begin(const ZenroQtPage* page, char* error, std::size_t errorSize) {
    if (std::strcmp(page->format, "png") != 0) {
        Say(Phrase("PDF needs Qt, which this program is built without; write .png or .svg"), error, errorSize);
        return nullptr;
    }
    g_page = std::make_unique<Page>(*page);
    if (page->otherFace != nullptr)
        win32::SetMissingGlyphsReport(
            [tell = page->otherFace, reader = page->reader](const std::string& face, const std::string& used) {
                tell(reader, face.c_str(), used.c_str());
            });
    if (g_page->dc() == nullptr) {
        Say(Phrase("there is no memory for so many pixels; give a smaller --dpi"), error, errorSize);
        g_page.reset();
        return nullptr;
    }
    return g_page->dc();
}

int Finish(HDC, char* error, std::size_t errorSize) {
    const std::unique_ptr<Page> page = std::move(g_page);
    win32::SetMissingGlyphsReport({});
    if (page == nullptr) return 0;
    const std::string why = page->Write();
    Say(why, error, errorSize);
    return why.empty() ? 1 : 0;
}

void Drop(HDC) {
    win32::SetMissingGlyphsReport({});
    g_page.reset();
}

const char* Version() {
    return "GDI";
}

const char* ChineseFace() {
    static const std::string face = InstalledChineseFace();
    return face.c_str();
}

// The library's own host: windows of the system. Ctrl-C does not reach a dialog that is open.
Host* WindowHost(int (*)(), char*, std::size_t) {
    Host* before = SetHost(nullptr);
    Host* windows = &CurrentHost();
    SetHost(before);
    return windows;
}

constexpr const char* kWithoutQt = N_("this program is built without the window of the map, which needs Qt");

HDC BeginPicture(const ZenroQtPicture*, char* error, std::size_t errorSize) {
    Say(Translated(kWithoutQt), error, errorSize);
    return nullptr;
}

int ShowMap(const ZenroQtMap*, char* error, std::size_t errorSize) {
    Say(Translated(kWithoutQt), error, errorSize);
    return kFailed;
}

}  // namespace

const ZenroQtBridge* TryLoadQt() {
    static constexpr ZenroQtBridge kBridge = {kZenroQtBridgeVersion, Begin,      Finish,       Drop,    Version,
                                              ChineseFace,           WindowHost, BeginPicture, ShowMap, ShowMap};
    return &kBridge;
}

const ZenroQtBridge& LoadQt() {
    return *TryLoadQt();
}

}  // namespace zm::tool
