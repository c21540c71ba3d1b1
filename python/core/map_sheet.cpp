#include "python/core/map_sheet.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/zenro/map/margins.h"
#include "tools/zenro/map/sheet_drawing.h"
#include "tools/zenro/map/symbol_extent.h"
#include "zenromath/dwg.h"
#include "zenromath/geometry.h"

namespace zm::python {
namespace {

using tool::Box;
using tool::Chain;
using tool::Fixed;
using tool::Page;

constexpr double kLargestPaper = 3000.0;  // millimetres; beyond it a scale was mistyped
constexpr double kAround = 3.0;           // millimetres of paper around the data
constexpr double kSmallest = 5.0;         // metres; smaller data are degrees, mostly
constexpr double kNorthernmost = 10002200.0;
constexpr int kDwg = 1;

// The places of the labels and what gives way to them are found first, then all is drawn.
tool::Survey Look(tool::FeatureStore& store, const SheetOptions& options, const Page& page, tool::Painter& painter,
                  tool::MapMasks& masks, tool::LibrarySession& session, const tool::StoreFilter& all) {
    tool::Survey survey;
    tool::Cover cover(page);
    tool::LookAtFeatures(store, all, page, painter, cover, masks, survey);
    if (options.frame)
        for (const Chain& stroke : tool::OpenCrosses(page, masks.crosses)) cover.MarkLine(stroke);
    tool::PlaceLabels(store, all, page, painter, session.notes(), cover, masks, survey, [] {});
    return survey;
}

long Draw(tool::FeatureStore& store, const SheetOptions& options, const Page& page, const std::string& path,
          tool::Report& report, const std::function<void()>& breathe, tool::ToolHost& host) {
    tool::LibrarySession session(options.library, host);
    tool::MeasureSymbols();
    session.ReloadLayers();
    tool::MapMasks masks(page);
    tool::Painter painter(page, report, masks);
    tool::StoreFilter all;
    all.visited = [&](std::size_t) { breathe(); };
    const tool::Survey survey = Look(store, options, page, painter, masks, session, all);

    const std::unique_ptr<tool::Sink> sink = tool::OpenSink(tool::PathOf(path), options.sink, page, report);
    session.ReloadLayers();
    tool::SetClip(*TqDC, page);
    tool::DrawStrokes(store, all, survey, painter, [&](long) { sink->Flush(); });
    if (TqDC->GetTqDCType() == kDwg) _LDBsetelev(0.0, 0.0);
    if (options.frame) tool::DrawCrosses(page, masks.crosses);
    tool::DrawLabels(survey.labels, session.notes());
    sink->Flush();
    if (options.frame) tool::DrawFrame(page, options.texts, session.notes());
    sink->Finish();
    return survey.labelsWithoutRoom;
}

class [[nodiscard]] PaperScale {
 public:
    explicit PaperScale(double scale) : m_before(setgscale(scale)) {}
    ~PaperScale() { setgscale(m_before); }
    PaperScale(const PaperScale&) = delete;
    PaperScale& operator=(const PaperScale&) = delete;

 private:
    double m_before;
};

[[noreturn]] void Refuse(const std::string& why) {
    throw tool::Failure(tool::kUsage, why);
}

Box SheetOf(const std::vector<double>& bounds) {
    Box sheet;
    sheet.Add(bounds[0], bounds[1]);
    sheet.Add(bounds[2], bounds[3]);
    if (!(sheet.x2 > sheet.x1) || !(sheet.y2 > sheet.y1)) Refuse("bounds: the two corners give no area");
    return sheet;
}

// Numbers that are no metres on a plane give drawings that look like some.
void CheckPlane(const Box& data, const SheetOptions& options) {
    if (data.y2 > kNorthernmost || data.y1 < -kNorthernmost)
        Refuse("y reaches " + Fixed(data.y2, 0) + ": no northing is above 10,002,138 m; x is east and y is north here");
    const double size = std::max(data.x2 - data.x1, data.y2 - data.y1);
    if (options.scale <= 0.0 && options.bounds.empty() && size > 0.0 && size < kSmallest)
        Refuse("the data covers " + Fixed(size, 6) +
               " m: are these degrees? zenromath.to_plane makes metres of them; "
               "give scale= where they are metres");
}

}  // namespace

Page PageOf(const MapData& data, const SheetOptions& options) {
    const Box& box = data.box();
    if (box.empty() && options.bounds.empty()) Refuse("the map is empty: add something, or give bounds=");
    if (!box.empty()) CheckPlane(box, options);
    const Box asked = options.bounds.empty() ? box : SheetOf(options.bounds);
    Page page;
    page.frame = options.frame;
    page.margins = options.frame ? tool::MarginsFor(options.texts) : tool::Margins{0.0, 0.0, 0.0, 0.0};
    page.scale = options.scale > 0.0 ? options.scale : tool::ScaleFor(asked);
    page.sheet = options.bounds.empty() ? tool::SheetAround(asked.Widened(page.Ground(kAround)), page.scale) : asked;
    const double largest = std::max(page.paperWidth(), page.paperHeight());
    if (!(largest <= kLargestPaper))
        Refuse("the sheet would be " + Fixed(largest / 1000.0, 1) + " m of paper at 1:" + Fixed(page.scale, 0) +
               "; give bounds= for a part of it, or a smaller scale");
    return page;
}

long DrawSheet(MapData& data, const SheetOptions& options, const std::string& path, tool::Report& report,
               const std::function<void()>& breathe, std::string& stopped) {
    const Page page = PageOf(data, options);
    tool::ToolHost host(report);
    try {
        const Find4H noHeights(0, nullptr, nullptr, nullptr);  // tables that live elsewhere set no elevations
        const PaperScale scale(page.scale);
        return Draw(data.Settled(), options, page, path, report, breathe, host);
    } catch (const tool::LibraryStop&) {
        stopped = host.lastMessage();
        throw;
    }
}

}  // namespace zm::python
