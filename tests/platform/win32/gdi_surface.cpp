// GDI on a memory device context as a surface for the recorded drawing operations.
#include "tests/draw/gdi_surface.h"
#include "tests/platform/win32/memory_picture.h"

namespace {

class MemorySurface : public zm::test::GdiSurface {
 public:
    MemorySurface(int width, int height, bool oneBit) : m_picture(width, height, oneBit) {}
    HDC dc() override { return m_picture.dc(); }
    int width() const override { return m_picture.width(); }
    int height() const override { return m_picture.height(); }
    COLORREF At(int x, int y) override { return m_picture.At(x, y); }
    bool KeepsColours() const override { return !m_picture.oneBit(); }

 private:
    zm::test::MemoryPicture m_picture;
};

const zm::test::GdiSurfaceKind kGdi("GDI in memory", [](int width, int height, bool oneBit) {
    return std::make_unique<MemorySurface>(width, height, oneBit);
});

}  // namespace
