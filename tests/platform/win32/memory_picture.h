// A white picture in memory with a device context of the system on it.
#pragma once

#include <windows.h>

#include <cstddef>

namespace zm::test {

class MemoryPicture {
 public:
    MemoryPicture(int width, int height, bool oneBit = false)
        : m_width(width), m_height(height), m_oneBit(oneBit), m_dc(CreateCompatibleDC(nullptr)) {
        struct {
            BITMAPINFOHEADER head;
            RGBQUAD colours[2];
        } info = {};
        info.head.biSize = sizeof info.head;
        info.head.biWidth = width;
        info.head.biHeight = -height;
        info.head.biPlanes = 1;
        info.head.biBitCount = oneBit ? 1 : 32;
        info.colours[1] = {255, 255, 255, 0};
        void* bits = nullptr;
        m_bitmap = CreateDIBSection(m_dc, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits, nullptr, 0);
        m_previous = SelectObject(m_dc, m_bitmap);
        PatBlt(m_dc, 0, 0, width, height, WHITENESS);
    }
    ~MemoryPicture() {
        SelectObject(m_dc, m_previous);
        DeleteObject(m_bitmap);
        DeleteDC(m_dc);
    }
    MemoryPicture(const MemoryPicture&) = delete;
    MemoryPicture& operator=(const MemoryPicture&) = delete;

    HDC dc() const { return m_dc; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    bool oneBit() const { return m_oneBit; }
    /// CLR_INVALID outside.
    COLORREF At(int x, int y) const { return GetPixel(m_dc, x, y); }
    /// Pixels that are not white.
    int Inked() const {
        int count = 0;
        for (int y = 0; y < m_height; ++y)
            for (int x = 0; x < m_width; ++x) count += At(x, y) != 0xFFFFFF ? 1 : 0;
        return count;
    }

 private:
    int m_width, m_height;
    bool m_oneBit;
    HDC m_dc;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_previous = nullptr;
};

}  // namespace zm::test
