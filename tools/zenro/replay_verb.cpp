// zenro replay: draws a recording to any output.
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/zenro/library_session.h"
#include "tools/zenro/recording.h"
#include "tools/zenro/sinks.h"
#include "tools/zenro/text.h"
#include "tools/zenro/verbs.h"
#include "zenromath/dwg.h"

namespace zm::tool {
namespace {

constexpr int kDwg = 1;
constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr std::size_t kMaxLine = 1u << 20;

struct ReplayOptions {
    std::string input;
    std::vector<std::string> outputs;
    double scale = 0.0;
    LibraryOptions library;
    SinkOptions sink;
};

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Calls work for each line of the recording.
template <class Work>
void ForEachLine(const std::string& input, const Work& work) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(input.c_str(), "rb"));
    if (file == nullptr) throw Failure(kNoInput, input + ": cannot be opened: " + std::strerror(errno) + ".");
    std::string line;
    int c = 0;
    for (long number = 1; c != EOF; ++number) {
        line.clear();
        while ((c = std::getc(file.get())) != EOF && c != '\n')
            if (line.size() < kMaxLine) line += static_cast<char>(c);
        CheckStop();
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) work(number, line);
    }
    if (std::ferror(file.get()) != 0)
        throw Failure(kNoInput, input + ": cannot be read: " + std::strerror(errno) + ".");
}

// What a recording covers: by its head, else by its commands.
struct Extent {
    RecordingHead head;
    Box drawn;
    long commands = 0;
    void Add(const Command& c) {
        ++commands;
        if (const auto* line = std::get_if<command::Line>(&c)) {
            drawn.Add(line->x1, line->y1);
            drawn.Add(line->x2, line->y2);
        } else if (const auto* arc = std::get_if<command::Arc>(&c)) {
            drawn.Add(arc->cx - arc->r, arc->cy - arc->r);
            drawn.Add(arc->cx + arc->r, arc->cy + arc->r);
        } else if (const auto* pixel = std::get_if<command::Pixel>(&c)) {
            drawn.Add(pixel->x, pixel->y);
        } else if (const auto* text = std::get_if<command::Text>(&c)) {
            drawn.Add(text->x, text->y);
        }
    }
};

Page PageOf(const ReplayOptions& options, const Extent& extent, Report& report) {
    Page page;
    page.margins = {0.0, 0.0, 0.0, 0.0};
    page.frame = false;
    page.scale = options.scale > 0.0 ? options.scale : extent.head.scale.value_or(0.0);
    if (page.scale <= 0.0) {
        page.scale = 1000.0;
        report.Note(options.input + ": says no scale; 1:1000 is taken, --scale sets another.");
    }
    if (extent.head.sheet) {
        page.sheet = *extent.head.sheet;
        if (extent.head.margins) {
            const auto& m = *extent.head.margins;
            page.margins = {m[0], m[1], m[2], m[3]};
        }
        return page;
    }
    if (extent.drawn.empty()) throw Failure(kFailed, options.input + ": nothing drawn: no command has a place.");
    page.sheet = SheetAround(extent.drawn, page.scale);
    return page;
}

// Gives the commands to the working context.
class Player {
 public:
    explicit Player(TqNoteLayBase& notes) : m_notes(notes) {}
    ~Player() {
        if (m_font != nullptr) TqDC->ResetFont(m_previousFont);
    }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;
    void Play(const Command& c) {
        std::visit([this](const auto& one) { On(one); }, c);
    }
    /// Ends a polyline that has no end.
    void Close() { EndPolyline(); }

 private:
    void On(const command::Line& c) {
        if (!m_polyline) {
            TqDC->line(c.x1, c.y1, c.x2, c.y2);
            return;
        }
        if (m_points.empty() || m_points[m_points.size() - 2] != c.x1 || m_points.back() != c.y1) {
            EndRun();
            m_points = {c.x1, c.y1};
        }
        m_points.push_back(c.x2);
        m_points.push_back(c.y2);
    }
    void On(const command::PolylineBegin&) {
        EndPolyline();
        m_polyline = true;
    }
    void On(const command::PolylineEnd&) { EndPolyline(); }
    void On(const command::Arc& c) {
        // A recorded arc may pass a full turn: angles count modulo a turn, and none at all is the whole circle.
        double sweep = std::fmod(c.to - c.from, 360.0);
        if (360.0 - std::fabs(sweep) < 1e-6) sweep = 0.0;
        const double from = std::fmod(c.from, 360.0) * kDegree;
        TqDC->drawarc(c.cx, c.cy, c.r, from, from + sweep * kDegree);
    }
    void On(const command::Pixel& c) { TqDC->pixel(c.x, c.y, c.color, 1); }
    void On(const command::Layer& c) {
        m_pen.reset();
        m_layer = c.code;
        m_layerPen = std::make_unique<CTQPen>(c.code, 0, 0);
    }
    void On(const command::Pen& c) {
        m_pen.reset();
        if (TqDC->GetTqDCType() == kDwg && m_layer != 0) {
            m_layerPen = std::make_unique<CTQPen>(m_layer, c.style, 0);
        } else {
            m_pen = std::make_unique<CTQPen>(c.style, _To01mm(c.width), DWORD{c.color});
        }
    }
    void On(const command::Font& c) {
        const double height = _To01mm(c.font.lfHeight), width = _To01mm(c.font.lfWidth);
        const double degrees = c.font.lfEscapement / 10.0;
        std::vector<char> face(c.font.lfFaceName, c.font.lfFaceName + LF_FACESIZE);
        if (TqDC->GetTqDCType() == kDwg) {
            SetDwgFont(face.data(), height, width, degrees);
            return;
        }
        HFONT old = nullptr;
        HFONT made = TqDC->SetFont(height, width, face.data(), degrees, c.font.lfItalic, old);
        if (m_font == nullptr) m_previousFont = old;
        m_font = made;
    }
    void On(const command::Text& c) {
        std::vector<char> text(c.text.c_str(), c.text.c_str() + c.text.size() + 1);
        TqDC->textout(c.x, c.y, text.data(), 0, 0);
    }

