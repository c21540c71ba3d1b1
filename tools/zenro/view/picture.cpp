#include "tools/zenro/view/picture.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "tools/kit/json_numbers.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/sheet_drawing.h"
#include "zenromath/draw.h"

namespace zm::tool {
namespace {

constexpr int kColourDevice = 0, kMonochromeDevice = 2;
constexpr double kLargestPixel = 29000.0;  // the library limits device coordinates to 30000
constexpr double kUnitsPerMillimetre = 40.0, kUnitsPerPixel = 4.0;
constexpr double kAboveWhole = 1.0 + 1e-7;  // keeps whole coordinates from falling short
constexpr double kCoarse = 2.0;             // millimetres of paper in a pixel, from where symbols cannot be read
constexpr std::size_t kQuick = 4000;        // features that are labelled at once
constexpr std::size_t kMany = 200000;       // features in view from where those below a pixel are thinned out
constexpr std::size_t kLookEvery = 4096;    // of them between two looks at whether the view is still wanted

// Which features of many in view are not drawn: hidden ones, and of those that are smaller than a pixel all but the first
// of a layer, its levels and kinds at each pixel. What has a label is drawn where labels are.
std::vector<bool> Thinned(const OpenedMap& map, const ViewRequest& request, const Box& window,
                          const std::vector<std::uint32_t>& places, bool labels) {
    std::vector<bool> out = map.hidden;
    const auto columns = static_cast<std::size_t>((window.x2 - window.x1) / request.pixel) + 1;
    const auto rows = static_cast<std::size_t>((window.y2 - window.y1) / request.pixel) + 1;
    std::map<std::tuple<std::uint32_t, std::uint16_t, std::uint8_t>, std::vector<bool>> taken;
    std::size_t looks = 0;
    for (const std::uint32_t place : places) {
        if (++looks % kLookEvery == 0) CheckStop();
        const FeatureStore::Entry& entry = map.store.entry(place);
        const Box& box = entry.box;
        if (out[place] || (labels && entry.labelledKinds != 0) || box.x2 - box.x1 >= request.pixel ||
            box.y2 - box.y1 >= request.pixel || box.x1 < window.x1 || box.y1 < window.y1)
            continue;
        const auto column = static_cast<std::size_t>((box.x1 - window.x1) / request.pixel);
        const auto row = static_cast<std::size_t>((box.y1 - window.y1) / request.pixel);
        if (column >= columns || row >= rows) continue;
        std::vector<bool>& pixels = taken[{entry.layer, entry.levels, entry.kinds}];
        if (pixels.empty()) pixels.resize(columns * rows);
        if (pixels[row * columns + column])
            out[place] = true;
        else
            pixels[row * columns + column] = true;
    }
    return out;
}

}  // namespace

Page PageOf(const ViewRequest& request) {
    Page page;
    page.scale = request.scale;
    page.margins = {0.0, 0.0, 0.0, 0.0};
    page.frame = false;
    page.rotation = request.rotation;
    const double w = request.width * request.pixel / 2, h = request.height * request.pixel / 2;
    page.sheet = {request.x - w, request.y - h, request.x + w, request.y + h};
    return page;
}

Box WindowOf(const Page& page, double reach) {
    const Box around = page.sheet.Widened(page.Ground(reach));
    Box window;
    for (double x : {around.x1, around.x2})
        for (double y : {around.y1, around.y2}) {
            double px = x, py = y;
            page.TurnBack(px, py);
            window.Add(px, py);
        }
    return window;
}

PictureContext::PictureContext(const ViewRequest& request, const Page& page, std::uint32_t* pixels) : m_qt(LoadQt()) {
    const double perMillimetre = page.scale / 1000.0 / request.pixel;  // pixels
    const double side = std::max(page.paperWidth(), page.paperHeight());
    const double units = std::min(std::max(kUnitsPerMillimetre, kUnitsPerPixel * perMillimetre), kLargestPixel / side);
    m_unitsOfPixel = units / perMillimetre;
    const ZenroQtPicture picture = {pixels, request.width, request.height, units * 25.4, perMillimetre * 25.4};
    char error[256] = {};
    m_device = m_qt.beginPicture(&picture, error, sizeof error);
    if (m_device == nullptr) throw Failure(kFailed, Phrase("no picture: {0}.", error));
    SelectWorkingTqDC(nullptr);
    m_context = std::make_unique<CTqDraw>(request.monochrome ? kMonochromeDevice : kColourDevice);
    m_context->SetViewDrawDC(m_device, units * 1000.0 / page.scale * kAboveWhole, page.left(), page.bottom(),
                             static_cast<int>(std::lround(page.paperWidth() * units)),
                             static_cast<int>(std::lround(page.paperHeight() * units)), 0);
}

PictureContext::~PictureContext() {
    m_context->ResetHdc(nullptr);
    m_qt.drop(m_device);
    m_context.reset();
    SelectWorkingTqDC(nullptr);
}

ViewRequest ViewRequest::FromJson(const nlohmann::json& json) {
    ViewRequest r;
    r.number = WholeOf<std::uint32_t>(json.at("number"));
    r.slot = WholeOf<int>(json.at("slot")) & 1;
    r.width = WholeOf<int>(json.at("width"));
    r.height = WholeOf<int>(json.at("height"));
    r.x = json.at("x").get<double>();
    r.y = json.at("y").get<double>();
    r.pixel = json.at("pixel").get<double>();
    r.rotation = json.at("rotation").get<double>();
    r.scale = json.at("scale").get<double>();
    r.labels = WholeOf<int>(json.at("labels"));
    r.monochrome = json.value("mono", false);
    return r;
}

ViewDrawn DrawView(OpenedMap& map, const ViewRequest& request, std::uint32_t* pixels, Context& context,
                   const std::function<void(std::size_t)>& visited) {
    const Page page = PageOf(request);
    setgscale(page.scale);
    const bool coarse = request.pixel * 1000.0 / page.scale > kCoarse;
    StoreFilter filter;
    filter.window = WindowOf(page, kSymbolReach);
    filter.hidden = &map.hidden;
    filter.visited = visited;
    ViewDrawn drawn;
    const std::vector<std::uint32_t> places = map.store.Within(filter.window);
    drawn.features = places.size();
    drawn.labels = coarse || request.labels > 0 || (request.labels < 0 && drawn.features <= kQuick);
    std::vector<bool> hidden;
    if (drawn.features > kMany) {
        hidden = Thinned(map, request, filter.window, places, drawn.labels && !coarse);
        filter.hidden = &hidden;
    }

    const PictureContext picture(request, page, pixels);
    map.session.ReloadLayers();
    SetClip(*TqDC, page);
    MapMasks masks(page);
    Painter painter(page, context.report, masks);
    if (coarse) painter.DrawPlainly(request.pixel);
    Cover cover(page);
    Survey survey;
    LookAtFeatures(map.store, filter, page, painter, cover, masks, survey);
    if (drawn.labels && !coarse)
        PlaceLabels(map.store, filter, page, painter, map.session.notes(), cover, masks, survey, [] {});
    DrawStrokes(map.store, filter, survey, painter, [](long) {});
    DrawLabels(survey.labels, map.session.notes());
    return drawn;
}

}  // namespace zm::tool
