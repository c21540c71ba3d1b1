#include "tools/zenro/sinks.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/headless/svg_device.h"
#include "tools/zenro/qt_module.h"
#include "tools/zenro/text.h"
#include "zenromath/device.h"
#include "zenromath/dwg.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr int kColourDevice = 0, kDwg = 1, kMonochromeDevice = 2, kRecording = 3;
constexpr double kLargestPixel = 29000.0;  // the library limits device coordinates to 30000
constexpr double kVectorDpi = 508.0;       // 20 pixels a millimetre
constexpr double kImageDpi = 254.0;        // 10 pixels a millimetre
constexpr double kMostImagePixels = 150.0e6;

int PixelsOf(double millimetres, double dpi) {
    return static_cast<int>(std::lround(millimetres / 25.4 * dpi));
}

[[noreturn]] void CannotWrite(const fs::path& target, const std::string& why) {
    throw Failure(kNoOutput, target.string() + ": cannot be written: " + why + ".");
}

// A device that a recording selects its pens and fonts into; nothing is drawn on it.
class NoDevice : public Device {
 public:
    int Line(const Stroke&, int, int, int, int) override { return 1; }
    COLORREF Dot(int, int, COLORREF color) override { return color; }
    int Arc(const Stroke&, const RECT&, POINT, POINT) override { return 1; }
    int Box(const Stroke*, const Fill&, const RECT&) override { return 1; }
    int FillRegion(const Region&, const Fill&) override { return 1; }
    int Text(const TextStyle&, int, int, std::string_view) override { return 1; }
};

class SvgSink : public Sink {
 public:
    SvgSink(const fs::path& target, const SinkOptions& options, const Page& page)
        : Sink(target, options, options.monochrome ? kMonochromeDevice : kColourDevice),
          m_dpi(UsableDpi(page, options.dpi > 0.0 ? options.dpi : kVectorDpi)),
          m_device(PixelsOf(page.paperWidth(), m_dpi), PixelsOf(page.paperHeight(), m_dpi), page.paperWidth(),
                   page.paperHeight()) {
        SetView(&m_device, page, m_dpi);
    }
    void Finish() override {
        const std::string text = m_device.Document();
        std::FILE* file = std::fopen(m_file.path().c_str(), "wb");
        if (file == nullptr) CannotWrite(m_file.target(), std::strerror(errno));
        const bool whole = std::fwrite(text.data(), 1, text.size(), file) == text.size();
        if (std::fclose(file) != 0 || !whole) CannotWrite(m_file.target(), std::strerror(errno));
        m_file.Commit();
    }

 private:
    double m_dpi;
    platform::SvgDevice m_device;
};

class QtSink : public Sink {
 public:
    QtSink(const fs::path& target, const SinkOptions& options, const Page& page, const char* format, Report& report)
        : Sink(target, options, options.monochrome ? kMonochromeDevice : kColourDevice), m_qt(LoadQt()) {
        const bool image = std::strcmp(format, "png") == 0;
        double dpi = UsableDpi(page, options.dpi > 0.0 ? options.dpi : image ? kImageDpi : kVectorDpi);
        const double pixels = page.paperWidth() * page.paperHeight() * dpi * dpi / (25.4 * 25.4);
        if (image && pixels > kMostImagePixels) {
            dpi *= std::sqrt(kMostImagePixels / pixels);
            report.Note(target.string() + ": an image of " + Fixed(pixels / 1e6, 0) +
                        " million pixels is too large; it is drawn at " + Fixed(dpi, 0) + " pixels an inch.");
        }
        const std::string path = m_file.path().string();
        const ZenroQtPage qtPage = {
            path.c_str(),         format, PixelsOf(page.paperWidth(), dpi), PixelsOf(page.paperHeight(), dpi), dpi,
            options.title.c_str()};
        char error[512] = {};
        m_device = m_qt.begin(&qtPage, error, sizeof error);
        if (m_device == nullptr) CannotWrite(m_file.target(), error);
        SetView(m_device, page, dpi);
        if (*m_qt.chineseFace() == '\0')
            report.Warn("no font for Chinese",
                        target.string() + ": no installed font covers Chinese; such text is drawn as boxes. Install " +
                            "fonts-wqy-zenhei or fonts-noto-cjk.");
    }
    ~QtSink() override {
        m_context->ResetHdc(nullptr);
        if (m_device != nullptr) m_qt.drop(m_device);
    }
    void Finish() override {
        m_context->ResetHdc(nullptr);
        char error[512] = {};
        Device* device = m_device;
        m_device = nullptr;
        if (m_qt.finish(device, error, sizeof error) == 0) CannotWrite(m_file.target(), error);
        m_file.Commit();
    }

 private:
    const ZenroQtBridge& m_qt;
    Device* m_device = nullptr;
};

