#include "tools/zenro/view/recording_map.h"

#include <map>

#include "draw/device.h"
#include "runtime/text/gbk.h"
#include "tools/kit/process.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/map/recording_player.h"
#include "tools/zenro/view/drawn_items.h"
#include "tools/zenro/view/picture.h"

namespace zm::tool {
namespace {

constexpr double kUsualScale = 1000.0;
constexpr double kReach = 20.0;  // millimetres around a view from where texts and pens may reach into it

class RecordingMap : public DrawnMap {
 public:
    RecordingMap(std::string file, const DrawJob& job, Context& context)
        : m_file(std::move(file)), m_session(job.library, context.host) {
        m_items.layers.push_back({Phrase("without a layer"), 0, 0.0});
        ForEachLine(PathOf(m_file), m_file,
                    [&](long number, const std::string& line) { TakeLine(number, line, context); });
        EndRun();
        if (m_extent.commands == 0)
            throw Failure(kNoInput,
                          Phrase("{0}: holds no command of a recording; write one with draw -o FILE.rec.", m_file));
        if (m_items.whole().empty())
            throw Failure(kEmpty, Phrase("{0}: nothing drawn: no command has a place.", m_file));
        m_items.Index();
        m_scale = job.scale > 0.0 ? job.scale : m_extent.head.scale.value_or(kUsualScale);
    }

    Json About() override {
        return AboutDrawn(m_items, m_scale, m_file, m_extent.head.sheet.value_or(m_items.whole()));
    }

    ViewDrawn Draw(const ViewRequest& request, std::uint32_t* pixels, Context&,
                   const std::function<void(std::size_t)>& visited) override {
        const Page page = PageOf(request);
        setgscale(page.scale);
        const PictureContext picture(request, page, pixels);
        m_session.ReloadLayers();
        device::SetBkMode(TqDC->GetHdc(), TRANSPARENT);
        const Box window = WindowOf(page, kReach);
        ViewDrawn drawn;
        drawn.labels = true;
        RecordingPlayer player(m_session.notes());
        for (const Step& step : m_steps) {
            if (step.item != kNone) {
                const Box& box = m_items.box(step.item);
                if (!m_items.Shown(step.item) || !box.Meets(window)) continue;
                CheckStop();
                visited(step.item);
                ++drawn.features;
            }
            for (std::size_t i = step.first; i < step.end; ++i) {
                if (const Command* command = std::get_if<Command>(&m_lines[i]))
                    player.Play(*command);
                else
                    player.Tell(std::get<std::string>(m_lines[i]));
            }
        }
        player.Close();
        return drawn;
    }

 private:
    static constexpr std::size_t kNone = ~std::size_t{0};
    // Lines that are played together: a change of pen, font or layer, or what draws one item.
    struct Step {
        std::size_t first, end;
        std::size_t item;  // kNone where it draws nothing
    };

    void TakeLine(long number, const std::string& line, Context& context) {
        if (line[0] == '#') return TakeComment(line);
        const auto command = ParseCommand(line);
        if (!command) {
            context.report.Skip(N_("lines that are no command"),
                                Phrase("{0}:{1}: no command of a recording; the line is left out.", m_file, number));
            return;
        }
        m_extent.Add(*command);
        if (const auto* layer = std::get_if<command::Layer>(&*command)) TakeLayer(layer->code);
        const bool begins = std::holds_alternative<command::PolylineBegin>(*command);
        const bool ends = std::holds_alternative<command::PolylineEnd>(*command);
        if (begins) EndRun();
        m_lines.emplace_back(*command);
        if (begins) {
            m_run = m_lines.size() - 1;
            m_points = {};
        } else if (ends) {
            EndRun();
        } else if (m_run != kNone && std::holds_alternative<command::Line>(*command)) {
            AddPoints(std::get<command::Line>(*command), m_points);
        } else {
            const std::size_t last = m_lines.size() - 1;
            if (m_run == kNone) m_steps.push_back({last, last + 1, ItemOf(*command)});
        }
    }

