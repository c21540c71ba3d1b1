// The Qt device as a surface for the recorded drawing operations.
#include "tests/draw/gdi_surface.h"

#include <QImage>

#include "zenromath/qt.h"

namespace {

class QtSurface : public zm::test::GdiSurface {
 public:
    QtSurface(int width, int height, bool oneBit)
        : m_image(width, height, oneBit ? QImage::Format_Mono : QImage::Format_RGB32) {
        if (oneBit) {
            m_image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
            m_image.fill(1);
        } else {
            m_image.fill(Qt::white);
        }
        m_device = std::make_unique<zm::qt::QtDevice>(&m_image, zm::qt::Rendering::pixels);
    }
    HDC dc() override { return m_device.get(); }
    int width() const override { return m_image.width(); }
    int height() const override { return m_image.height(); }
    COLORREF At(int x, int y) override {
        m_device->Flush();
        if (!m_image.valid(x, y)) return CLR_INVALID;
        const QRgb rgb = m_image.pixel(x, y);
        return static_cast<COLORREF>(qRed(rgb) | qGreen(rgb) << 8 | qBlue(rgb) << 16);
    }
    bool KeepsColours() const override { return m_image.format() != QImage::Format_Mono; }

 private:
    QImage m_image;
    std::unique_ptr<zm::qt::QtDevice> m_device;
};

const zm::test::GdiSurfaceKind kQt("the Qt device", [](int width, int height, bool oneBit) {
    zm::qt::EnsureApplication();
    return std::make_unique<QtSurface>(width, height, oneBit);
});

}  // namespace
