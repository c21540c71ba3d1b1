#include "tools/zenro/map/sinks.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "runtime/text/gbk.h"
#include "tools/kit/process.h"
#include "tools/kit/qt_module.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/dxf_file.h"
#include "zenromath/dwg.h"
#include "zenromath/null_device.h"
#include "zenromath/svg.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr int kColourDevice = 0, kDwg = 1, kMonochromeDevice = 2, kRecording = 3;
constexpr double kLargestPixel = 29000.0;  // the library limits device coordinates to 30000
constexpr double kUnitsPerMillimetre = 40.0;
// Coordinates and widths are cut to whole units. So much more keeps those that are whole from falling short.
constexpr double kAboveWhole = 1.0 + 1e-7;
constexpr double kImageDpi = 300.0;
constexpr double kMostImagePixels = 150.0e6;

int UnitsOf(double millimetres, double dpi) {
    return static_cast<int>(std::lround(millimetres / 25.4 * dpi));
}

[[noreturn]] void CannotWrite(const fs::path& target, const std::string& why) {
    throw Failure(kNoOutput, Phrase("{0}: cannot be written: {1}.", target.string(), why));
}

class SvgSink : public Sink {
 public:
    SvgSink(const fs::path& target, const SinkOptions& options, const Page& page)
        : Sink(target, options, options.monochrome ? kMonochromeDevice : kColourDevice),
          m_dpi(UnitsPerInch(page)),
          m_device(UnitsOf(page.paperWidth(), m_dpi), UnitsOf(page.paperHeight(), m_dpi), page.paperWidth(),
                   page.paperHeight()) {
        SetView(&m_device, page);
    }
    void Finish() override {
        const std::string text = m_device.Document();
        std::FILE* file = OpenFile(m_file.path(), "wb");
        if (file == nullptr) CannotWrite(m_file.target(), SystemError(errno));
        const bool whole = std::fwrite(text.data(), 1, text.size(), file) == text.size();
        if (std::fclose(file) != 0 || !whole) CannotWrite(m_file.target(), SystemError(errno));
        m_file.Commit();
    }

 private:
    double m_dpi;
    SvgDevice m_device;
};

class QtSink : public Sink {
 public:
    QtSink(const fs::path& target, const SinkOptions& options, const Page& page, const char* format, Report& report)
        : Sink(target, options, options.monochrome ? kMonochromeDevice : kColourDevice),
          m_qt(LoadQt()),
          m_report(report) {
        const bool image = std::strcmp(format, "png") == 0;
        const double units = UnitsPerInch(page);
        double dpi = options.dpi > 0.0 ? options.dpi : kImageDpi;
        const double pixels = page.paperWidth() * page.paperHeight() * dpi * dpi / (25.4 * 25.4);
        if (image && pixels > kMostImagePixels) {
            dpi *= std::sqrt(kMostImagePixels / pixels);
            report.Note(Phrase("{0}: an image of {1} million pixels is too large; it is drawn at {2} pixels an inch.",
                               target.string(), Fixed(pixels / 1e6, 0), Fixed(dpi, 0)));
        }
        const std::string path = m_file.path().string();
        const ZenroQtPage qtPage = {path.c_str(),
                                    format,
                                    UnitsOf(page.paperWidth(), units),
                                    UnitsOf(page.paperHeight(), units),
                                    units,
                                    dpi,
                                    options.title.c_str(),
                                    TellOtherFace,
                                    this};
        char error[512] = {};
        m_device = m_qt.begin(&qtPage, error, sizeof error);
        if (m_device == nullptr) CannotWrite(m_file.target(), error);
        SetView(m_device, page);
        if (*m_qt.chineseFace() == '\0')
            report.Warn(N_("no font for Chinese"), Phrase("{0}: no installed font covers Chinese; such text is drawn "
                                                          "as boxes. Install fonts-wqy-zenhei or fonts-noto-cjk.",
                                                          target.string()));
    }
    ~QtSink() override {
        m_context->ResetHdc(nullptr);
        if (m_device != nullptr) m_qt.drop(m_device);
    }
    void Finish() override {
        m_context->ResetHdc(nullptr);
        char error[512] = {};
        const HDC device = m_device;
        m_device = nullptr;
        if (m_qt.finish(device, error, sizeof error) == 0) CannotWrite(m_file.target(), error);
        m_file.Commit();
    }

 private:
    static void TellOtherFace(void* sink, const char* face, const char* used) {
        static_cast<QtSink*>(sink)->OtherFace(face, used);
    }
    void OtherFace(const std::string& face, const std::string& used) {
        if (!used.empty())
            m_report.Note(Phrase("the font {0} is not installed; {1} is used instead.", face, used));
        else if (m_lacking.insert(face).second)
            m_report.Skip(N_("fonts without some characters"),
                          Phrase("{0}: the font {1} lacks characters of its texts, which are drawn as boxes; install "
                                 "one that has them.",
                                 m_file.target().string(), face));
    }

    const ZenroQtBridge& m_qt;
    Report& m_report;
    std::set<std::string> m_lacking;  // faces with characters drawn as boxes
    HDC m_device = nullptr;
};