class DwgSink : public Sink {
 public:
    DwgSink(const fs::path& target, const SinkOptions& options, const Page& page) : Sink(target, options, kDwg) {
        std::string name = LibraryPath(m_file.path());
        if (name.empty()) {
            // A place whose name the library can take; the file is moved to its own at the end.
            m_detour = fs::temp_directory_path() / ("zenro-" + std::to_string(getpid()) + ".dwg");
            name = LibraryPath(m_detour);
        }
        if (name.empty()) CannotWrite(target, "its path cannot be told to the library; use a shorter one");
        std::vector<char> text(name.c_str(), name.c_str() + name.size() + 1);
        _LDBopendwg(text.data());
        m_open = true;
        _LDBsetelev(0.0, 0.0);
        // No device: text metrics come from the scale alone.
        SetView(nullptr, page, kVectorDpi);
    }
    ~DwgSink() override {
        if (m_open) _LDBclosedwg();
        std::error_code ignored;
        if (!m_detour.empty()) fs::remove(m_detour, ignored);
    }
    void Finish() override {
        m_open = false;
        _LDBclosedwg();
        if (!dwg::LastFileComplete())
            CannotWrite(m_file.target(), "the file could not be written whole; is the disk full");
        if (!m_detour.empty()) {
            std::error_code error;
            fs::copy_file(m_detour, m_file.path(), fs::copy_options::overwrite_existing, error);
            if (error) CannotWrite(m_file.target(), error.message());
        }
        m_file.Commit();
    }

 private:
    fs::path m_detour;
    bool m_open = false;
};

class RecordingSink : public Sink {
 public:
    RecordingSink(const fs::path& target, const SinkOptions& options, const Page& page)
        : Sink(target, options, kRecording), m_stream(std::fopen(m_file.path().c_str(), "wb")) {
        if (m_stream == nullptr) CannotWrite(m_file.target(), std::strerror(errno));
        SetView(&m_device, page, kVectorDpi);
        const Box& b = page.sheet;
        Write("# zenro recording 1, commands of the drawing context in GBK");
        Write("# scale " + Fixed(page.scale, 6));
        Write("# sheet " + Fixed(b.x1, 6) + " " + Fixed(b.y1, 6) + " " + Fixed(b.x2, 6) + " " + Fixed(b.y2, 6));
        const Margins& m = page.margins;
        Write("# margins_mm " + Fixed(m.left, 3) + " " + Fixed(m.right, 3) + " " + Fixed(m.top, 3) + " " +
              Fixed(m.bottom, 3));
    }
    ~RecordingSink() override {
        if (m_stream != nullptr) std::fclose(m_stream);
    }
    void Flush() override {
        CStringArray& commands = *m_context->GetTqDCString();
        for (int i = 0; i < commands.GetSize(); ++i) Write(commands[i].GetString());
        commands.RemoveAll();
    }
    void Finish() override {
        Flush();
        const bool good = std::ferror(m_stream) == 0;
        std::FILE* stream = m_stream;
        m_stream = nullptr;
        if (std::fclose(stream) != 0 || !good) CannotWrite(m_file.target(), std::strerror(errno));
        m_file.Commit();
    }

 private:
    void Write(const std::string& line) {
        std::fwrite(line.data(), 1, line.size(), m_stream);
        std::fputc('\n', m_stream);
    }
    std::FILE* m_stream;
    NoDevice m_device;
};

}  // namespace

Format FormatOf(const fs::path& path) {
    std::string extension = path.extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (extension == ".svg") return Format::svg;
    if (extension == ".png") return Format::png;
    if (extension == ".pdf") return Format::pdf;
    if (extension == ".dwg") return Format::dwg;
    if (extension == ".rec") return Format::recording;
    throw Failure(kUsage, path.string() + ": the extension names no output; use .svg, .png, .pdf, .dwg or .rec.");
}

double UsableDpi(const Page& page, double wanted) {
    const double side = std::max(page.paperWidth(), page.paperHeight()) / 25.4;
    return std::min(wanted, kLargestPixel / side);
}

Sink::Sink(const fs::path& target, const SinkOptions& options, int contextType) : m_file(target, options.overwrite) {
    SelectWorkingTqDC(nullptr);
    m_context = std::make_unique<CTqDraw>(contextType);
}

Sink::~Sink() {
    m_context.reset();
    SelectWorkingTqDC(nullptr);  // the context's end leaves it published
}

void Sink::SetView(HDC device, const Page& page, double dpi) {
    const double pixelsPerMetre = dpi / 0.0254 / page.scale;
    m_context->SetViewDrawDC(device, pixelsPerMetre, page.left(), page.bottom(), PixelsOf(page.paperWidth(), dpi),
                             PixelsOf(page.paperHeight(), dpi), 0);
}

std::unique_ptr<Sink> OpenSink(const fs::path& target, const SinkOptions& options, const Page& page, Report& report) {
    switch (FormatOf(target)) {
        case Format::svg:
            return std::make_unique<SvgSink>(target, options, page);
        case Format::png:
            return std::make_unique<QtSink>(target, options, page, "png", report);
        case Format::pdf:
            return std::make_unique<QtSink>(target, options, page, "pdf", report);
        case Format::dwg:
            return std::make_unique<DwgSink>(target, options, page);
        case Format::recording:
            return std::make_unique<RecordingSink>(target, options, page);
    }
    throw Failure(kUsage, target.string() + ": no such output.");
}

}  // namespace zm::tool