    void TakeComment(const std::string& line) {
        ReadHeadLine(line, m_extent.head);
        Exactly exactly;
        if (!ReadExactly(line, exactly)) return;
        m_lines.emplace_back(line);
        std::size_t item = kNone;
        if (exactly.area) {
            DrawnItem fill;
            fill.kind = "fill";
            fill.layer = m_layer;
            for (std::size_t i = 0; i + 1 < exactly.area->xy.size(); i += 2) {
                fill.points.x.push_back(exactly.area->xy[i]);
                fill.points.y.push_back(exactly.area->xy[i + 1]);
            }
            item = m_items.Add(std::move(fill));
        }
        if (m_run == kNone) m_steps.push_back({m_lines.size() - 1, m_lines.size(), item});
    }

    void TakeLayer(int code) {
        const auto known = m_layers.find(code);
        if (known != m_layers.end()) {
            m_layer = known->second;
            return;
        }
        unsigned long* palette = nullptr;
        const int colours = Get_SysColor(palette), colour = GetColorNo1(code);
        const COLORREF bgr =
            palette != nullptr && colour >= 0 && colour < colours ? static_cast<COLORREF>(palette[colour]) : 0;
        m_layer = static_cast<std::uint32_t>(m_items.layers.size());
        m_layers[code] = m_layer;
        m_items.layers.push_back({NameOfLayer(code), bgr, GetPenWidth(code) / 100.0});
    }

    // A code with the note of its symbol, else with the layer that it belongs to.
    static std::string NameOfLayer(int code) {
        const char* layer = GetLayerName(code);
        std::string note = NoteOfSymbol(code);
        if (note.empty() && layer != nullptr) note = Trim(gbk::ToUtf8(layer));
        return note.empty() ? Phrase("layer code {0}", code) : std::to_string(code) + " " + note;
    }

    static void AddPoints(const command::Line& line, Chain& points) {
        if (points.size() == 0 || points.x.back() != line.x1 || points.y.back() != line.y1) {
            points.x.push_back(line.x1);
            points.y.push_back(line.y1);
        }
        points.x.push_back(line.x2);
        points.y.push_back(line.y2);
    }

    std::size_t ItemOf(const Command& c) {
        DrawnItem item;
        item.layer = m_layer;
        item.kind = "stroke";
        const Box box = BoxOf(c);
        if (box.empty()) return kNone;
        if (const auto* line = std::get_if<command::Line>(&c)) {
            AddPoints(*line, item.points);
        } else if (const auto* text = std::get_if<command::Text>(&c)) {
            item.kind = "text";
            item.text = gbk::ToUtf8(text->text);
            item.points = {{text->x}, {text->y}};
        } else if (std::holds_alternative<command::Pixel>(c)) {
            item.kind = "dot";
            item.points = {{box.x1}, {box.y1}};
        } else {  // an arc: the box around its circle
            item.points = {{box.x1, box.x2, box.x2, box.x1, box.x1}, {box.y1, box.y1, box.y2, box.y2, box.y1}};
        }
        return m_items.Add(std::move(item));
    }

    // Ends a polyline: it is one item.
    void EndRun() {
        if (m_run == kNone) return;
        DrawnItem item;
        item.kind = "stroke";
        item.layer = m_layer;
        item.points = std::exchange(m_points, {});
        const std::size_t first = std::exchange(m_run, kNone);
        const bool any = item.points.size() > 0;
        m_steps.push_back({first, m_lines.size(), any ? m_items.Add(std::move(item)) : kNone});
    }

    std::string m_file;
    LibrarySession m_session;
    RecordingExtent m_extent;
    std::vector<std::variant<Command, std::string>> m_lines;
    std::vector<Step> m_steps;
    std::map<int, std::uint32_t> m_layers;  // by code
    std::uint32_t m_layer = 0;
    std::size_t m_run = kNone;  // where the polyline begins that has not ended yet
    Chain m_points;
    double m_scale = kUsualScale;
};

}  // namespace

std::unique_ptr<ShownMap> OpenRecordingMap(const std::string& file, const DrawJob& job, Context& context) {
    return std::make_unique<RecordingMap>(file, job, context);
}

}  // namespace zm::tool
