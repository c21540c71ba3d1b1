// The functions of tools/zenro/qt_bridge.h: images and PDF pages by the Qt device.
#include "tools/zenro/qt_bridge.h"

#include <QFontDatabase>
#include <QImage>
#include <QImageWriter>
#include <QPageLayout>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <string>

#include "platform/qt/application.h"
#include "platform/qt/qt_device.h"
#include "platform/qt/qt_text.h"

namespace {

constexpr double kScreenDpi = 96.0;  // one unit of a pen's dashes is a pixel of such a screen
// Level 3 of zlib: twice as fast as the usual one, and sheets are larger by a sixth at most.
constexpr int kPngCompression = 40;

struct Page {
    QString path;
    std::unique_ptr<QImage> image;
    std::unique_ptr<QPdfWriter> pdf;
    std::unique_ptr<zm::qt::QtDevice> device;
};

std::map<zm::Device*, Page>& Pages() {
    static std::map<zm::Device*, Page> pages;
    return pages;
}

void Tell(char* error, std::size_t size, const std::string& text) {
    if (error == nullptr || size == 0) return;
    const std::size_t count = std::min(text.size(), size - 1);
    std::memcpy(error, text.data(), count);
    error[count] = '\0';
}

bool BeginImage(const ZenroQtPage& page, Page& made) {
    made.image = std::make_unique<QImage>(page.width, page.height, QImage::Format_RGB32);
    if (made.image->isNull()) return false;
    made.image->fill(Qt::white);
    const int dotsPerMeter = static_cast<int>(std::lround(page.dpi / 0.0254));
    made.image->setDotsPerMeterX(dotsPerMeter);
    made.image->setDotsPerMeterY(dotsPerMeter);
    made.image->setText("Title", QString::fromUtf8(page.title));
    made.device =
        std::make_unique<zm::qt::QtDevice>(made.image.get(), zm::qt::Rendering::smooth, page.dpi / kScreenDpi);
    return true;
}

void BeginPdf(const ZenroQtPage& page, Page& made) {
    made.pdf = std::make_unique<QPdfWriter>(made.path);
    made.pdf->setTitle(QString::fromUtf8(page.title));
    made.pdf->setCreator("zenro");
    made.pdf->setResolution(static_cast<int>(std::lround(page.dpi)));
    const QSizeF millimetres(page.width / page.dpi * 25.4, page.height / page.dpi * 25.4);
    made.pdf->setPageLayout(QPageLayout(QPageSize(millimetres, QPageSize::Millimeter, QString(), QPageSize::ExactMatch),
                                        QPageLayout::Portrait, QMarginsF()));
    made.device = std::make_unique<zm::qt::QtDevice>(made.pdf.get(), zm::qt::Rendering::smooth, page.dpi / kScreenDpi);
}

zm::Device* Begin(const ZenroQtPage* page, char* error, std::size_t errorSize) try {
    if (page == nullptr || page->width < 1 || page->height < 1 || !(page->dpi > 0.0)) {
        Tell(error, errorSize, "a page needs a width, a height and a resolution above 0");
        return nullptr;
    }
    zm::qt::EnsureApplication();
    Page made;
    made.path = QString::fromUtf8(page->path);
    if (std::strcmp(page->format, "pdf") == 0) {
        BeginPdf(*page, made);
    } else if (std::strcmp(page->format, "png") != 0) {
        Tell(error, errorSize, std::string("the format ") + page->format + " is neither png nor pdf");
        return nullptr;
    } else if (!BeginImage(*page, made)) {
        Tell(error, errorSize,
             "an image of " + std::to_string(page->width) + " by " + std::to_string(page->height) +
                 " pixels needs more memory than there is; take fewer dots an inch");
        return nullptr;
    }
    zm::Device* device = made.device.get();
    Pages()[device] = std::move(made);
    return device;
} catch (const std::exception& failure) {
    Tell(error, errorSize, failure.what());
    return nullptr;
}

int Finish(zm::Device* device, char* error, std::size_t errorSize) try {
    const auto found = Pages().find(device);
    if (found == Pages().end()) {
        Tell(error, errorSize, "no such page");
        return 0;
    }
    Page page = std::move(found->second);
    Pages().erase(found);
    const bool painted = page.device->Finish();
    page.device.reset();
    if (!painted) {
        Tell(error, errorSize, "the file cannot be written");
        return 0;
    }
    if (page.image == nullptr) return 1;
    QImageWriter writer(page.path, "png");
    writer.setCompression(kPngCompression);
    if (writer.write(*page.image)) return 1;
    Tell(error, errorSize, writer.errorString().toStdString());
    return 0;
} catch (const std::exception& failure) {
    Tell(error, errorSize, failure.what());
    return 0;
}

void Drop(zm::Device* device) {
    Pages().erase(device);
}

const char* QtVersion() {
    return qVersion();
}

const char* ChineseFace() {
    static const std::string face = [] {
        zm::qt::EnsureApplication();
        return zm::qt::ChineseFace().toStdString();
    }();
    return face.c_str();
}

}  // namespace

extern "C" __attribute__((visibility("default"))) const ZenroQtBridge* zenro_qt_bridge(int version) {
    static const ZenroQtBridge bridge = {kZenroQtBridgeVersion, Begin, Finish, Drop, QtVersion, ChineseFace};
    return version == kZenroQtBridgeVersion ? &bridge : nullptr;
}