    // A DWG style of the note classes that has this face.
    void SetDwgFont(const char* face, double height, double width, double degrees) {
        auto& fonts = *m_notes.GetFontTbl();
        NOTEFONT* font = m_notes.FontInfo('0');
        for (int i = 0; i < fonts.GetSize(); ++i)
            if (std::strcmp(fonts[i]->screenFont, face) == 0) font = fonts[i];
        if (font == nullptr) return;
        std::string file = font->fontName;
        if (file != "txt") file = "txt," + file;
        std::vector<char> name(font->textStyle, font->textStyle + std::strlen(font->textStyle) + 1);
        std::vector<char> files(file.c_str(), file.c_str() + file.size() + 1);
        const double h = height < 0.001 ? 2.0 : height;
        TqDC->SetFont(0, name.data(), files.data(), h, width / h, 0.0, degrees);
    }

    void EndRun() {
        if (m_points.size() >= 4) TqDC->lines(static_cast<int>(m_points.size() / 2), m_points.data());
        m_points.clear();
    }
    void EndPolyline() {
        EndRun();
        m_polyline = false;
    }

    TqNoteLayBase& m_notes;
    bool m_polyline = false;
    std::vector<double> m_points;
    int m_layer = 0;
    std::unique_ptr<CTQPen> m_layerPen, m_pen;
    HFONT m_font = nullptr, m_previousFont = nullptr;
};

void Replay(const ReplayOptions& options, Context& context) {
    for (const std::string& output : options.outputs) {
        FormatOf(output);
        CheckOutput(output, options.sink.overwrite);
    }
    Extent extent;
    ForEachLine(options.input, [&](long number, const std::string& line) {
        if (line[0] == '#') return ReadHeadLine(line, extent.head);
        if (const auto c = ParseCommand(line)) return extent.Add(*c);
        context.report.Skip("lines that are no command", options.input + ":" + std::to_string(number) +
                                                             ": no command of a recording; the line is left out.");
    });
    if (extent.commands == 0)
        throw Failure(kNoInput, options.input + ": holds no command of a recording; write one with draw -o FILE.rec.");
    LibrarySession session(options.library, context.host);
    const Page page = PageOf(options, extent, context.report);
    setgscale(page.scale);
    for (const std::string& output : options.outputs) {
        const std::unique_ptr<Sink> sink = OpenSink(output, options.sink, page, context.report);
        session.ReloadLayers();
        {
            Player player(session.notes());
            ForEachLine(options.input, [&](long, const std::string& line) {
                if (line[0] == '#') return;
                if (const auto c = ParseCommand(line)) player.Play(*c);
                sink->Flush();
            });
            player.Close();
        }
        sink->Finish();
        std::printf("%s\n", output.c_str());
    }
    context.status = context.report.status();
}

}  // namespace

void AddReplayVerb(CLI::App& app, Context& context) {
    CLI::App& verb = *app.add_subcommand("replay", "Draw a recording to SVG, PNG, PDF or DWG");
    const auto options = std::make_shared<ReplayOptions>();
    verb.add_option("REC", options->input, "Recording, as draw writes it")->required();
    verb.add_option("OUT", options->outputs, "Output; its extension says the form")->required();
    verb.add_option("--scale", options->scale, "Denominator of the map scale, where the recording says none")
        ->check(CLI::Range(10.0, 1e8));
    verb.add_option("--notes", options->library.notes, "Note classes")->default_str("Orvnote.cod");
    verb.add_option("--project", options->library.project, "Project file with the layers");
    verb.add_option("--dpi", options->sink.dpi, "Pixels an inch")->check(CLI::Range(10.0, 2540.0));
    verb.add_flag("--mono", options->sink.monochrome, "Black on white");
    verb.add_flag("--overwrite", options->sink.overwrite, "Replace outputs that exist");
    AddCommonOptions(verb, context);
    verb.callback([options, &context] { Replay(*options, context); });
}

}  // namespace zm::tool
