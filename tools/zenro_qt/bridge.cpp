// The functions of tools/kit/qt_bridge.h: images and PDF pages by the Qt device.
#include "tools/kit/qt_bridge.h"

#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QFile>
#include <QFontDatabase>
#include <QHashSeed>
#include <QImage>
#include <QPageLayout>
#include <QPdfWriter>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <string>

#include "platform/qt/qt_text.h"
#include "tools/view/show_map.h"
#include "tools/zenro_qt/png_file.h"
#include "zenromath/qt.h"
#include "zenromath/qt_host.h"

namespace {

constexpr double kScreenDpi = 96.0;  // one unit of a pen's dashes is a pixel of such a screen

// A file that keeps the reason of the first write that failed. The writer of pages never looks; to QFile a long piece of
// which only a part was written is no fault, and each call forgets the fault of the last.
class WatchedFile : public QFile {
 public:
    using QFile::QFile;
    // Brings everything into the file; the reason where that or any write before it failed, else empty.
    std::string Finish() {
        if (!flush()) Note();
        close();
        if (error() != NoError) Note();
        return m_fault;
    }

 protected:
    qint64 writeData(const char* data, qint64 size) override {
        for (qint64 done = 0; done < size;) {
            const qint64 written = QFile::writeData(data + done, size - done);
            if (written <= 0) {
                Note();
                return -1;
            }
            done += written;
        }
        return size;
    }

 private:
    void Note() {
        if (m_fault.empty()) m_fault = errorString().toStdString();
    }
    std::string m_fault;
};

struct Page {
    QString path;
    std::unique_ptr<QImage> image;
    std::unique_ptr<WatchedFile> file;  // of a PDF
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
    const double zoom = page.imageDpi / page.dpi;
    const auto pixels = [zoom](int units) { return std::max(1, static_cast<int>(std::lround(units * zoom))); };
    made.image = std::make_unique<QImage>(pixels(page.width), pixels(page.height), QImage::Format_RGB32);
    if (made.image->isNull()) return false;
    made.image->fill(Qt::white);
    const int dotsPerMeter = static_cast<int>(std::lround(page.imageDpi / 0.0254));
    made.image->setDotsPerMeterX(dotsPerMeter);
    made.image->setDotsPerMeterY(dotsPerMeter);
    made.image->setText("Title", QString::fromUtf8(page.title));
    made.device =
        std::make_unique<zm::qt::QtDevice>(made.image.get(), zm::qt::Rendering::smooth, page.dpi / kScreenDpi, zoom);
    return true;
}

bool BeginPdf(const ZenroQtPage& page, Page& made) {
    made.file = std::make_unique<WatchedFile>(made.path);
    if (!made.file->open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    made.pdf = std::make_unique<QPdfWriter>(made.file.get());
    made.pdf->setTitle(QString::fromUtf8(page.title));
    made.pdf->setCreator("zenro");
    made.pdf->setResolution(static_cast<int>(std::lround(page.dpi)));
    const QSizeF millimetres(page.width / page.dpi * 25.4, page.height / page.dpi * 25.4);
    made.pdf->setPageLayout(QPageLayout(QPageSize(millimetres, QPageSize::Millimeter, QString(), QPageSize::ExactMatch),
                                        QPageLayout::Portrait, QMarginsF()));
    made.device = std::make_unique<zm::qt::QtDevice>(made.pdf.get(), zm::qt::Rendering::smooth, page.dpi / kScreenDpi);
    return true;
}

zm::Device* Begin(const ZenroQtPage* page, char* error, std::size_t errorSize) try {
    if (page == nullptr || page->width < 1 || page->height < 1 || !(page->dpi > 0.0) || !(page->imageDpi > 0.0)) {
        Tell(error, errorSize, "a page needs a width, a height and a resolution above 0");
        return nullptr;
    }
    zm::qt::EnsureApplication();
    Page made;
    made.path = QString::fromUtf8(page->path);
    if (std::strcmp(page->format, "pdf") == 0) {
        if (!BeginPdf(*page, made)) {
            Tell(error, errorSize, made.file->errorString().toStdString());
            return nullptr;
        }
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
    if (page->otherFace != nullptr)
        zm::qt::SetMissingFaceReport(
            [tell = page->otherFace, reader = page->reader](const std::string& face, const std::string& used) {
                tell(reader, face.c_str(), used.c_str());
            });
    return device;
} catch (const std::exception& failure) {
    Tell(error, errorSize, failure.what());
    return nullptr;
}

// Qt writes the time of day into a document, and the same drawing would be another file each time. The entry becomes
// what SOURCE_DATE_EPOCH says, or blanks; it keeps its length, so nothing moves.
bool SetCreationDate(const QString& path) {
    constexpr char kKey[] = "/CreationDate (D:";
    constexpr qint64 kHead = 8192;  // the description is first in the file
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) return false;
    const QByteArray head = file.read(kHead);
    const qsizetype at = head.indexOf(kKey), end = at < 0 ? at : head.indexOf(')', at);
    if (end < 0) return true;
    bool given = false;
    const qint64 seconds = qEnvironmentVariable("SOURCE_DATE_EPOCH").toLongLong(&given);
    QByteArray entry;
    if (given)
        entry = kKey + QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString("yyyyMMddHHmmss").toLatin1() + "Z)";
    const qsizetype length = end + 1 - at;
    entry = entry.leftJustified(length, ' ');
    return entry.size() == length && file.seek(at) && file.write(entry) == length && file.flush();
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
    zm::qt::SetMissingFaceReport({});
    page.device.reset();
    page.pdf.reset();
    if (page.file != nullptr) {
        const std::string fault = page.file->Finish();
        if (!fault.empty()) {
            Tell(error, errorSize, fault);
            return 0;
        }
    }
    if (page.file != nullptr && !SetCreationDate(page.path)) {
        Tell(error, errorSize, "its date cannot be written");
        return 0;
    }
    if (!painted) {
        Tell(error, errorSize, "the file cannot be written");
        return 0;
    }
    if (page.image == nullptr) return 1;
    const QImage& image = *page.image;
    const std::string problem =
        zm::tool::WritePng(page.path.toStdString(),
                           {reinterpret_cast<const std::uint32_t*>(image.constBits()), image.bytesPerLine() / 4,
                            image.width(), image.height(), image.dotsPerMeterX(), image.text("Title").toStdString()});
    Tell(error, errorSize, problem);
    return problem.empty() ? 1 : 0;
} catch (const std::exception& failure) {
    Tell(error, errorSize, failure.what());
    return 0;
}

void Drop(zm::Device* device) {
    const auto found = Pages().find(device);
    if (found != Pages().end() && found->second.path.isEmpty()) found->second.device->Finish();
    Pages().erase(device);
    zm::qt::SetMissingFaceReport({});
}

zm::Device* BeginPicture(const ZenroQtPicture* picture, char* error, std::size_t errorSize) try {
    if (picture == nullptr || picture->width < 1 || picture->height < 1 || !(picture->dpi > 0.0) ||
        !(picture->imageDpi > 0.0)) {
        Tell(error, errorSize, "a picture needs a width, a height and a resolution above 0");
        return nullptr;
    }
    zm::qt::EnsureApplication();
    Page made;
    made.image = std::make_unique<QImage>(static_cast<uchar*>(picture->pixels), picture->width, picture->height,
                                          4 * static_cast<qsizetype>(picture->width), QImage::Format_RGB32);
    made.image->fill(Qt::white);
    made.device = std::make_unique<zm::qt::QtDevice>(made.image.get(), zm::qt::Rendering::smooth,
                                                     picture->dpi / kScreenDpi, picture->imageDpi / picture->dpi);
    zm::Device* device = made.device.get();
    Pages()[device] = std::move(made);
    return device;
} catch (const std::exception& failure) {
    Tell(error, errorSize, failure.what());
    return nullptr;
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

// Windows for the settings, which a stop takes away.
class SettingsHost : public zm::qt::QtHost {
 public:
    explicit SettingsHost(int (*stop)()) : m_stop(stop) {}
    bool RunDialog(zm::dialogs::Dialog& dialog) override {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [this] {
            if (m_stop != nullptr && m_stop() != 0) CloseDialogs();
        });
        timer.start(kAskEvery);
        return QtHost::RunDialog(dialog);
    }

 private:
    static constexpr int kAskEvery = 100;  // milliseconds

    static void CloseDialogs() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<QDialog*>(widget); dialog != nullptr && dialog->isVisible())
                dialog->done(QDialog::Rejected);
    }