class DwgSink : public Sink {
 public:
    DwgSink(const fs::path& target, const SinkOptions& options, const Page& page, Report& report, bool dxf)
        : Sink(target, options, kDwg), m_report(report), m_page(page), m_dxf(dxf), m_utf8(options.utf8) {
        std::string name = m_dxf ? std::string() : LibraryPath(m_file.path());
        if (name.empty()) {
            // A place whose name the library can take; the file is moved to its own at the end.
            m_folder = std::make_unique<PrivateFolder>();
            m_detour = m_folder->path() / "sheet.dwg";
            name = LibraryPath(m_detour);
        }
        if (name.empty()) CannotWrite(target, Phrase("its path cannot be given to the library; use a shorter one"));
        std::vector<char> text(name.c_str(), name.c_str() + name.size() + 1);
        dwg::ResetAttributes();  // an output before this one left its own
        _LDBopendwg(text.data());
        m_open = true;
        dwg::SetThicknessKept(options.thickness);
        dwg::SetRingsClosed(true);
        _LDBsetelev(0.0, 0.0);
        // No device: text metrics come from the scale alone.
        SetView(nullptr, page);
    }
    ~DwgSink() override {
        if (m_open) _LDBclosedwg();
    }
    void Finish() override {
        m_open = false;
        _LDBclosedwg();
        for (int i = 0; const char* warning = dwg::BlockCopyWarning(i); ++i)
            m_report.Limit(N_("blocks that other programs read wrong"), gbk::ToUtf8(warning));
        for (int i = 0; const char* note = dwg::BlockImportNote(i); ++i) m_report.Note(gbk::ToUtf8(note));
        if (!dwg::LastFileComplete())
            CannotWrite(m_file.target(), Phrase("the file could not be written whole; is the disk full"));
        if (!SetDrawingView(m_detour.empty() ? m_file.path() : m_detour, m_page))
            CannotWrite(m_file.target(), SystemError(errno));
        if (m_dxf) {
            WriteDxfFile(ReadDrawingFile(m_detour), m_file.path(), m_file.target(), m_utf8);
        } else if (!m_detour.empty()) {
            // By streams: copy_file of mingw-w64 replaces no file.
            std::ifstream from(m_detour, std::ios::binary);
            std::ofstream to(m_file.path(), std::ios::binary | std::ios::trunc);
            std::error_code error;
            if (!(to << from.rdbuf()) || !to.flush() ||
                static_cast<std::uintmax_t>(to.tellp()) != fs::file_size(m_detour, error))
                CannotWrite(m_file.target(), SystemError(errno));
        }
        m_file.Commit();
    }

 private:
    std::unique_ptr<PrivateFolder> m_folder;  // of the detour
    Report& m_report;
    const Page& m_page;
    bool m_dxf;  // the drawing is made aside and written as DXF
    bool m_utf8;
    fs::path m_detour;
    bool m_open = false;
};

class RecordingSink : public Sink {
 public:
    RecordingSink(const fs::path& target, const SinkOptions& options, const Page& page)
        : Sink(target, options, kRecording), m_stream(OpenFile(m_file.path(), "wb")) {
        if (m_stream == nullptr) CannotWrite(m_file.target(), SystemError(errno));
        SetView(&m_device, page);
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
        if (std::fclose(stream) != 0 || !good) CannotWrite(m_file.target(), SystemError(errno));
        m_file.Commit();
    }

 private:
    void Write(const std::string& line) {
        std::fwrite(line.data(), 1, line.size(), m_stream);
        std::fputc('\n', m_stream);
    }
    std::FILE* m_stream;
    NullDevice m_device;  // pens and fonts are selected into it
};

}  // namespace

Format FormatOf(const fs::path& path) {
    std::string extension = path.extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (extension == ".svg") return Format::svg;
    if (extension == ".png") return Format::png;
    if (extension == ".pdf") return Format::pdf;
    if (extension == ".dwg") return Format::dwg;
    if (extension == ".dxf") return Format::dxf;
    if (extension == ".rec") return Format::recording;
    throw Failure(
        kUsage,
        Phrase(
            "{0}: the extension names no output; use .svg, .png, .pdf, .dwg, .dxf or .rec (-.svg for standard output).",
            path.string()));
}

double UnitsPerInch(const Page& page) {
    const double side = std::max(page.paperWidth(), page.paperHeight());
    return std::min(kUnitsPerMillimetre, kLargestPixel / side) * 25.4;
}

Sink::Sink(const fs::path& target, const SinkOptions& options, int contextType) : m_file(target, options.overwrite) {
    SelectWorkingTqDC(nullptr);
    m_context = std::make_unique<CTqDraw>(contextType);
}

Sink::~Sink() {
    m_context.reset();
    SelectWorkingTqDC(nullptr);  // the context's end leaves it published
}

void Sink::SetView(HDC device, const Page& page) {
    const double units = UnitsPerInch(page);
    const double unitsPerMetre = units / 0.0254 / page.scale * kAboveWhole;
    m_context->SetViewDrawDC(device, unitsPerMetre, page.left(), page.bottom(), UnitsOf(page.paperWidth(), units),
                             UnitsOf(page.paperHeight(), units), 0);
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
            return std::make_unique<DwgSink>(target, options, page, report, false);
        case Format::dxf:
            return std::make_unique<DwgSink>(target, options, page, report, true);
        case Format::recording:
            return std::make_unique<RecordingSink>(target, options, page);
    }
    throw Failure(kUsage, Phrase("{0}: no such output.", target.string()));
}

}  // namespace zm::tool
