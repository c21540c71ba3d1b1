#include "tools/zenro/view/drawing_map.h"

#include <algorithm>
#include <cmath>

#include "dwg/reader/picture.h"
#include "runtime/text/gbk.h"
#include "tools/dwg/open_drawing.h"
#include "tools/dwg/paint.h"
#include "tools/kit/process.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/view/drawn_items.h"
#include "tools/zenro/view/picture.h"

namespace zm::tool {
namespace {

namespace reader = dwg::reader;

constexpr double kThin = 0.15;     // millimetres of paper: all strokes of a drawing
constexpr double kDashFrom = 0.5;  // millimetres: patterns that are shorter are solid
constexpr double kReach = 20.0;    // millimetres around a view from where texts may reach into it
constexpr char kFace[] = "WenQuanYi Zen Hei";

class DrawingMap : public DrawnMap, private reader::PictureSink {
 public:
    DrawingMap(std::string file, Context& context) : m_file(std::move(file)), m_drawing(OpenKnown(m_file, context)) {
        for (const reader::Layer& layer : m_drawing.layers)
            m_items.layers.push_back({gbk::ToUtf8(layer.name), DrawingColour(layer.color), kThin});
        if (m_items.layers.empty()) m_items.layers.push_back({"0", 0, kThin});
        const reader::PictureCount count = ShowPicture(m_drawing, *this);
        if (m_items.whole().empty())
            throw Failure(kEmpty, Phrase("{0}: nothing drawn: it holds no entity with a place.", m_file));
        m_items.Index();
        if (count.unknown > 0)
            context.report.Skip(
                N_("records that are not drawn"),
                Phrase("{0}: {1} records are of kinds that are not drawn; see zenro dwg dump.", m_file, count.unknown));
        m_scale = ScaleFor(m_items.whole());
    }

    Json About() override { return AboutDrawn(m_items, m_scale, m_file, m_items.whole()); }

    ViewDrawn Draw(const ViewRequest& request, std::uint32_t* pixels, Context&,
                   const std::function<void(std::size_t)>& visited) override {
        const Page page = PageOf(request);
        setgscale(page.scale);
        const PictureContext picture(request, page, pixels);
        const Box window = WindowOf(page, kReach);
        const double thin = std::max(picture.unitsOfPixel(), TqDC->GetPixelsByRealen(page.Ground(kThin)));
        const auto sink = PaintingSink(*TqDC, static_cast<int>(std::lround(thin)),
                                       TqDC->GetPixelsByRealen(page.Ground(kDashFrom)), kFace);
        ViewDrawn drawn;
        drawn.labels = true;
        for (const std::uint32_t i : m_items.Within(window)) {
            CheckStop();
            visited(i);
            ++drawn.features;
            Put(i, *sink);
        }
        return drawn;
    }

 private:
    struct Drawn {
        char kind;  // s, f, d, t
        reader::Look look;
        std::size_t text = 0;  // its place in m_texts
    };

    void Put(std::size_t i, reader::PictureSink& sink) const {
        const Drawn& one = m_drawn[i];
        const Chain& points = m_items.item(i).points;
        if (one.kind == 't') return sink.Text(m_texts[one.text], one.look);
        std::vector<reader::Point> all;
        all.reserve(points.size());
        for (std::size_t k = 0; k < points.size(); ++k) all.push_back({points.x[k], points.y[k], 0.0});
        if (one.kind == 's') sink.Stroke(all, one.look);
        if (one.kind == 'f') sink.Fill(all, one.look);
        if (one.kind == 'd') sink.Dot(all.front(), one.look);
    }

    void Take(const char* kind, const std::vector<reader::Point>& points, const reader::Look& look,
              std::string text = {}) {
        DrawnItem item;
        item.kind = kind;
        item.layer = look.layer < m_items.layers.size() ? look.layer : 0;
        for (const reader::Point& p : points) {
            item.points.x.push_back(p.x);
            item.points.y.push_back(p.y);
        }
        item.text = std::move(text);
        item.looks.emplace_back(Phrase("colour"), std::to_string(look.color));
        if (look.linetype != nullptr) item.looks.emplace_back(Phrase("linetype"), gbk::ToUtf8(look.linetype->name));
        m_items.Add(std::move(item));
        m_drawn.push_back({kind[0], look, m_texts.size()});
    }
    void Stroke(const std::vector<reader::Point>& points, const reader::Look& look) override {
        Take("stroke", points, look);
    }
    void Fill(const std::vector<reader::Point>& corners, const reader::Look& look) override {
        Take("fill", corners, look);
    }
    void Dot(const reader::Point& at, const reader::Look& look) override { Take("dot", {at}, look); }
    void Text(const reader::TextItem& text, const reader::Look& look) override {
        Take("text", {text.at}, look, gbk::ToUtf8(text.text));
        m_texts.push_back(text);
    }

    std::string m_file;
    reader::Drawing m_drawing;
    std::vector<Drawn> m_drawn;
    std::vector<reader::TextItem> m_texts;
    double m_scale = 1000.0;
};

}  // namespace

std::unique_ptr<ShownMap> OpenDrawingMap(const std::string& file, Context& context) {
    return std::make_unique<DrawingMap>(file, context);
}

}  // namespace zm::tool