    int (*m_stop)();
};

zm::Host* WindowHost(int (*stop)(), char* error, std::size_t errorSize) try {
    if (!zm::qt::HasDisplay()) {
        Tell(error, errorSize, "there is no display, or it cannot be reached (DISPLAY, WAYLAND_DISPLAY)");
        return nullptr;
    }
    static auto* host = new SettingsHost(stop);
    return host;
} catch (const std::exception& failure) {
    Tell(error, errorSize, failure.what());
    return nullptr;
}

int ShowWindow(int (*show)(const ZenroQtMap&, std::string&), const ZenroQtMap* map, char* error,
               std::size_t errorSize) try {
    std::string reason;
    const int status = show(*map, reason);
    Tell(error, errorSize, reason);
    return status;
} catch (const std::exception& failure) {
    Tell(error, errorSize, failure.what());
    return 1;
}

int ShowMap(const ZenroQtMap* map, char* error, std::size_t errorSize) {
    return ShowWindow(zm::view::ShowMap, map, error, errorSize);
}

int ShowSymbols(const ZenroQtMap* library, char* error, std::size_t errorSize) {
    return ShowWindow(zm::view::ShowSymbols, library, error, errorSize);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) const ZenroQtBridge* zenro_qt_bridge(int version) {
    // Qt writes the fonts of a document in the order of a hash table, which is thrown anew for each process.
    QHashSeed::setDeterministicGlobalSeed();
    static const ZenroQtBridge bridge = {kZenroQtBridgeVersion, Begin,      Finish,       Drop,    QtVersion,
                                         ChineseFace,           WindowHost, BeginPicture, ShowMap, ShowSymbols};
    return version == kZenroQtBridgeVersion ? &bridge : nullptr;
}
